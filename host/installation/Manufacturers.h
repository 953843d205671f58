#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Manufacturer/Manufacturer.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

class ManufacturerManager;

/// @file
/// The installation's manufacturers: their cards, data file and logos. Everything throws FileError when the
/// data file is damaged or cannot be written.

namespace VelkHost {

using ManufacturerCards = std::map<long, Manufacturer>;

/// A text of a card.
struct CardField
{
    const char* name;   ///< of the option that changes it, and in JSON
    const char* title;  ///< for people
    const std::u32string& (*text)(const Manufacturer& card,
                                  bool resolveDefault);  ///< resolved where it may be the default text
};
/// All of them but the logo's name.
extern const std::array<CardField, 5> cardFields;

/// The names of what differs between two states of a card, its time aside.
std::vector<std::string> changedFields(const Manufacturer& before, const Manufacturer& after);

/// The logo's file is there. A name that is no plain file name has none, wherever it leads.
bool hasLogoFile(const Manufacturer& card);

/// The manager, with what the installation's data file holds now.
ManufacturerManager& installedManufacturers();

/// A copy of what a manager holds.
struct HeldCards
{
    ManufacturerCards cards;
    std::u32string defaultText;
};
HeldCards heldCards(const ManufacturerManager& manager);

/// The data file.
fileString manufacturerFile();
/// Makes the manager anew, and throws FileError unless the data file holds exactly this.
void requireWritten(const HeldCards& expected);

/// The card of an id; throws DataError when there is none.
const Manufacturer& cardWithId(long id);

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
/// What is wrong with the installation's cards and logos.
std::vector<CardProblem> checkManufacturers();

}  // namespace VelkHost
