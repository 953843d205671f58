#pragma once

#include "host/service/SiteService.h"

namespace VelkHost {

/// A certificate for this machine ("localhost", 127.0.0.1 and ::1), signed by itself, with its key: for
/// trying things over TLS. Clients take it when they are told to trust it. Kept in `folder`
/// ("velk-service.crt" and "velk-service.key"), which is made for this user alone, and made anew when it has
/// fewer than 30 of its 365 days left. Throws FileError.
ServiceCertificate selfSignedCertificate(const fileString& folder);

}  // namespace VelkHost
