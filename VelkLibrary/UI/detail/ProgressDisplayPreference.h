#pragma once

#include <VelkCommon/Reporting/PreferenceEngine.h>
#include <VelkLibrary/UI/ProgressDisplayType.h>

#include <cstddef>

/// @file
/// The display type as the preference store keeps it: as an int.

namespace Library::detail {

inline constexpr std::size_t displayTypePreference = 236;

inline ProgressDisplayType readDisplayType()
{
    return ProgressDisplayType{*PreferenceEngine::getThePrefs().getPrefSet().get<int>(displayTypePreference)};
}

inline void writeDisplayType(ProgressDisplayType type)
{
    PreferenceEngine::getThePrefs().getPrefSet().set<int>(displayTypePreference, static_cast<int>(type));
}

}  // namespace Library::detail
