#include <VelkCommon/Reporting/Assertions.h>

#include <VelkCommon/HostServices.h>
#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Reporting/detail/ReportLine.h>
#include <VelkCommon/Reporting/detail/TextOrNothing.h>
#include <VelkCommon/detail/AskHost.h>

#include <string>

using Velk::detail::textOrNothing;

namespace {

void writeAssertion(const Velk::AssertionReport& report)
{
    Velk::detail::writeReportLine(std::string("velk: assertion failed: ") + report.expression + " (" +
                                  report.sourceFile + ":" + std::to_string(report.line) + ")");
}

}  // namespace

bool showQAVerify()
{
    return Velk::detail::askHost(Velk::host()->assertionReportsEnabled).value_or(true);
}

bool notifyAssert(const char* sourceFile, std::size_t line, long kind, const char* expression)
try {
    const Velk::AssertionReport report{textOrNothing(sourceFile), line, kind, textOrNothing(expression)};
    if (const auto answer = Velk::detail::askHost(Velk::host()->reportAssertion, report))
        return *answer;
    writeAssertion(report);
    return false;
} catch (...) {
    return false;  // no memory for the report
}

namespace Velk {

void assertionFailed(const char* sourceFile, std::size_t line, const char* expression)
{
    if (showQAVerify() && notifyAssert(sourceFile, line, softAssertion, expression) && Platform::debuggerPresent())
        Platform::debugBreak();
}

}  // namespace Velk
