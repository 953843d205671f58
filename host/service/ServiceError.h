#pragma once

#include "host/support/Reason.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace VelkHost {

/// Thrown when a service cannot run although its site is sound. It holds the address that the service should have,
/// and a sentence for people that tells what is wrong with it. Texts are UTF-8.
class ServiceError : public std::runtime_error
{
public:
    ServiceError(std::string address, Reason why)
        : std::runtime_error(address + ": " + why.english()), address_(std::move(address)), why_(std::move(why))
    {}

    /// Such as "127.0.0.1:8080".
    const std::string& address() const noexcept { return address_; }
    /// The sentence without the address, for translation.
    const Reason& why() const noexcept { return why_; }

private:
    std::string address_;
    Reason why_;
};

}  // namespace VelkHost
