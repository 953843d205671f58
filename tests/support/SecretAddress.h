#pragma once

#include <string>

namespace test {

/// What nobody may read in a message or a log.
inline constexpr const char* password = "s3cret";

/// The same address with a user's name and the password in it.
inline std::string withPassword(std::string address)
{
    return address.insert(address.find("//") + 2, std::string("user:") + password + "@");
}

}  // namespace test
