#pragma once

#include <VelkLibrary/Data/DataFileResult.h>
#include <VelkLibrary/Manufacturer/ManufacturerFile.h>

#include <string>
#include <vector>

/// @file
/// What bringing the manufacturers up to date did.

namespace Library {

/// What became of a card.
enum class CardChange {
    Unchanged,  ///< here as before
    Changed,    ///< here with another content or another time
    New,        ///< here for the first time
    Gone        ///< the service no longer has it
};

/// What became of a card's logo.
enum class LogoChange {
    Unchanged,  ///< not asked for, or the same picture came
    Changed,    ///< another picture came
    New,        ///< a picture came where none was
    Gone,       ///< the card names none any more, and the file was removed
    Failed      ///< named, but it did not come; `logoReason` says why
};

/// What became of a manufacturer.
struct ManufacturerChange
{
    long id = 0;
    CardChange card = CardChange::Unchanged;
    LogoChange logo = LogoChange::Unchanged;
    std::string logoReason;  ///< of LogoChange::Failed, UTF-8
};

/// How an update from the content service ended.
enum class ManufacturerUpdateOutcome {
    NotFetched,   ///< the service's data file did not come; `reason` says why
    NotReadable,  ///< what came is not a data file; `reading` says why
    NotNewer,     ///< the service's file is not newer than the one here: everything is as it was
    Stopped,      ///< stopped (Curl::Stoppable): the cards are as they were, and the next update brings all
    Taken,        ///< the service's cards are here and in the data file
    NotWritten    ///< they are here, but the data file could not be written; `writing` says why
};

/// Everything that an update learned and did.
struct ManufacturerUpdate
{
    ManufacturerUpdateOutcome outcome = ManufacturerUpdateOutcome::NotFetched;
    std::string reason;        ///< of NotFetched, UTF-8
    DataFileResult reading;    ///< of the service's file
    DataFileResult writing;    ///< of the data file
    ManufacturerFile offered;  ///< what the service's file holds
    bool differs = false;      ///< the offered cards or the default text are not those that were here
    bool textChanged = false;  ///< the default text is another one now
    /// One for each card that was here or is here now, by ascending id. Of Taken and NotWritten only.
    std::vector<ManufacturerChange> changes;
};

}  // namespace Library
