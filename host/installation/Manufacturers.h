#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Manufacturer/ManufacturerFile.h>

#include <array>
#include <map>
#include <optional>
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
    bool (*isDefault)(const Manufacturer& card);  ///< the default text is shown in its place

    /// What people see of it.
    const std::u32string& shown(const Manufacturer& card, const std::u32string& defaultText) const
    {
        return isDefault(card) ? defaultText : stored(card);
    }
};
/// All of them but the logo's name.
extern const std::array<CardField, 5> cardFields;

/// The names of what differs between two states of a card, its time aside.
std::vector<std::string> changedFields(const Manufacturer& before, const Manufacturer& after);

/// The logo's file is there. A name that is not a plain file name has none, wherever it leads.
bool hasLogoFile(const Manufacturer& card);

/// What the installation's data file holds now; nothing when there is none.
ManufacturerFile installedManufacturers();

/// Writes the installation's data file. Cards that differ from those in `before` get the current time as their last
/// change.
void saveManufacturers(ManufacturerFile file, const ManufacturerFile& before);

/// The path of the data file.
fileString manufacturerFile();

/// The card of an id in `file`; throws DataError when there is none.
const Manufacturer& cardWithId(const ManufacturerFile& file, long id);

/// What is to become of a card.
struct CardEdit
{
    std::map<std::string, std::string> texts;  ///< by the names of the fields, and "logo"; UTF-8
    std::optional<bool> deleted;
    bool make = false;  ///< the card is a new one

    bool empty() const { return texts.empty() && !deleted && !make; }
};
/// Changes a card, or makes one, and saves. Returns the names of what changed; without any, nothing is written.
/// Throws DataError for a card that is missing, or is there already, and for a logo's name that is none.
std::vector<std::string> editCard(long id, const CardEdit& edit);

/// Replaces the default text and saves; false when it is this already.
bool editDefaultText(const std::string& text);

/// Something wrong with a card, or with all when there is no id.
struct CardProblem
{
    std::optional<long> id;
    std::string name;
    std::string reason;  ///< a sentence without its subject
};
/// What is wrong with the cards of the installation's data file, `file`, and with their logos.
std::vector<CardProblem> checkManufacturers(const ManufacturerFile& file);

}  // namespace VelkHost
