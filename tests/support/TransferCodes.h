#pragma once

namespace test {

/// What the codes of failed transfers mean, which are those of libcurl.
inline constexpr unsigned int couldNotResolve = 6;
inline constexpr unsigned int couldNotConnect = 7;
inline constexpr unsigned int partialFile = 18;
inline constexpr unsigned int httpError = 22;
inline constexpr unsigned int writeError = 23;
inline constexpr unsigned int timedOut = 28;
inline constexpr unsigned int aborted = 42;
inline constexpr unsigned int tooManyRedirects = 47;
inline constexpr unsigned int badCertificate = 60;
inline constexpr unsigned int tooLarge = 63;
inline constexpr unsigned int badAuthorities = 77;

}  // namespace test
