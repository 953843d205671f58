#pragma once

#include "host/service/SiteService.h"

namespace VelkHost {

/// A certificate for this machine ("localhost", 127.0.0.1 and ::1), signed by itself, with its key: for
/// trying things over TLS. Clients take it when they are told to trust it. Both are kept in `folder`, which is
/// made for this user alone, as "velk-service.crt" and "velk-service.key", and are made anew when fewer than 30
/// of the certificate's 365 days are left. Throws FileError.
ServiceCertificate selfSignedCertificate(const fileString& folder);

}  // namespace VelkHost
