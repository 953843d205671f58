#pragma once

#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

namespace VelkHost {

/// What an update did to a card.
struct CardChange
{
    enum class Kind { Added, Changed, Removed };

    long id = 0;
    std::string name;
    Kind kind = Kind::Changed;
    std::vector<std::string> what;  ///< the fields that changed; "image" for the logo itself
    bool logoMissing = false;       ///< its logo could not be fetched
};

struct ManufacturerRefresh
{
    enum class Outcome {
        Updated,  ///< what the service has was taken
        Current,  ///< the service has the same
        Newer,    ///< the service has something else, but not newer than what is here
        Stopped   ///< it was asked to end before all logos were there
    };

    Outcome outcome = Outcome::Current;
    std::vector<CardChange> changes;  ///< in the order of the ids
    bool defaultTextChanged = false;
    std::size_t cards = 0;         ///< how many there are now
    std::size_t missingLogos = 0;  ///< how many could not be fetched
};

/// Lets the module bring the installation's manufacturers up to date, and tells what that did. Throws
/// DataError when the service cannot be reached or has no such data, FileError as installedManufacturers().
/// Ends soon once `stop` is requested; then the cards are as they were, and the next update brings all.
ManufacturerRefresh refreshManufacturers(const std::string& dataUrl, const std::string& logoUrl,
                                         std::stop_token stop = {});

}  // namespace VelkHost
