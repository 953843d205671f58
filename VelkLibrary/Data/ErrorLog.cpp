#include <VelkLibrary/ErrorLog.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkCommon/Text/xl8.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <boost/uuid/uuid_io.hpp>

#include <ctime>
#include <locale>
#include <mutex>

namespace Library {
namespace {

// The log's path is asked for before the lock is taken: it is the host that answers, and a host may log.

constexpr double secondsToKeep = 604800.0;  // seven days

// Removes a log whose last record is too old. A log from the future stays.
void removeOutdatedLog()
{
    const fileString path = ErrorLog::file();
    const std::lock_guard lock(detail::errorLogMutex);
    if (!FileUtils::pathExists(path))
        return;
    const double age = std::difftime(std::time(nullptr), static_cast<std::time_t>(path.modificationTime()));
    if (age > secondsToKeep)
        FileUtils::removePath(path, FileUtils::noFlags);
}

// The message follows "|" as it is; its lines are not indented.
std::string recordOf(const std::string& message)
{
    std::string record = "---\nTime: " + getTimeNowString();
    record += "\nThread ID: " + std::to_string(Velk::Platform::currentThreadId());
    record += "\nMessage: |\n" + message;
    if (message.back() != '\n')
        record += '\n';
    return record += "...\n";
}

}  // namespace

ErrorLog::ErrorLog()
{
    // The host's global locale must not put separators into numbers.
    imbue(std::locale::classic());
}

ErrorLog::~ErrorLog()
{
    try {
        removeOutdatedLog();
        const std::string message = str();
        if (message.empty())
            return;
        const fileString path = file();
        const std::lock_guard lock(detail::errorLogMutex);
        Velk::Platform::appendText(path.utf8(), recordOf(message));
    } catch (...) {
        // A log that fails must not disturb the code that logged.
    }
}

ErrorLog& ErrorLog::operator<<(const boost::uuids::uuid& id)
{
    return *this << boost::uuids::to_string(id);
}

ErrorLog& ErrorLog::operator<<(const std::string& text)
{
    static_cast<std::ostream&>(*this) << text;
    return *this;
}

ErrorLog& ErrorLog::operator<<(const std::u32string& text)
{
    return *this << std::u32string_view(text);
}

ErrorLog& ErrorLog::operator<<(std::u32string_view text)
{
    return *this << StringConvert::toStdString(text, StringConvert::Default);
}

ErrorLog& ErrorLog::operator<<(const char32_t* text)
{
    return text != nullptr ? *this << std::u32string_view(text) : *this;
}

ErrorLog& ErrorLog::operator<<(const fileString& path)
{
    return *this << path.humanReadableString();
}

ErrorLog& ErrorLog::operator<<(const long long& value)
{
    static_cast<std::ostream&>(*this) << value;
    return *this;
}

ErrorLog& ErrorLog::operator<<(const unsigned long long& value)
{
    static_cast<std::ostream&>(*this) << value;
    return *this;
}

ErrorLog& ErrorLog::operator<<(const char* text)
{
    if (text != nullptr)
        static_cast<std::ostream&>(*this) << text;
    return *this;
}

ErrorLog& ErrorLog::operator<<(std::ostream& (*manipulator)(std::ostream&))
{
    manipulator(*this);
    return *this;
}

ErrorLog& ErrorLog::operator<<(std::ios_base& (*manipulator)(std::ios_base&))
{
    manipulator(*this);
    return *this;
}

fileString ErrorLog::file()
{
    return PathUtils::getObject().getUserDatabasePath() / xl8(U"errors.log");
}

}  // namespace Library
