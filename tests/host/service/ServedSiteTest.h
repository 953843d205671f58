#pragma once

#include "host/fixtures/PublishFixtures.h"
#include "host/fixtures/ServiceRequests.h"

#include "host/service/SiteService.h"
#include "support/ScriptedServer.h"

namespace test {

/// A base for tests of servers: a site with something of every kind is published.
class ServedSiteTest : public PublishTest
{
protected:
    ServedSiteTest();

    /// The files that serviceRequests() expects.
    ServedSite served() const;

    /// The options to serve the site with.
    VelkHost::ServiceOptions options() const;

    /// Asks the endpoint for every library that is published, by its name and tag, as the client does.
    void expectLibrariesKnown(const std::string& endpoint) const;

    /// Writes a certificate for 127.0.0.1 with its key, and the authority's own as "authority.crt".
    VelkHost::ServiceCertificate certificate(const TestAuthority& authority) const;
};

}  // namespace test
