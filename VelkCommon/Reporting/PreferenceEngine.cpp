#include <VelkCommon/Reporting/PreferenceEngine.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Reporting/MessagingSystem.h>
#include <VelkCommon/Reporting/PreferenceNumbers.h>
#include <VelkCommon/Reporting/detail/ReportPlaces.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkCommon/detail/AskHost.h>
#include <VelkCommon/detail/NeverDestroyed.h>

#include <boost/core/demangle.hpp>

namespace {

const std::vector<Velk::HostPreference>& defaultPreferences()
{
    using namespace Velk::preferenceNumbers;
    static Velk::detail::NeverDestroyed<const std::vector<Velk::HostPreference>> preferences([] {
        return std::vector<Velk::HostPreference>{
            {progressDisplay, "How progress is described", 1},
            {lastManualUpdateFailed, "The last manual update had errors", false},
            {coreLibrariesStay, "Core libraries are left alone by an automatic update", false},
        };
    });
    return *preferences;
}

/// The preference as it is without a host; for most numbers it has neither description nor value.
SinglePref defaultPreference(std::size_t index)
{
    for (const Velk::HostPreference& preference : defaultPreferences()) {
        if (preference.number == index)
            return {preference.description, preference.value};
    }
    return {std::string(), std::any()};
}

}  // namespace

SinglePref::SinglePref(std::string description, std::any value)
    : description_(std::move(description)), value_(std::move(value))
{}

SinglePref& PrefSet::getPref(std::size_t index)
{
    const std::lock_guard lock(mutex_);
    return entries_.try_emplace(index, std::string(), std::any()).first->second;
}

void PrefSet::reportMismatch(Access access, const SinglePref& pref, const std::type_info& requested) const
{
    namespace places = Velk::detail::places;
    const bool reading = access == Access::Get;
    const std::string text = std::string(reading ? "Get" : "Set") + " pref isA failure: Expected preference '" +
                             pref.getDescription() + "' to be of type '" + boost::core::demangle(requested.name()) +
                             "', but instead found it to be of type '" +
                             boost::core::demangle(pref.value().type().name()) + "'.";
    const Velk::ReportPlace& place = reading ? places::preferenceRead : places::preferenceWritten;
    error::MessagingSystem::control().notify(place.source, place.line, error::WarningTrait(),
                                             Velk::textNumbers::preferenceOfOtherType, text, std::string(),
                                             std::string());
}

void PrefSet::store(std::size_t index, SinglePref& pref, const std::any& value)
{
    {
        const std::lock_guard lock(mutex_);
        pref.value_ = value;
        changed_.insert(index);
    }
    Velk::detail::askHost(Velk::host()->preferenceChanged, index, value);
}

void PrefSet::adopt(const std::vector<Velk::HostPreference>& preferences)
{
    const std::lock_guard lock(mutex_);
    for (const std::size_t index : std::exchange(changed_, {}))
        entries_.at(index) = defaultPreference(index);
    for (const Velk::HostPreference& preference : preferences) {
        entries_.insert_or_assign(preference.number, SinglePref(preference.description, preference.value));
        changed_.insert(preference.number);
    }
}

PreferenceEngine::PreferenceEngine()
{
    for (const Velk::HostPreference& preference : defaultPreferences())
        applicationSet_.entries_.emplace(preference.number, SinglePref(preference.description, preference.value));
}

PreferenceEngine& PreferenceEngine::getThePrefs()
{
    static Velk::detail::NeverDestroyed<PreferenceEngine> engine([] { return PreferenceEngine(); });
    return *engine;
}

void PreferenceEngine::adopt(const std::vector<Velk::HostPreference>& preferences)
{
    applicationSet_.adopt(preferences);
}
