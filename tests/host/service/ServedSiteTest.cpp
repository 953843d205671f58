#include "ServedSiteTest.h"

namespace test {

ServedSiteTest::ServedSiteTest()
{
    writeEverything();
    publish();
}

ServedSite ServedSiteTest::served() const
{
    const VelkHost::SiteTable now = table();
    const std::string core =
        "M\xC3\xB6"
        "bel 2.calib";
    const std::string packed = "\xE6\xA4\x85\xE5\xAD\x90.calibz";
    return {published(core),
            now.libraries.at(core).tag,
            published(packed),
            now.libraries.at(packed).tag,
            published("Standard_Core_Content_Index.txt"),
            readFile(input(U"manufacturer_data.json")),
            readFile(input(U"logos/Gro\u00DFe T\u00FCr 1.png"))};
}

VelkHost::ServiceOptions ServedSiteTest::options() const
{
    VelkHost::ServiceOptions options;
    options.site = site();
    return options;
}

VelkHost::ServiceCertificate ServedSiteTest::certificate(const TestAuthority& authority) const
{
    const Certificate issued = authority.issue();
    writeFile(folder() / U"service.crt", issued.chain);
    writeFile(folder() / U"service.key", issued.key);
    writeFile(folder() / U"authority.crt", authority.certificate());
    return {folder() / U"service.crt", folder() / U"service.key"};
}

}  // namespace test
