#include "ServedInstallation.h"

#include <VelkCommon/Archive/ZipUtils.h>

namespace test {

const std::string ServedInstallation::bonusName = "\xE6\xA4\x85\xE5\xAD\x90";
const std::string ServedInstallation::manufacturerName(200, 'x');

void ServedInstallation::expectCurrent() const
{
    const VelkHost::SiteTable now = table();
    for (const char* name : {"core/M\xC3\xB6"
                             "bel 2.calib",
                             "core/~It's (a) $5 deal; 50=50, @home!.calib"})
        EXPECT_TRUE(readFile(home(name)) == readFile(input() / fileString(std::string(name)))) << name;
    EXPECT_EQ(hashOf(home("bonus/" + bonusName + ".calib")), now.libraries.at(bonusName + ".calibz").tag);
    EXPECT_EQ(hashOf(home("manufacturer/" + manufacturerName + ".calib")),
              now.libraries.at(manufacturerName + ".calibz").tag);
    EXPECT_EQ(ZipUtils::getFilenamesInArchive(home("referenced/" + bonusName + ".zip")).size(), 1U);
    EXPECT_TRUE(readFile(home("referenced/M\xC3\xB6"
                              "bel 2.zip")) == readFile(input(U"referenced/M\u00F6bel 2.zip")));
}

}  // namespace test
