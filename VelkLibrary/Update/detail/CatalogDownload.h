#pragma once

#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/LibraryProgressBase.h>
#include <VelkLibrary/Update/detail/CatalogRun.h>

#include <string>

namespace LibraryCatalogUpdate::detail {

/// What the transport hands to reportProgress().
struct TransferProgress
{
    double lastReceived = 0;
    const LibraryProgressBase* receiver = nullptr;
};

/// The progress callback of a catalog's transfer; `data` is a TransferProgress. Ends the transfer (1)
/// when the run is cancelled, and when 600 calls in a row have brought nothing new. Tells the receiver at every
/// 502nd call.
VELKLIBRARY_EXPORT int reportProgress(void* data, double toReceive, double received, double toSend,
                                      double sent) noexcept;

/// Downloads and installs, in the table's order, the catalogs of which the service has another version.
class DownloadPhase
{
public:
    /// All arguments must outlive the object.
    DownloadPhase(const LibraryProgressBase& receiver, CatalogRun& run, CatalogTable& catalogs,
                  const std::string& product, const std::string& version);

    void run();

private:
    void announce() const;
    bool updateCatalog(const fileString& fileName, CatalogRecord& record);
    bool download(const fileString& fileName, const CatalogRecord& record, const fileString& target);
    bool fail(const fileString& fileName, const fileString& target, const std::string& reason);

    const LibraryProgressBase& receiver_;
    CatalogRun& run_;
    CatalogTable& catalogs_;
    const std::string& product_;
    const std::string& version_;
};

}  // namespace LibraryCatalogUpdate::detail
