#pragma once

#include <VelkCommon/Files/fileString.h>

#include <QSettings>

#include <functional>

namespace VelkHost {

/// The settings in an INI file, which Qt 5 and Qt 6 write in different ways, and which is read in either. What cannot
/// be read counts as empty.
class SettingsFile : public QSettings
{
public:
    explicit SettingsFile(const QString& file);
};

/// Changes the settings in an INI file, which is made when missing, with its folder. Whoever reads sees the old file or
/// the new one, a killed program leaves nothing that the next call does not remove, and two programs that change
/// different settings lose nothing. What is not in the form of settings counts as empty. Throws FileError when the file
/// cannot be read or written, and is then as it was; and DataError while another program keeps it locked. Any thread.
void changeSettings(const fileString& file, const std::function<void(QSettings&)>& change);

}  // namespace VelkHost
