#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/Update/RunReport.h>

#include <cstdint>
#include <string>

namespace LibraryCatalogUpdate::detail {

/// Counts what the transfers of a process have done. Only the worker of the current run touches them. A count
/// that no step of a run resets goes on in the next run.
struct TransferCounters
{
    std::uint64_t kilobytesToDownload = 0;  ///< of the run's download phase
    std::uint64_t kilobytesDone = 0;        ///< in files before the current one
    std::int32_t currentKilobytes = 0;      ///< in the current file
    unsigned stalledCalls = 0;              ///< progress calls in a row without a new byte
    unsigned unreportedCalls = 0;           ///< progress calls since the receiver was told
};

/// What all updaters of the process share. Any thread, except for the counters.
class VELKLIBRARY_EXPORT CatalogUpdateState
{
public:
    static CatalogUpdateState& get();

    /// Prepares for a new updater: stores the address, forgets the endpoint, clears the cancel flag.
    void begin(const std::string& serviceAddress);

    void cancel();
    bool cancelled() const;

    std::string serviceAddress() const;
    /// Where the address leads to; empty while that is unknown.
    std::string endpoint() const;
    void setEndpoint(const std::string& endpoint, const RunFault& fault);
    /// Why the address led nowhere when it was last looked up.
    RunFault endpointFault() const;

    TransferCounters counters;

private:
    CatalogUpdateState() = default;

    // Guarded by the catalog update's mutex.
    bool cancelled_ = false;
    std::string serviceAddress_;
    std::string endpoint_;
    RunFault endpointFault_;
};

}  // namespace LibraryCatalogUpdate::detail
