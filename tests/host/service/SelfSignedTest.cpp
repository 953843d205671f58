#include "host/service/SelfSigned.h"

#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

class SelfSigned : public test::TestHost
{
protected:
    VelkHost::ServiceCertificate make() const { return VelkHost::selfSignedCertificate(folder() / U"tls"); }
};

TEST_F(SelfSigned, CertificatesAreKept)
{
    const fileString certificate = make().certificate;
    const std::string first = test::readFile(certificate);
    EXPECT_EQ(make().certificate, certificate);
    EXPECT_EQ(test::readFile(certificate), first);
}

TEST_F(SelfSigned, OneThatIsSpoiltIsMadeAnew)
{
    const fileString certificate = make().certificate;
    test::writeFile(certificate, "spoilt");
    make();
    EXPECT_THAT(test::readFile(certificate), testing::StartsWith("-----BEGIN CERTIFICATE-----"));
}

}  // namespace
