#include "host/command/ManufacturerReport.h"

#include "host/support/JsonText.h"
#include "host/support/TextTable.h"

#include <VelkCommon/Text/StringConvert.h>

#include <QJsonArray>
#include <QJsonObject>

#include <boost/date_time/posix_time/time_formatters.hpp>

#include <algorithm>

namespace VelkHost {
namespace {

using Cells = std::vector<std::string>;

std::string narrow(const std::u32string& text)
{
    return StringConvert::toStdUtf8String(text);
}

/// "2026-03-01T14:05:59Z"; empty for a time that is not set.
std::string timeText(const boost::posix_time::ptime& time)
{
    return time.is_special() ? std::string() : boost::posix_time::to_iso_extended_string(time) + "Z";
}

QJsonObject cardObject(long id, const Manufacturer& card)
{
    QJsonObject object{{QStringLiteral("id"), static_cast<int>(id)},
                       {QStringLiteral("logo"), qtText(card.getManufacturerLogoName().utf8())},
                       {QStringLiteral("hasLogoFile"), hasLogoFile(card)},
                       {QStringLiteral("deleted"), card.isDeleted()},
                       {QStringLiteral("lastModified"), qtText(timeText(card.getLastModified()))}};
    for (const CardField& field : cardFields)
        object.insert(qtText(field.name), qtText(narrow(field.stored(card))));
    return object;
}

const char* kindText(CardChange::Kind kind)
{
    switch (kind) {
        case CardChange::Kind::Added:
            return "new";
        case CardChange::Kind::Removed:
            return "gone";
        default:
            return "changed";
    }
}

const char* outcomeText(ManufacturerRefresh::Outcome outcome)
{
    using enum ManufacturerRefresh::Outcome;
    switch (outcome) {
        case Updated:
            return "updated";
        case Newer:
            return "nothing newer";
        case Stopped:
            return "stopped";
        default:
            return "up to date";
    }
}

std::size_t countOf(const ManufacturerRefresh& refresh, CardChange::Kind kind)
{
    return static_cast<std::size_t>(std::count_if(refresh.changes.begin(), refresh.changes.end(),
                                                  [&](const CardChange& change) { return change.kind == kind; }));
}

std::string whatText(const CardChange& change)
{
    std::string text;
    for (const std::string& field : change.what)
        text += (text.empty() ? "" : ", ") + (field == "image" ? "logo image" : field);
    if (change.logoMissing)
        text += std::string(text.empty() ? "" : "; ") + "its logo could not be fetched";
    return text;
}

std::string refreshSum(const ManufacturerRefresh& refresh)
{
    using Kind = CardChange::Kind;
    std::string text = counted(refresh.cards, "manufacturer");
    if (refresh.outcome == ManufacturerRefresh::Outcome::Newer)
        return "The service has nothing newer than what is here (" + text + ").\n";
    if (refresh.outcome == ManufacturerRefresh::Outcome::Stopped)
        return "The update was stopped; the cards are as they were, and the next update brings everything.\n";
    if (refresh.outcome == ManufacturerRefresh::Outcome::Current)
        return "Everything is up to date (" + text + ").\n";
    text += ": " + std::to_string(countOf(refresh, Kind::Added)) + " new, " +
            std::to_string(countOf(refresh, Kind::Changed)) + " changed, " +
            std::to_string(countOf(refresh, Kind::Removed)) + " gone";
    if (refresh.defaultTextChanged)
        text += "; another default text";
    if (refresh.missingLogos > 0)
        text += "; " + counted(refresh.missingLogos, "logo") + " could not be fetched";
    return text + ".\n";
}

}  // namespace

// ---- Cards ---------------------------------------------------------------------------------------

std::string cardTable(const ManufacturerCards& cards, std::size_t columns)
{
    std::vector<TextTable::Column> titles{{"Id", true, false}};
    for (const CardField& field : cardFields)
        titles.push_back({field.title, false, true});
    titles.push_back({"Logo", false, true});
    titles.push_back({"", false, false});
    TextTable table(titles);
    for (const auto& [id, card] : cards) {
        Cells cells{std::to_string(id)};
        for (const CardField& field : cardFields)
            cells.push_back(narrow(field.stored(card)));
        cells.push_back(card.getManufacturerLogoName().utf8());
        cells.emplace_back(card.isDeleted() ? "deleted" : "");
        table.add(cells);
    }
    return cards.empty() ? "There are no manufacturers; \"velk manufacturer update\" fetches them.\n"
                         : table.text(columns, false);
}

std::string cardsJson(const ManufacturerCards& cards, const std::u32string& defaultText)
{
    QJsonArray array;
    for (const auto& [id, card] : cards)
        array.append(cardObject(id, card));
    return jsonText(
        {{QStringLiteral("defaultText"), qtText(narrow(defaultText))}, {QStringLiteral("manufacturers"), array}});
}

std::string cardText(long id, const Manufacturer& card, const std::u32string& defaultText, std::size_t columns)
{
    TextTable table({{"Manufacturer", false, false}, {std::to_string(id), false, true}});
    for (const CardField& field : cardFields) {
        const std::u32string& shown = field.shown(card, defaultText);
        table.add(Cells{field.title, narrow(shown) + (shown != field.stored(card) ? "  (the default text)" : "")});
    }
    const std::string logo = card.getManufacturerLogoName().utf8();
    table.add(Cells{"Logo", logo + (logo.empty() || hasLogoFile(card) ? "" : "  (not there)")});
    table.add(Cells{"Changed", timeText(card.getLastModified())});
    table.add(Cells{"Deleted", card.isDeleted() ? "yes" : "no"});
    return table.text(columns, false);
}

std::string cardJson(long id, const Manufacturer& card, const std::u32string& defaultText)
{
    QJsonObject shown;
    for (const CardField& field : cardFields)
        shown.insert(qtText(field.name), qtText(narrow(field.shown(card, defaultText))));
    QJsonObject object = cardObject(id, card);
    object.insert(QStringLiteral("shown"), shown);
    object.insert(QStringLiteral("logoPath"), qtText(narrow(card.getManufacturerFullLogoName())));
    return jsonText(object);
}

// ---- What is wrong -------------------------------------------------------------------------------

std::string problemTable(const std::vector<CardProblem>& problems, std::size_t cards, std::size_t columns)
{
    if (problems.empty())
        return counted(cards, "manufacturer") + ", nothing wrong.\n";
    TextTable table({{"Id", true, false}, {"Name", false, true}, {"What is wrong", false, true}});
    for (const CardProblem& problem : problems)
        table.add(Cells{problem.id ? std::to_string(*problem.id) : "", problem.name, problem.reason});
    return table.text(columns, false) + "\n" + counted(cards, "manufacturer") + ", " +
           counted(problems.size(), "problem") + ".\n";
}

std::string problemJson(const std::vector<CardProblem>& problems, std::size_t cards)
{
    QJsonArray array;
    for (const CardProblem& problem : problems)
        array.append(
            QJsonObject{{QStringLiteral("id"), problem.id ? QJsonValue(static_cast<int>(*problem.id)) : QJsonValue()},
                        {QStringLiteral("name"), qtText(problem.name)},
                        {QStringLiteral("problem"), qtText(problem.reason)}});
    return jsonText({{QStringLiteral("cards"), static_cast<qint64>(cards)}, {QStringLiteral("problems"), array}});
}

// ---- Updates -------------------------------------------------------------------------------------

std::string refreshText(const ManufacturerRefresh& refresh, std::size_t limit, std::size_t columns)
{
    TextTable table({{"Id", true, false}, {"Name", false, true}, {"Update", false, false}, {"What", false, true}});
    for (std::size_t i = 0; i < shownOf(refresh.changes.size(), limit); ++i) {
        const CardChange& change = refresh.changes[i];
        table.add(Cells{std::to_string(change.id), change.name, kindText(change.kind), whatText(change)});
    }
    const std::string lines = table.text(columns, false) + moreLine(refresh.changes.size(), limit);
    return lines + (lines.empty() ? "" : "\n") + refreshSum(refresh);
}

std::string refreshJson(const ManufacturerRefresh& refresh)
{
    QJsonArray changes;
    for (const CardChange& change : refresh.changes) {
        QJsonArray what;
        for (const std::string& field : change.what)
            what.append(qtText(field));
        changes.append(QJsonObject{{QStringLiteral("id"), static_cast<int>(change.id)},
                                   {QStringLiteral("name"), qtText(change.name)},
                                   {QStringLiteral("change"), qtText(kindText(change.kind))},
                                   {QStringLiteral("what"), what},
                                   {QStringLiteral("logoMissing"), change.logoMissing}});
    }
    return jsonText({{QStringLiteral("outcome"), qtText(outcomeText(refresh.outcome))},
                     {QStringLiteral("manufacturers"), static_cast<qint64>(refresh.cards)},
                     {QStringLiteral("defaultTextChanged"), refresh.defaultTextChanged},
                     {QStringLiteral("changes"), changes}});
}

}  // namespace VelkHost
