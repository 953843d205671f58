#pragma once

#include <VelkCommon/Export.h>

#include <any>
#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Velk {
struct HostPreference;
}

/// One preference: a description and one value of one type, or no value.
class VELKCOMMON_EXPORT SinglePref
{
public:
    /// A preference of the type of `value`; one without a value when `value` is empty.
    SinglePref(std::string description, std::any value);

    /// What the preference is about, for messages.
    const std::string& getDescription() const noexcept { return description_; }

    /// The value as it is stored; empty when there is none.
    const std::any& value() const noexcept { return value_; }

private:
    friend class PrefSet;
    friend class PreferenceEngine;

    std::string description_;
    std::any value_;
};

/// A set of numbered preferences with typed reading and writing. Finding an entry is safe from any
/// thread; one preference is read and written by one thread at a time.
class VELKCOMMON_EXPORT PrefSet
{
public:
    /// The entry with that number. For a number that is not in use yet, an entry without a value is made.
    /// The reference is valid until the process ends.
    SinglePref& getPref(std::size_t index);

    /// The value of preference `index` when it is of type `T`. Otherwise the mismatch is reported as a
    /// warning and the result points to a default-constructed `T`. Never null; the pointer is valid
    /// until the next write of the same preference.
    template <typename T>
    const T* get(std::size_t index);

    /// Stores `value` when the preference holds a value of type `T`, and tells the host. Otherwise the
    /// mismatch is reported as a warning, the preference stays, and the result is false.
    template <typename T>
    bool set(std::size_t index, T value);

private:
    friend class PreferenceEngine;

    enum class Access { Get, Set };
    void reportMismatch(Access access, const SinglePref& pref, const std::type_info& requested) const;
    void store(std::size_t index, SinglePref& pref, const std::any& value);
    void adopt(const std::vector<Velk::HostPreference>& preferences);

    std::mutex mutex_;
    std::map<std::size_t, SinglePref> entries_;  // its entries never move, see getPref()
    std::set<std::size_t> changed_;              // numbers of the entries that may differ from their defaults
};

/// The host's preference store. PreferenceNumbers.h lists the numbers that the library uses, with their
/// defaults.
class VELKCOMMON_EXPORT PreferenceEngine
{
public:
    /// The process-wide store.
    static PreferenceEngine& getThePrefs();

    /// The application's numbered preferences.
    PrefSet& getPrefSet() noexcept { return applicationSet_; }

    /// Fills the store with the descriptions and values of a host, and with the defaults for all other
    /// numbers. For installHost(). References from PrefSet::getPref() stay valid. Writes only the entries
    /// that this host or an earlier one listed and those that were set; meanwhile, other threads may use
    /// all others.
    void adopt(const std::vector<Velk::HostPreference>& preferences);

private:
    PreferenceEngine();

    PrefSet applicationSet_;
};

template <typename T>
const T* PrefSet::get(std::size_t index)
{
    const SinglePref& pref = getPref(index);
    if (const T* value = std::any_cast<T>(&pref.value_))
        return value;
    reportMismatch(Access::Get, pref, typeid(T));
    static const T fallback{};
    return &fallback;
}

template <typename T>
bool PrefSet::set(std::size_t index, T value)
{
    SinglePref& pref = getPref(index);
    if (std::any_cast<T>(&pref.value_) == nullptr) {
        reportMismatch(Access::Set, pref, typeid(T));
        return false;
    }
    store(index, pref, std::any(std::move(value)));
    return true;
}
