#include "host/installation/Manufacturers.h"

#include "host/catalog/ManufacturerData.h"
#include "host/installation/DataError.h"
#include "host/support/FileError.h"
#include "host/support/InstallHost.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/LogoName.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <algorithm>

namespace VelkHost {
namespace {

std::string utf8(const std::u32string& text)
{
    return StringConvert::toStdUtf8String(text);
}

/// Why the data file is none, as its publisher would be told.
Reason whyUnreadable(const fileString& path)
{
    try {
        readManufacturerLogos(path);
        return "cannot be read";
    } catch (const FileError& error) {
        return error.why();
    }
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
        throw DataError({"\"%1\" is no plain file name for a logo", {logo.utf8()}},
                        "The logo itself belongs into " + PathUtils::getObject().getManufacturerDataPath().utf8());
}

void save(ManufacturerManager& manager, HeldCards held)
{
    manager.saveModifiedManufacturers(held.cards, held.defaultText);
    requireWritten(held);
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
            add("names the logo \"" + logo.utf8() + "\", which is no plain file name");
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
    {{"name", "Name",
      [](const Manufacturer& card, bool) -> const std::u32string& { return card.getManufacturerName(); }},
     {"url", "Web address",
      [](const Manufacturer& card, bool) -> const std::u32string& { return card.getManufacturerUrl(); }},
     {"phone", "Phone",
      [](const Manufacturer& card, bool resolve) -> const std::u32string& {
          return card.getManufacturerPhoneNumber(resolve);
      }},
     {"fax", "Fax",
      [](const Manufacturer& card, bool resolve) -> const std::u32string& {
          return card.getManufacturerFaxNumber(resolve);
      }},
     {"email", "E-mail", [](const Manufacturer& card, bool resolve) -> const std::u32string& {
          return card.getManufacturerEmail(resolve);
      }}}};

std::vector<std::string> changedFields(const Manufacturer& before, const Manufacturer& after)
{
    std::vector<std::string> changed;
    for (const CardField& field : cardFields)
        if (field.text(before, false) != field.text(after, false))
            changed.emplace_back(field.name);
    if (before.getManufacturerLogoName() != after.getManufacturerLogoName())
        changed.emplace_back("logo");
    if (before.isDeleted() != after.isDeleted())
        changed.emplace_back("deleted");
    return changed;
}

bool hasLogoFile(const Manufacturer& card)
{
    return Library::isSafeLogoName(card.getManufacturerLogoName()) &&
           FileUtils::fileSize(card.getManufacturerFullLogoName()) > 0;
}

ManufacturerManager& installedManufacturers()
{
    // Another installation may have been meant before.
    ManufacturerManager::cleanup();
    ManufacturerManager& manager = ManufacturerManager::getManufacturerManager();
    // The library takes an unreadable file for one without cards, and would write over it.
    const fileString path = manufacturerFile();
    if (manager.getManufacturers().empty() && path.pathExists() &&
        !manager.changeManufacturerDataPath(PathUtils::getObject().getManufacturerDataPath()))
        throw FileError(path, {"%1; mend it, or move it away", {whyUnreadable(path)}});
    return manager;
}

HeldCards heldCards(const ManufacturerManager& manager)
{
    return {manager.getManufacturers(), manager.getDefaultText()};
}

fileString manufacturerFile()
{
    return PathUtils::getObject().getManufacturerDataPath() / U"manufacturer_data.json";
}

// The library tells nobody that a disk was full.
void requireWritten(const HeldCards& expected)
{
    const ManufacturerManager& manager = installedManufacturers();
    const ManufacturerCards& written = manager.getManufacturers();
    const auto same = [](const auto& left, const auto& right) {
        return left.first == right.first && changedFields(left.second, right.second).empty();
    };
    if (manager.getDefaultText() != expected.defaultText ||
        !std::equal(expected.cards.begin(), expected.cards.end(), written.begin(), written.end(), same))
        throw FileError(manufacturerFile(), "cannot be written; the cards are as they were");
}

const Manufacturer& cardWithId(long id)
{
    const ManufacturerManager& manager = installedManufacturers();
    if (!manager.manufacturerExists(id))
        throw DataError({"there is no manufacturer %1", {std::to_string(id)}},
                        "\"velk manufacturer list\" shows those that there are.");
    return manager.getManufacturer(id);
}

std::vector<std::string> editCard(long id, const CardEdit& edit)
{
    ManufacturerManager& manager = installedManufacturers();
    if (edit.make && manager.manufacturerExists(id))
        throw DataError("there is a manufacturer " + std::to_string(id) + " already", "Leave out --new to change it.");
    if (!edit.make && !manager.manufacturerExists(id))
        throw DataError({"there is no manufacturer %1", {std::to_string(id)}}, "With --new it is made.");
    HeldCards held = heldCards(manager);
    Manufacturer& card = held.cards[id];
    const Manufacturer before = card;
    card = edited(card, edit);
    requireLogoName(card);
    std::vector<std::string> changed = changedFields(before, card);
    if (edit.make || !changed.empty())
        save(manager, std::move(held));
    return changed;
}

bool editDefaultText(const std::string& text)
{
    ManufacturerManager& manager = installedManufacturers();
    HeldCards held = heldCards(manager);
    held.defaultText = StringConvert::toUnicodeFromUtf8(text);
    if (manager.getDefaultText() == held.defaultText)
        return false;
    save(manager, std::move(held));
    return true;
}

std::vector<CardProblem> checkManufacturers()
{
    const ManufacturerManager& manager = installedManufacturers();
    CardCheck check(!manager.getDefaultText().empty());
    for (const auto& [id, card] : manager.getManufacturers())
        check.check(id, card);
    std::vector<CardProblem> problems = check.take();
    if (!manufacturerFile().pathExists())
        problems.push_back({{}, {}, "there is no data file yet; \"velk manufacturer update\" fetches one"});
    if (!FileUtils::canWriteFile(manufacturerFile()))
        problems.push_back({{}, {}, "the data file cannot be written"});
    return problems;
}

}  // namespace VelkHost
