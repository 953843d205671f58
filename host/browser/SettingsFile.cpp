#include "host/browser/SettingsFile.h"

#include "host/installation/DataLock.h"
#include "host/support/FileError.h"
#include "host/support/QtText.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/WorkFolder.h>

#include <string>

namespace VelkHost {
namespace {

constexpr std::size_t mostBytes = std::size_t{64} << 20;

QString nameOf(const fileString& file)
{
    return qtText(file.utf8());
}

/// The copy of the settings in `folder` that is to be changed: empty unless `bytes` are settings. QSettings takes a
/// file that it cannot read for an empty one, and would write that back; so it reads two copies.
fileString copyToChange(const std::string& bytes, const fileString& folder, const fileString& original)
{
    fileString copy = folder / U"next.ini";
    if (bytes.empty())
        return copy;
    const fileString other = folder / U"before.ini";
    writeWhole(copy, bytes);
    writeWhole(other, bytes);
    const SettingsFile first(nameOf(copy));
    const SettingsFile second(nameOf(other));
    if (first.status() != second.status() || first.allKeys() != second.allKeys())
        throw FileError(original, "cannot be read");
    return first.status() == QSettings::NoError ? copy : folder / U"new.ini";
}

/// Whether a file has these settings to its end. On a full disk QSettings may write less, and take that for all.
bool isWhole(const fileString& file, const QStringList& keys)
{
    const std::string bytes = readWhole(file, mostBytes);
    return bytes.empty() ? keys.isEmpty() : bytes.back() == '\n' && SettingsFile(nameOf(file)).allKeys() == keys;
}

}  // namespace

// Qt 6 writes UTF-8. Qt 5 writes ASCII, which it must go on with, since it breaks characters of two units in UTF-8.
SettingsFile::SettingsFile(const QString& file) : QSettings(file, QSettings::IniFormat)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    setIniCodec("UTF-8");
    static_cast<void>(allKeys());  // until then, no value is decoded
    setIniCodec(static_cast<QTextCodec*>(nullptr));
#endif
}

// Not by QSettings alone: its lock, where it was killed, holds up the next program for half a minute, and what it was
// writing stays for ever.
void changeSettings(const fileString& file, const std::function<void(QSettings&)>& change)
{
    const FileLock lock = lockFile(file, "keeping the settings");
    WorkFolder::removeLeftovers(file.parentPath());
    const WorkFolder work(file.parentPath());
    if (work.path().empty())
        throw FileError(file, "cannot be written");
    const std::string bytes = file.pathExists() ? readWhole(file, mostBytes) : std::string();
    const fileString copy = copyToChange(bytes, work.path(), file);
    SettingsFile settings(nameOf(copy));
    change(settings);
    settings.sync();
    const fileString written = work.path() / U"written.ini";  // QSettings would know the old name from memory
    const bool isWritten = settings.status() == QSettings::NoError && FileUtils::renameFile(copy, written) &&
                           isWhole(written, settings.allKeys());
    if (!isWritten || !FileUtils::moveFile(written, file, true))
        throw FileError(file, "cannot be written");
}

}  // namespace VelkHost
