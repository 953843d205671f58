#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

#include <boost/uuid/uuid.hpp>

#include <ios>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

namespace Library {

/// One record of the error log, the module's only diagnostic channel: stream a message into it and
/// let it go; the destructor appends the record to "errors.log" in the user's database folder.
///
///     ErrorLog() << "Unable to move file:  " << path << "\n";
///
/// An empty message writes nothing. A log without a new record for seven days is removed first. The
/// folder is not created; a record that cannot be written is lost without notice, and the destructor never
/// throws. Nothing is written through a link in the log's place, nor into a file with a second name, because others
/// may be able to put it there. Each object belongs to one thread; any number of threads may log at once, and records
/// never interleave.
class VELKLIBRARY_VISIBLE ErrorLog : public std::ostringstream
{
    // The types that have an insertion of their own below, or convert to a type that has one.
    template <typename T>
    static constexpr bool insertedHere =
        std::is_convertible_v<const T&, const std::string&> || std::is_convertible_v<const T&, const std::u32string&> ||
        std::is_same_v<T, std::u32string_view> || std::is_same_v<T, fileString> ||
        std::is_same_v<T, boost::uuids::uuid> || std::is_same_v<T, long long> || std::is_same_v<T, unsigned long long>;

public:
    VELKLIBRARY_EXPORT ErrorLog();
    VELKLIBRARY_EXPORT ~ErrorLog() override;

    /// 36 characters, lower case; the stream's width, fill and adjustment apply to the whole text, and
    /// the width is 0 afterwards.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const boost::uuids::uuid& id);
    /// All bytes, zero bytes included.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const std::string& text);
    /// As UTF-8.
    /// @{
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const std::u32string& text);
    VELKLIBRARY_EXPORT ErrorLog& operator<<(std::u32string_view text);
    /// @}
    /// As UTF-8, up to the terminator.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const char32_t* text);
    /// The path as people read it.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const fileString& path);
    /// In the stream's number base, which is decimal at first.
    /// @{
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const long long& value);
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const unsigned long long& value);
    /// @}
    /// The bytes up to the terminator. A null pointer inserts nothing, here and above.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(const char* text);

    /// Any other type or manipulator, as on every stream. Returns the ErrorLog itself, so that the chain can go
    /// on.
    // Both are templates because overloads for the other integers would clash: which of them is long long, and
    // which is size_t, differs between systems. The one for temporaries is not a member, because a member would
    // clash with the standard library's insertion into any temporary stream.
    template <typename T>
    requires(!insertedHere<T>) ErrorLog& operator<<(const T& value) &
    {
        static_cast<std::ostream&>(*this) << value;
        return *this;
    }
    /// The same for a temporary.
    template <typename T>
    requires(!insertedHere<T>) friend ErrorLog& operator<<(ErrorLog&& log, const T& value) { return log << value; }
    /// Applies a manipulator such as std::endl.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(std::ostream& (*manipulator)(std::ostream&));
    /// Applies a manipulator such as std::hex.
    VELKLIBRARY_EXPORT ErrorLog& operator<<(std::ios_base& (*manipulator)(std::ios_base&));

    /// The log's path. The host is asked for it each time.
    VELKLIBRARY_EXPORT static fileString file();
};

}  // namespace Library
