#pragma once

#include <VelkCommon/Files/fileString.h>

#include <string>
#include <string_view>

/// @file
/// Names of libraries and logos on their way from a publisher's folder through a query to a client's disk.

namespace VelkHost {

/// Why a file of this name cannot be stored by every client, as a sentence without subject ("holds a
/// colon"); empty when it can. `name` is a plain file name in UTF-8.
std::string whyNoFileName(std::string_view name);

/// Why a library of this name cannot be asked for; empty when it can. The client forms its request
/// "...&library=NAME&product=..." without encoding, so characters that mean something there are lost.
std::string whyNoQueryValue(std::string_view name);

/// Why a library file of this name cannot be published; empty when it can. Besides the above, the client
/// stores a download as the stem with ".download".
std::string whyNoLibraryName(const fileString& name);

/// Why a logo of this name cannot be published; empty when it can. Clients ask for logos in Windows-1252, and
/// store them beside their own files. A "/" stands between a logo's folders and its file name.
std::string whyNoLogoName(std::string_view name);

/// The key under which a name that arrived in a query is looked up: letters A to Z count as a to z. (A
/// web server's tables compare this way; names that differ in nothing else are refused when published.)
std::string lookupKey(std::string_view valueOnTheWire);

/// The form in which two names are one file on a system that ignores letter case.
std::u32string caseless(std::string_view name);

}  // namespace VelkHost
