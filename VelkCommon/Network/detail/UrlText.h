#pragma once

/// @file
/// Addresses as text: which can be fetched, and how they travel. Throws nothing but `std::bad_alloc`.

#include <string>
#include <string_view>

namespace Velk::detail {

/// Whether `text` begins with "http://" or "https://" in any letter case, followed by a host.
bool isWebAddress(std::string_view text) noexcept;
/// Whether `address` begins with "https:" in any letter case.
bool isSecure(std::string_view address) noexcept;
/// Whether `text` holds a byte below the blank, or DEL.
bool hasControlCharacter(std::string_view text) noexcept;
/// Whether `line` can be sent as a header line: it has no control character except tabs.
bool isHeaderLine(std::string_view line) noexcept;

/// Scheme, host and port in lower case, as the name of a server; empty when `address` is not a URL.
std::string serverOf(const std::string& address);
/// Where `reference`, relative or not, leads from `base`, in wire form; empty when that is not a URL.
std::string resolved(const std::string& base, const std::string& reference);

}  // namespace Velk::detail
