#include <VelkCommon/Reporting/EnforcerThrow.h>

#include <VelkCommon/Reporting/detail/TextOrNothing.h>

#include <utility>

using Velk::detail::textOrNothing;

namespace {

std::string describe(const std::string& expression, const std::string& sourceFile, std::size_t line)
{
    return "precondition violated: " + expression + " (" + sourceFile + ":" + std::to_string(line) + ")";
}

}  // namespace

EnforcerException::EnforcerException(std::string expression, std::string sourceFile, std::size_t line)
    : std::logic_error(describe(expression, sourceFile, line)),
      expression_(std::move(expression)),
      sourceFile_(std::move(sourceFile)),
      line_(line)
{}

EnforcerException::~EnforcerException() = default;

void EnforcerThrow(const char* expression, const char* sourceFile, std::size_t line)
{
    throw EnforcerException(textOrNothing(expression), textOrNothing(sourceFile), line);
}
