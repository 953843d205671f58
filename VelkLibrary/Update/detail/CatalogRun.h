#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Reporting/EnforcerThrow.h>
#include <VelkLibrary/Update/RunReport.h>
#include <VelkLibrary/UpdateData.h>

#include <cstdint>
#include <exception>
#include <set>
#include <string>

/// @file
/// What the steps of one run of the catalog update share.

namespace LibraryCatalogUpdate::detail {

/// The results of a run so far.
struct CatalogRun
{
    bool failed = false;
    std::uint32_t resultCode = NothingRemarkable;
    bool anyInstalled = false;
    std::set<std::string> updatedNames;  ///< stems, Windows-1252
    RunReport report;
    RunHooks hooks;
};

/// Logs a failure that nothing else has logged.
void logFailure(const char* reason) noexcept;

/// Does one part of a run. An exception is logged and makes the run a failed one, but the run goes on. Only an
/// EnforcerException passes through, because it means that the host violates a precondition.
template <typename Work>
void doPart(CatalogRun& run, const Work& work)
{
    try {
        work();
    } catch (const EnforcerException&) {
        run.failed = true;
        throw;
    } catch (const std::exception& error) {
        run.failed = true;
        logFailure(error.what());
    } catch (...) {
        run.failed = true;
        logFailure("Unknown error");
    }
}

/// The size and hash of a file for the run's report; without a path when there is no such file.
FileReport reportOf(const fileString& path);

/// The name of a file, in Windows-1252, for texts that the receiver shows.
std::string shownName(const fileString& path);

}  // namespace LibraryCatalogUpdate::detail
