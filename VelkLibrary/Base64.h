#pragma once

#include <VelkLibrary/Export.h>

#include <exception>
#include <string>
#include <vector>

/// Base64 with the standard alphabet (RFC 4648) and padding. Any thread.
namespace Base64 {

/// Thrown for a character that does not belong to Base64.
class VELKLIBRARY_EXPORT InvalidCharacterException : public std::exception
{
public:
    /// `message` is the text of what().
    InvalidCharacterException(const std::string& message);
    ~InvalidCharacterException() override;
    /// Names the character and its position, see decode(). Valid as long as the exception lives.
    const char* what() const noexcept override;

private:
    std::string message_;
};

/// The Base64 text of `data`: four characters for every three bytes, also for the last ones when they are
/// fewer; no line breaks.
VELKLIBRARY_EXPORT std::string encode(const std::vector<unsigned char>& data);

/// The bytes of a Base64 text. Lenient where it can be: a last group that is too short is filled up with zero
/// bits and still gives three bytes; "=" does not end the text, since the groups after it are decoded too, and
/// in the first two places of a group it counts as 63. Throws InvalidCharacterException, "Invalid character 'X'
/// at position N.", for the first character that is neither in the alphabet nor "="; white space is such a
/// character.
VELKLIBRARY_EXPORT std::vector<unsigned char> decode(const std::string& text);

}  // namespace Base64
