#pragma once

/// @file
/// Other programs' opinion of archives, on POSIX.

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace test {

/// An archive as Python's zipfile sees it: a line per entry with everything that it says, but for the
/// offset. Fails the test when it refuses the archive.
std::string describeZip(const fileString& path);

/// What a program prints, and how it ends. Fails the test when it cannot be run.
struct Verdict
{
    int status = -1;
    std::string output;
};
/// Runs a line of the shell, with standard error in the output.
Verdict ask(const std::string& line);

}  // namespace test
