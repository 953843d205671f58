#include "host/browser/StoredPreferences.h"

#include "host/browser/SettingsFile.h"
#include "host/browser/Worker.h"
#include "host/support/LibraryPreference.h"
#include "host/support/QtText.h"
#include "host/support/System.h"

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Reporting/PreferenceNumbers.h>

#include <QSettings>

#include <any>
#include <memory>
#include <mutex>

namespace VelkHost {
namespace {

/// A preference of the module, and how its value is read.
struct Known
{
    std::size_t number;
    std::any (*read)(const QVariant& value);
};

std::any readWay(const QVariant& value)
{
    bool isNumber = false;
    const int way = value.toInt(&isNumber);
    return isNumber && way >= 1 && way <= 3 ? std::any(way) : std::any();
}

std::any readSwitch(const QVariant& value)
{
    return value.toBool();
}

constexpr Known knownPreferences[] = {
    {Velk::preferenceNumbers::progressDisplay, readWay},
    {Velk::preferenceNumbers::lastManualUpdateFailed, readSwitch},
    {Velk::preferenceNumbers::coreLibrariesStay, readSwitch},
};

QString keyOf(std::size_t number)
{
    return QStringLiteral("preferences/%1").arg(number);
}

QVariant storable(const std::any& value)
{
    if (const int* const number = std::any_cast<int>(&value))
        return *number;
    if (const bool* const on = std::any_cast<bool>(&value))
        return *on;
    return {};
}

/// Nobody waits for this, so a failure is told where it disturbs nobody.
void keep(const QString& file, const QString& key, const QVariant& value)
{
    const QString failure = failureOf([&] {
        changeSettings(fileString(file.toStdString()), [&](QSettings& settings) { settings.setValue(key, value); });
    });
    if (!failure.isEmpty())
        writeToError("velk-browser: " + failure.toStdString() + "\n");
}

}  // namespace

QString settingsFile()
{
    return qtText((PathUtils::getObject().getUserDatabasePath() / U"browser.ini").utf8());
}

void keepPreferences(Velk::HostServices& services, const QString& file)
{
    const SettingsFile settings(file);
    for (const Known& known : knownPreferences) {
        const QVariant stored = settings.value(keyOf(known.number));
        const std::any value = stored.isValid() ? known.read(stored) : std::any();
        if (value.has_value())
            services.preferences.push_back(libraryPreference(known.number, value));
    }
    // May be called on several threads.
    services.preferenceChanged = [file, mutex = std::make_shared<std::mutex>()](std::size_t number,
                                                                                const std::any& value) {
        const QVariant stored = storable(value);
        const std::lock_guard lock(*mutex);
        if (stored.isValid())
            keep(file, keyOf(number), stored);
    };
}

}  // namespace VelkHost
