#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkCommon/Reporting/EnforcerThrow.h>
#include <VelkLibrary/UpdateData.h>

#include <cstdint>
#include <exception>
#include <set>
#include <string>

/// @file
/// What the steps of one run of the catalog update share.

namespace LibraryCatalogUpdate::detail {

/// What a run has come to so far.
struct CatalogRun
{
    bool failed = false;
    std::uint32_t resultCode = NothingRemarkable;
    bool anyInstalled = false;
    std::set<std::string> updatedNames;  ///< stems, Windows-1252
};

/// Logs a failure that nothing else has logged.
void logFailure(const char* reason) noexcept;

/// Does one part of a run. What it throws is logged and makes the run a failed one, but the run goes on;
/// a precondition that the host violates passes through.
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

/// The names of files for texts that the receiver shows.
std::string shownName(const fileString& path);

}  // namespace LibraryCatalogUpdate::detail
