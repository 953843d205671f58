#pragma once

#include <VelkCommon/Reporting/PreferenceEngine.h>
#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkLibrary/UI/ProgressDisplayType.h>

/// @file
/// The display type as the preference store keeps it: as an int.

namespace Library::detail {

inline ProgressDisplayType readDisplayType()
{
    PrefSet& preferences = PreferenceEngine::getThePrefs().getPrefSet();
    return ProgressDisplayType{*preferences.get<int>(Velk::preferenceNumbers::progressDisplay)};
}

inline void writeDisplayType(ProgressDisplayType type)
{
    PrefSet& preferences = PreferenceEngine::getThePrefs().getPrefSet();
    preferences.set<int>(Velk::preferenceNumbers::progressDisplay, static_cast<int>(type));
}

}  // namespace Library::detail
