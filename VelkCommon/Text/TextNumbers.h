#pragma once

/// The numbers of the texts that the library shows, see HostServices::resourceString. Hosts have
/// translations under them, so they never change. englishText() has each in English.
namespace Velk::textNumbers {

// The progress strip.
inline constexpr unsigned int percentage = 2749;         ///< "%1%" is the percentage done
inline constexpr unsigned int amounts = 2750;            ///< "%1%" is the amount done, "%2%" the whole one
inline constexpr unsigned int amountsToolTip = 2752;     ///< while the amounts are shown
inline constexpr unsigned int barOnlyToolTip = 2753;     ///< while nothing is shown beside the bar
inline constexpr unsigned int percentageToolTip = 2754;  ///< while the percentage is shown

// The catalog update.
inline constexpr unsigned int downloading = 8709;       ///< "%1%" is the name of a catalog
inline constexpr unsigned int checkingCatalogs = 8717;  ///< before the catalogs of a kind are looked at
inline constexpr unsigned int checkingCatalog = 8723;   ///< a file name follows directly
inline constexpr unsigned int askingService = 8727;     ///< "%1%" is the name of a catalog's file
inline constexpr unsigned int downloadUnit = 8745;      ///< what downloads are counted in

/// The entry for no filter in menus.
inline constexpr unsigned int noFilter = 8930;

// The names of the object styles, which have the numbers of their names.
inline constexpr unsigned int firstStyle = 10000;  ///< of fifteen
inline constexpr unsigned int lastStyle = 10014;   ///< the last one

/// What cards of manufacturers say that have no text of their own, where the data file has none either.
inline constexpr unsigned int manufacturerCard = 10108;

// Messages, whose numbers are those of their texts.
inline constexpr unsigned int preferenceOfOtherType = 272032175;  ///< "%1%" tells all
inline constexpr unsigned int unwritableFile = 272032391;         ///< "%1%" is its path

}  // namespace Velk::textNumbers
