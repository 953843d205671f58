#pragma once

#include <VelkLibrary/Data/DataFileResult.h>
#include <VelkLibrary/Manufacturer/ManufacturerFile.h>

#include <string>
#include <vector>

/// @file
/// What an update of the manufacturers did.

namespace Library {

/// What became of a card.
enum class CardChange {
    Unchanged,  ///< the card is the same as before
    Changed,    ///< the card has other content or another time
    New,        ///< the card was not here before
    Gone        ///< the service no longer has it
};

/// What became of a card's logo.
enum class LogoChange {
    Unchanged,  ///< not asked for, or the same picture came
    Changed,    ///< another picture came
    New,        ///< a picture came where none was
    Gone,       ///< the card no longer names a logo, and the file was removed
    Failed      ///< the card names a logo that could not be fetched; `logoReason` says why
};

/// What became of a manufacturer.
struct ManufacturerChange
{
    long id = 0;                              ///< the id of the manufacturer's card
    CardChange card = CardChange::Unchanged;  ///< what became of the card
    LogoChange logo = LogoChange::Unchanged;  ///< what became of its logo
    std::string logoReason;                   ///< with LogoChange::Failed: why it failed, UTF-8
};

/// How an update from the content service ended.
enum class ManufacturerUpdateOutcome {
    NotFetched,   ///< the service's data file could not be fetched; `reason` says why
    NotReadable,  ///< what came is not a data file; `reading` says why
    NotNewer,     ///< the service's file is not newer than the one here: everything is as it was
    Stopped,      ///< stopped (Curl::Stoppable): the cards are as they were, and the next update fetches everything
    Taken,        ///< the service's cards were taken over and written to the data file
    NotWritten    ///< they were taken over, but the data file could not be written; `writing` says why
};

/// Everything that an update learned and did.
struct ManufacturerUpdate
{
    /// How the update ended.
    ManufacturerUpdateOutcome outcome = ManufacturerUpdateOutcome::NotFetched;
    std::string reason;        ///< with NotFetched: why it failed, UTF-8
    DataFileResult reading;    ///< of the service's file
    DataFileResult writing;    ///< of the data file
    ManufacturerFile offered;  ///< what the service's file holds
    bool differs = false;      ///< the offered cards or default text differ from those that were here
    bool textChanged = false;  ///< the update changed the default text
    /// One for each card that was here or is here now, by ascending id. With Taken and NotWritten only.
    std::vector<ManufacturerChange> changes;
};

}  // namespace Library
