#include "host/support/ByteText.h"

#include <gtest/gtest.h>

namespace VelkHost {
namespace {

TEST(ByteText, HasTheUnitThatFits)
{
    EXPECT_EQ(byteText(0), "0 bytes");
    EXPECT_EQ(byteText(999), "999 bytes");
    EXPECT_EQ(byteText(1'000), "1 KB");
    EXPECT_EQ(byteText(1'500), "2 KB");
    EXPECT_EQ(byteText(999'499), "999 KB");
    EXPECT_EQ(byteText(1'000'000), "1 MB");
    EXPECT_EQ(byteText(24'660'000), "24.7 MB");
    EXPECT_EQ(byteText(1'234'567'890), "1,234.6 MB");
}

TEST(ByteText, IsInKilobytesWhereThatIsAskedFor)
{
    EXPECT_EQ(kilobyteText(0), "0 KB");
    EXPECT_EQ(kilobyteText(499), "0 KB");
    EXPECT_EQ(kilobyteText(500), "1 KB");
    EXPECT_EQ(kilobyteText(1'234'567), "1,235 KB");
}

}  // namespace
}  // namespace VelkHost
