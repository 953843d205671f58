#include <VelkCommon/Files/Overwriting.h>

#include "support/Processes.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class OverwritingDeaths : public testing::Test
{
protected:
    test::TemporaryFolder root_;
    const fileString file_ = root_ / U"data";
    const fileString backup_ = root_ / U"backup";
    const std::string old_ = std::string(20'000, 'o');
    const std::string new_ = std::string(30'000, 'n');
};

TEST_F(OverwritingDeaths, LeaveTheOldOrTheNewTextAfterItsRecovery)
{
    int olds = 0;
    int news = 0;
    int recoveries = 0;
    test::killedAtEachSystemCall([&] { test::writeFile(file_, old_); },
                                 [&] { EXPECT_TRUE(Velk::overwriteFile(file_, new_, backup_)); },
                                 [&](bool died) {
                                     recoveries += test::readFile(file_).front() == '\0' ? 1 : 0;
                                     Velk::recoverOverwritten(file_, backup_);
                                     const std::string text = test::readFile(file_);
                                     ASSERT_TRUE(text == new_ || (died && text == old_)) << text.substr(0, 100);
                                     EXPECT_FALSE(backup_.pathExists());
                                     ++(text == old_ ? olds : news);
                                 });
    EXPECT_GT(olds, 5) << "the writing was not watched";
    EXPECT_GT(news, 0);
    EXPECT_GT(recoveries, 3);
}

TEST_F(OverwritingDeaths, OfARecoveryAreMadeGoodByTheNext)
{
    std::string torn = new_;
    torn[0] = '\0';
    test::killedAtEachSystemCall(
        [&] {
            test::writeFile(file_, torn);
            test::writeFile(backup_, old_);
        },
        [&] { Velk::recoverOverwritten(file_, backup_); },
        [&](bool) {
            Velk::recoverOverwritten(file_, backup_);
            ASSERT_EQ(test::readFile(file_), old_);
            ASSERT_FALSE(backup_.pathExists());
        });
}

// The backup fits on the disk, the new text does not.
TEST_F(OverwritingDeaths, AFullDiskLeavesTheOldText)
{
    test::writeFile(file_, old_);
    test::inChild([&] {
        test::limitFileSize(old_.size() + 1'000);
        EXPECT_FALSE(Velk::overwriteFile(file_, new_, backup_));
    });
    EXPECT_EQ(test::readFile(file_), old_);
    EXPECT_FALSE(backup_.pathExists());
}

}  // namespace
