#pragma once

#include <VelkCommon/Export.h>
#include <VelkCommon/Reporting/ReportPlace.h>

#include <cstddef>
#include <stdexcept>
#include <string>

/// A violated precondition: a programming error of the caller.
class VELKCOMMON_EXPORT EnforcerException : public std::logic_error
{
public:
    /// what() contains all three.
    EnforcerException(std::string expression, std::string sourceFile, std::size_t line);
    ~EnforcerException() override;

    /// What should have been true, or what was wrong.
    const std::string& expression() const noexcept { return expression_; }
    /// The source file in which the violation was noticed.
    const std::string& sourceFile() const noexcept { return sourceFile_; }
    /// The line there.
    std::size_t line() const noexcept { return line_; }

private:
    std::string expression_;
    std::string sourceFile_;
    std::size_t line_;
};

/// Throws an EnforcerException that names the violated precondition and its place. Does not return.
[[noreturn]] VELKCOMMON_EXPORT void EnforcerThrow(const char* expression, const char* sourceFile, std::size_t line);
/// The same.
[[noreturn]] inline void EnforcerThrow(const char* expression, const Velk::ReportPlace& place)
{
    EnforcerThrow(expression, place.source, place.line);
}
