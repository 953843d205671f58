#include <VelkLibrary/UpdateData.h>

#include <VelkLibrary/CatalogDownloadProtocol.h>

#include <gtest/gtest.h>

namespace {

using namespace LibraryCatalogUpdate;

// Hosts keep these numbers and show them.
TEST(UpdateDataTest, HasTheDocumentedNumbers)
{
    EXPECT_EQ(ErrorsAutomatic, 0);
    EXPECT_EQ(ErrorsManual, 1);
    EXPECT_EQ(Installed, 2);
    EXPECT_EQ(UpToDate, 3);
    EXPECT_EQ(NothingRemarkable, 0x10369189U);
    EXPECT_EQ(TransferAborted, 0x1036918AU);
    EXPECT_EQ(EndpointUnknown, 0x1036918BU);
    EXPECT_EQ(CatalogNotRenamed, 0x1036918EU);
    EXPECT_EQ(CoreCatalogs, 1U);
    EXPECT_EQ(ManufacturerCatalogs, 2U);
    EXPECT_EQ(BonusCatalogs, 4U);
}

TEST(UpdateDataTest, BeginsWithNothing)
{
    const UpdateData data;
    EXPECT_EQ(data.outcome, ErrorsAutomatic);
    EXPECT_TRUE(data.updatedNames.empty());
    EXPECT_EQ(data.resultCode, NothingRemarkable);
}

}  // namespace
