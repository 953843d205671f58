#pragma once

/// @file
/// What other programs make of our archives, on POSIX.

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace test {

/// An archive as Python's zipfile sees it: one line per entry with everything except the offset. Fails the test
/// when Python refuses the archive.
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
