#pragma once

#include <VelkLibrary/Export.h>

#include <exception>
#include <string>
#include <vector>

/// Base64 with the standard alphabet (RFC 4648) and padding. Any thread.
namespace Base64 {

/// A character that is no Base64.
class VELKLIBRARY_EXPORT InvalidCharacterException : public std::exception
{
public:
    /// `message` is the text of what().
    InvalidCharacterException(const std::string& message);
    ~InvalidCharacterException() override;
    /// The character and its place, see decode(). Valid as long as the exception.
    const char* what() const noexcept override;

private:
    std::string message_;
};

/// The Base64 text of `data`: four characters for every three bytes begun, no line breaks.
VELKLIBRARY_EXPORT std::string encode(const std::vector<unsigned char>& data);

/// The bytes of a Base64 text. Lenient where it can be: a last group that is too short is completed
/// with zero bits and still gives three bytes; "=" ends nothing, the groups behind it are decoded too,
/// and in the first two places of a group it counts as 63.
/// Throws InvalidCharacterException, "Invalid character 'X' at position N.", for the first character
/// that is neither of the alphabet nor "="; white space is such a character.
VELKLIBRARY_EXPORT std::vector<unsigned char> decode(const std::string& text);

}  // namespace Base64
