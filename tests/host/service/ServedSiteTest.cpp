#include "ServedSiteTest.h"

#include <VelkCommon/Network/Curl.h>

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

void ServedSiteTest::expectLibrariesKnown(const std::string& endpoint) const
{
    for (const auto& [name, file] : table().libraries) {
        std::string header;
        long status = 0;
        EXPECT_TRUE(Curl::get().getURLHeader(endpoint + "&library=" + name + "&product=pl\xC3\xA4n r&version=1 2",
                                             {"If-None-Match: \"" + file.tag + "\""}, header, status));
        EXPECT_EQ(status, 304) << name;
    }
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
