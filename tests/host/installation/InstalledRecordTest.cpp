#include "host/installation/InstalledRecord.h"

#include "host/fixtures/Fixtures.h"

#include <VelkCommon/Files/FileUtils.h>

#include <optional>

namespace {

using testing::IsEmpty;
using testing::SizeIs;
using VelkHost::InstalledFile;
using VelkHost::InstalledLibrary;

class InstalledRecord : public test::TestHost
{
protected:
    InstalledRecord() { FileUtils::createDirectoriesWithPerm(folder() / U"user"); }

    static VelkHost::InstalledRecord::Key key(const std::string& name) { return {4, name}; }

    static InstalledLibrary library(const std::string& tag)
    {
        InstalledLibrary library;
        library.tag = tag;
        library.database = InstalledFile{12, -345, "database"};
        library.referenced = InstalledFile{6'000'000'000, 9'007'199'254'740'993, "others"};
        return library;
    }

    static std::string text() { return test::readFile(VelkHost::InstalledRecord::path()); }
};

TEST_F(InstalledRecord, LastsFromOneRunToTheNext)
{
    InstalledLibrary gone;
    gone.toldGone = true;
    InstalledLibrary bare;
    bare.tag = "W/odd tag:1";
    bare.database = InstalledFile{1, 2, "3"};
    {
        VelkHost::InstalledRecord record;
        EXPECT_THAT(record.libraries(), IsEmpty());
        record.set(key("Küche 2.calib"), library("a"));
        record.set(key("bare.calib"), bare);
        record.set(key("gone.calib"), gone);
        record.set(key("Küche 2.calib"), library("b"));
    }
    const VelkHost::InstalledRecord record;
    EXPECT_THAT(record.libraries(), SizeIs(3));
    EXPECT_EQ(record.find(key("Küche 2.calib")), library("b"));
    EXPECT_EQ(record.find(key("bare.calib")), bare);
    EXPECT_EQ(record.find(key("gone.calib")), gone);
    EXPECT_FALSE(record.find(key("other.calib")).database);
    EXPECT_FALSE(record.find({1, "bare.calib"}).database) << "another kind";
}

TEST_F(InstalledRecord, ForgetsALibrary)
{
    VelkHost::InstalledRecord().set(key("a.calib"), library("a"));
    VelkHost::InstalledRecord().set(key("b.calib"), library("b"));
    VelkHost::InstalledRecord().set(key("a.calib"), {});
    EXPECT_THAT(VelkHost::InstalledRecord().libraries(), SizeIs(1));
}

TEST_F(InstalledRecord, IsNotWrittenWholeForAChange)
{
    VelkHost::InstalledRecord record;
    record.set(key("a.calib"), library("a"));
    const std::string before = text();
    record.set(key("b.calib"), library("b"));
    EXPECT_EQ(text().substr(0, before.size()), before);
    record.set(key("b.calib"), library("b"));
    EXPECT_LT(text().size(), 3 * before.size()) << "what is the same is not written";
}

TEST_F(InstalledRecord, DoesNotGrowForEver)
{
    VelkHost::InstalledRecord record;
    for (int i = 0; i < 2'000; ++i)
        record.set(key("a.calib"), library(std::to_string(i)));
    const std::string one = text();
    EXPECT_LT(one.size(), 2'000u * 100);
    EXPECT_EQ(VelkHost::InstalledRecord().find(key("a.calib")), library("1999"));
}

TEST_F(InstalledRecord, SurvivesBeingCutOffAnywhere)
{
    {
        VelkHost::InstalledRecord record;
        record.set(key("a.calib"), library("a"));
        record.set(key("b.calib"), library("b"));
    }
    const std::string whole = text();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        test::writeFile(VelkHost::InstalledRecord::path(), whole.substr(0, size));
        VelkHost::InstalledRecord cut;
        for (const auto& [name, found] : cut.libraries())
            ASSERT_TRUE(found == library("a") || found == library("b")) << size;
        cut.set(key("c.calib"), library("c"));
        ASSERT_EQ(VelkHost::InstalledRecord().find(key("c.calib")), library("c")) << size;
        ASSERT_EQ(VelkHost::InstalledRecord().libraries().size(), cut.libraries().size()) << size;
    }
}

TEST_F(InstalledRecord, SkipsLinesThatAreNotItsOwn)
{
    VelkHost::InstalledRecord().set(key("a.calib"), library("a"));
    const std::string sound = text();
    for (const std::string line : {"x", "4\t../up.calib\ttag\t1\t2\t3\t\t\t\t.", "4\tb.calib\ttag\t1\tx\t3\t\t\t\t.",
                                   "4\tb.calib\ttag\t-1\t2\t3\t\t\t\t.", "4\tb.calib\ttag\t\t2\t3\t\t\t\t."}) {
        test::writeFile(VelkHost::InstalledRecord::path(), sound + line + "\n");
        EXPECT_THAT(VelkHost::InstalledRecord().libraries(), SizeIs(1)) << line;
    }
    test::writeFile(VelkHost::InstalledRecord::path(), "something else\n");
    EXPECT_THAT(VelkHost::InstalledRecord().libraries(), IsEmpty());
}

TEST_F(InstalledRecord, AFilesStateIsReadWhereItsSizeOrTimeDiffer)
{
    const fileString path = folder() / U"file";
    EXPECT_EQ(VelkHost::stateOf(path), std::nullopt);
    test::writeFile(path, "abc");
    std::optional<InstalledFile> state = VelkHost::stateOf(path);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->size, 3u);
    EXPECT_EQ(state->sha1, "a9993e364706816aba3e25717850c26c9cd0d89d");
    state->sha1 = "trusted";
    EXPECT_EQ(VelkHost::stateOf(path, state)->sha1, "trusted");
    ++state->modified;
    EXPECT_EQ(VelkHost::stateOf(path, state)->sha1, "a9993e364706816aba3e25717850c26c9cd0d89d");
    EXPECT_EQ(VelkHost::stateOf(folder()), std::nullopt) << "a folder";
}

}  // namespace
