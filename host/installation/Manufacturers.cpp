#include "host/installation/Manufacturers.h"

#include "host/installation/DataError.h"
#include "host/installation/DataFileReason.h"
#include "host/installation/DataLock.h"
#include "host/support/FileError.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Manufacturer/LogoName.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

std::string utf8(const std::u32string& text)
{
    return StringConvert::toStdUtf8String(text);
}

bool never(const Manufacturer& /*card*/)
{
    return false;
}

Manufacturer edited(const Manufacturer& card, const CardEdit& edit)
{
    const auto text = [&](const std::string& field, const std::u32string& old) {
        const auto given = edit.texts.find(field);
        return given == edit.texts.end() ? old : StringConvert::toUnicodeFromUtf8(given->second);
    };
    return Manufacturer(text("name", card.getManufacturerName()), text("url", card.getManufacturerUrl()),
                        text("phone", card.getManufacturerPhoneNumber(false)),
                        text("fax", card.getManufacturerFaxNumber(false)),
                        fileString(text("logo", card.getManufacturerLogoName().unicodeString())),
                        text("email", card.getManufacturerEmail(false)), edit.deleted.value_or(card.isDeleted()),
                        card.getLastModified());
}

void requireLogoName(const Manufacturer& card)
{
    const fileString logo = card.getManufacturerLogoName();
    if (!logo.empty() && !Library::isSafeLogoName(logo))
        throw DataError({"\"%1\" is not a safe name for a logo", {logo.utf8()}},
                        "The logo itself belongs in " + PathUtils::getObject().getManufacturerDataPath().utf8());
}

/// What is wrong with one card.
class CardCheck
{
public:
    explicit CardCheck(bool hasDefaultText) : hasDefaultText_(hasDefaultText) {}

    void check(long id, const Manufacturer& card)
    {
        id_ = id;
        name_ = utf8(card.getManufacturerName());
        if (name_.empty())
            add("has no name");
        if (card.getLastModified().is_special())
            add("does not tell when it was changed, so no update reaches its logo");
        if (!hasDefaultText_ && (card.isPhoneDefaulted() || card.isFaxDefaulted() || card.isEmailDefaulted()))
            add("stands for the default text, which is empty");
        checkLogo(card);
    }

    std::vector<CardProblem> take() { return std::move(problems_); }

private:
    void add(const std::string& reason) { problems_.push_back({id_, name_, reason}); }

    void checkLogo(const Manufacturer& card)
    {
        const fileString logo = card.getManufacturerLogoName();
        if (logo.empty() || card.isDeleted())
            return;
        if (!Library::isSafeLogoName(logo))
            add("names the logo \"" + logo.utf8() + "\", which is not a safe name");
        else if (!hasLogoFile(card))
            add("names the logo \"" + logo.utf8() + "\", which is not there");
    }

    bool hasDefaultText_;
    long id_ = 0;
    std::string name_;
    std::vector<CardProblem> problems_;
};

}  // namespace

const std::array<CardField, 5> cardFields{
    {{"name", "Name", [](const Manufacturer& card) -> const std::u32string& { return card.getManufacturerName(); },
      never},
     {"url", "Web address", [](const Manufacturer& card) -> const std::u32string& { return card.getManufacturerUrl(); },
      never},
     {"phone", "Phone",
      [](const Manufacturer& card) -> const std::u32string& { return card.getManufacturerPhoneNumber(false); },
      [](const Manufacturer& card) { return card.isPhoneDefaulted(); }},
     {"fax", "Fax",
      [](const Manufacturer& card) -> const std::u32string& { return card.getManufacturerFaxNumber(false); },
      [](const Manufacturer& card) { return card.isFaxDefaulted(); }},
     {"email", "E-mail",
      [](const Manufacturer& card) -> const std::u32string& { return card.getManufacturerEmail(false); },
      [](const Manufacturer& card) { return card.isEmailDefaulted(); }}}};

std::vector<std::string> changedFields(const Manufacturer& before, const Manufacturer& after)
{
    std::vector<std::string> changed;
    for (const CardField& field : cardFields)
        if (field.stored(before) != field.stored(after))
            changed.emplace_back(field.name);
    if (before.getManufacturerLogoName() != after.getManufacturerLogoName())
        changed.emplace_back("logo");
    if (before.isDeleted() != after.isDeleted())
        changed.emplace_back("deleted");
    return changed;
}

bool hasLogoFile(const Manufacturer& card)
{
    const fileString name = card.getManufacturerLogoName();
    return Library::isSafeLogoName(name) &&
           !Library::logoIsBehindLink(PathUtils::getObject().getManufacturerDataPath(), name) &&
           FileUtils::fileSize(card.getManufacturerFullLogoName()) > 0;
}

fileString manufacturerFile()
{
    return PathUtils::getObject().getManufacturerDataPath() / U"manufacturer_data.json";
}

FileLock lockManufacturers(const std::stop_token& stop)
{
    FileLock lock = lockFile(manufacturerFile(), "changing the manufacturers", stop);
    WorkFolder::removeLeftovers(manufacturerFile().parentPath());
    return lock;
}

// The module's manager treats an unreadable file as one without cards, and would write over it.
ManufacturerFile installedManufacturers()
{
    ManufacturerFile file;
    const Library::DataFileResult reading = file.read(manufacturerFile());
    if (!reading && reading.fault != Library::DataFileFault::Missing)
        throw FileError(manufacturerFile(), {"%1; repair it, or move it away", {reasonOf(reading)}});
    return file;
}

void saveManufacturers(ManufacturerFile file, const ManufacturerFile& before)
{
    ManufacturerFile::stampChanges(file.cards, before.cards);
    FileUtils::createDirectoriesWithPerm(PathUtils::getObject().getManufacturerDataPath());
    if (!file.write(manufacturerFile()))
        throw FileError(manufacturerFile(), "cannot be written; the cards are as they were");
    ManufacturerManager::cleanup();  // it reads the file anew when it is next asked for
}

const Manufacturer& cardWithId(const ManufacturerFile& file, long id)
{
    const auto found = file.cards.find(id);
    if (found == file.cards.end())
        throw DataError({"there is no manufacturer %1", {std::to_string(id)}},
                        "\"velk manufacturer list\" shows all of them.");
    return found->second;
}

EditedCard editCard(long id, const CardEdit& edit)
{
    const FileLock lock = lockManufacturers();
    const ManufacturerFile before = installedManufacturers();
    const bool isThere = before.cards.contains(id);
    if (edit.make && isThere)
        throw DataError("there is already a manufacturer " + std::to_string(id), "Leave out --new to change it.");
    if (!edit.make && !isThere)
        throw DataError({"there is no manufacturer %1", {std::to_string(id)}}, "Add --new to make it.");
    ManufacturerFile after = before;
    Manufacturer& card = after.cards[id];
    const Manufacturer old = card;
    card = edited(card, edit);
    requireLogoName(card);
    EditedCard result{card.getManufacturerName(), changedFields(old, card)};
    if (edit.make || !result.changed.empty())
        saveManufacturers(std::move(after), before);
    return result;
}

bool editDefaultText(const std::string& text)
{
    const FileLock lock = lockManufacturers();
    const ManufacturerFile before = installedManufacturers();
    ManufacturerFile after = before;
    after.defaultText = StringConvert::toUnicodeFromUtf8(text);
    if (after.defaultText == before.defaultText)
        return false;
    saveManufacturers(std::move(after), before);
    return true;
}

std::vector<CardProblem> checkManufacturers(const ManufacturerFile& file)
{
    CardCheck check(!file.defaultText.empty());
    for (const auto& [id, card] : file.cards)
        check.check(id, card);
    std::vector<CardProblem> problems = check.take();
    if (!manufacturerFile().pathExists())
        problems.push_back({{}, {}, "there is no data file yet; \"velk manufacturer update\" fetches one"});
    if (!FileUtils::canWriteFile(manufacturerFile()))
        problems.push_back({{}, {}, "the data file cannot be written"});
    return problems;
}

}  // namespace VelkHost
