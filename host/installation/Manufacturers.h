#pragma once

#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Manufacturer/ManufacturerFile.h>

#include <array>
#include <map>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

/// @file
/// The installation's manufacturers: their cards, data file and logos. Each function reads the file as it is now and
/// has saved its change when it returns; when it throws, nothing has changed. One thread at a time. Everything throws
/// FileError when the data file is damaged or cannot be written.

namespace VelkHost {

using ManufacturerCards = ManufacturerFile::Cards;

/// A text of a card.
struct CardField
{
    const char* name;   ///< of the option that changes it, and in JSON
    const char* title;  ///< for people
    const std::u32string& (*stored)(const Manufacturer& card);
    bool (*isDefault)(const Manufacturer& card);  ///< whether the default text is shown in its place

    /// The text that people see.
    const std::u32string& shown(const Manufacturer& card, const std::u32string& defaultText) const
    {
        return isDefault(card) ? defaultText : stored(card);
    }
};
/// Every text but the logo's name.
extern const std::array<CardField, 5> cardFields;

/// The names of the fields that differ between two states of a card, apart from its time.
std::vector<std::string> changedFields(const Manufacturer& before, const Manufacturer& after);

/// Whether the logo's file exists. A name that is not safe has no file, wherever it leads,
/// and none is behind a link.
bool hasLogoFile(const Manufacturer& card);

/// The current content of the installation's data file; empty when there is no file.
ManufacturerFile installedManufacturers();

/// Takes the lock of the data file: whoever changes it holds this from reading to writing. Throws DataError when
/// somebody else has it for long.
FileLock lockManufacturers(const std::stop_token& stop = {});

/// Writes the installation's data file, under its lock. Cards that differ from those in `before` get the current time
/// as their last change.
void saveManufacturers(ManufacturerFile file, const ManufacturerFile& before);

/// The path of the data file.
fileString manufacturerFile();

/// The card with that id in `file`; throws DataError when there is none.
const Manufacturer& cardWithId(const ManufacturerFile& file, long id);

/// What is to become of a card.
struct CardEdit
{
    std::map<std::string, std::string> texts;  ///< by the names of the fields, and "logo"; UTF-8
    std::optional<bool> deleted;
    bool make = false;  ///< the card is a new one

    bool empty() const { return texts.empty() && !deleted && !make; }
};

/// What an edit did.
struct EditedCard
{
    std::u32string name;               ///< of the manufacturer, now
    std::vector<std::string> changed;  ///< the names of the fields that changed
};

/// Changes a card, or makes one, and saves. If no field changes, nothing is written. Throws DataError when the card to
/// change is missing, when the card to make exists already, and for a logo's name that is not safe (see
/// Library::isSafeLogoName()).
EditedCard editCard(long id, const CardEdit& edit);

/// Replaces the default text and saves; false when it is the same already.
bool editDefaultText(const std::string& text);

/// A problem of one card, or of the data file as a whole when there is no id.
struct CardProblem
{
    std::optional<long> id;
    std::string name;
    std::string reason;  ///< a sentence without its subject
};
/// What is wrong with the cards of the installation's data file, `file`, and with their logos.
std::vector<CardProblem> checkManufacturers(const ManufacturerFile& file);

}  // namespace VelkHost
