#include "host/fixtures/PublishFixtures.h"

using testing::ElementsAre;
using testing::StartsWith;

namespace {

using PublishFolder = test::PublishTest;

// Where letter case does not count, no disk holds the two.
TEST_F(PublishFolder, HasLogosThatOnlyOneFolderHolds)
{
    test::writeFileDeep(input(U"logos/Doors/acme.png"), "logo");
    test::writeFileDeep(input(U"logos/doors"), "logo");
    test::writeFileDeep(input(U"manufacturer_data.json"), test::manufacturerData("Doors/acme.png"));
    EXPECT_THAT(problems(), ElementsAre(StartsWith("logos/doors: differs from another logo, or a folder of logos")));
}

}  // namespace
