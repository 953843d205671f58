#include "host/support/LibraryPreference.h"

#include <VelkCommon/Reporting/PreferenceEngine.h>

#include <utility>

namespace VelkHost {

Velk::HostPreference libraryPreference(std::size_t number, std::any value)
{
    const SinglePref& preference = PreferenceEngine::getThePrefs().getPrefSet().getPref(number);
    return {number, preference.getDescription(), std::move(value)};
}

}  // namespace VelkHost
