#include "host/installation/TransferReason.h"

#include <VelkCommon/Files/FileState.h>

#include <cstdint>
#include <optional>

namespace VelkHost {
namespace {

/// The transfer library's codes, see its documentation.
enum Code : unsigned int {
    NoSuchHost = 6,
    NotConnected = 7,
    NotWritten = 23,
    OutOfMemory = 27,
    TimedOut = 28,
    Aborted = 42,
    NothingReceived = 52,
    NotTrusted = 60,
    CertificatesUnreadable = 77
};

/// What a download leaves free on a disk.
constexpr std::uint64_t diskReserve = std::uint64_t{256} << 20;

bool isDiskFull(const fileString& folder)
{
    const std::optional<std::uint64_t> space = Velk::freeSpace(folder);
    return space && *space < 2 * diskReserve;
}

}  // namespace

Reason transferReason(unsigned int code, const std::string& reason, const fileString& folder)
{
    switch (code) {
        case NoSuchHost:
            return "no such host";
        case NotConnected:
            return "it does not accept connections";
        case NotWritten:
            if (!folder.empty() && isDiskFull(folder))
                return "the disk is full";
            return {"what came cannot be written: %1", {reason}};
        case OutOfMemory:
            return "there is too little memory";
        case TimedOut:
            return "it does not answer";
        case Aborted:
            return "it was cancelled, or nothing came any more";
        case NothingReceived:
            return "it closed the connection without an answer";
        case NotTrusted:
            return "the certificate is not trusted; VELK_CERTIFICATES names others";
        case CertificatesUnreadable:
            return "the certificates that VELK_CERTIFICATES names cannot be read";
        default:
            return reason.empty() ? Reason("it failed") : Reason(reason);
    }
}

}  // namespace VelkHost
