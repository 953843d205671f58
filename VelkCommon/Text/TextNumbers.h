#pragma once

/// The numbers of the texts that the library shows, see HostServices::resourceString. Hosts keep
/// translations under them, so they never change. englishText() returns each text in English.
namespace Velk::textNumbers {

// The progress strip.
inline constexpr unsigned int percentage = 2749;         ///< "%1%" is the percentage done
inline constexpr unsigned int amounts = 2750;            ///< "%1%" is the amount done, "%2%" the total
inline constexpr unsigned int amountsToolTip = 2752;     ///< while the amounts are shown
inline constexpr unsigned int barOnlyToolTip = 2753;     ///< while nothing is shown beside the bar
inline constexpr unsigned int percentageToolTip = 2754;  ///< while the percentage is shown

// The catalog update.
inline constexpr unsigned int downloading = 8709;       ///< "%1%" is the name of a catalog
inline constexpr unsigned int checkingCatalogs = 8717;  ///< before the catalogs of one kind are checked
inline constexpr unsigned int checkingCatalog = 8723;   ///< a file name follows directly
inline constexpr unsigned int askingService = 8727;     ///< "%1%" is the name of a catalog's file
inline constexpr unsigned int downloadUnit = 8745;      ///< the unit in which downloads are counted

/// The entry in menus that stands for no filter.
inline constexpr unsigned int noFilter = 8930;

// The names of the object styles; the number of a style is that of its name.
inline constexpr unsigned int firstStyle = 10000;  ///< the first of fifteen
inline constexpr unsigned int lastStyle = 10014;   ///< the last one

/// The text of a manufacturer's card for which neither the card nor the data file has one.
inline constexpr unsigned int manufacturerCard = 10108;

// Messages; the number of a message is also that of its text.
inline constexpr unsigned int preferenceOfOtherType = 272032175;  ///< "%1%" is the whole message
inline constexpr unsigned int unwritableFile = 272032391;         ///< "%1%" is the path of the file

}  // namespace Velk::textNumbers
