#include "host/support/WholeFile.h"

#include "host/fixtures/Fixtures.h"

using namespace VelkHost;
using testing::ElementsAre;

namespace {

class WholeFile : public test::TestHost
{
protected:
    WholeFile() { test::writeFile(path_, "old bytes"); }

    fileString path_ = folder() / U"file";
};

TEST_F(WholeFile, IsReadToItsEnd)
{
    EXPECT_EQ(readWhole(path_, 9), "old bytes");
    EXPECT_EQ(readBeginning(path_, 3), "old");
    EXPECT_EQ(readBeginning(path_, 100), "old bytes");
    EXPECT_EQ(requireFile(path_, 9), 9U);
}

TEST_F(WholeFile, IsAFileOfBoundedSize)
{
    EXPECT_EQ(test::reasonOf([&] { requireFile(path_, 8); }), "is larger than 0 MiB");
    EXPECT_EQ(test::reasonOf([&] { readWhole(folder() / U"none", 100); }), "does not exist");
    EXPECT_EQ(test::reasonOf([&] { readWhole(folder(), 100); }), "is a folder, not a file");
    EXPECT_EQ(test::reasonOf([&] { readWhole({}, 100); }), "is not a path");
    EXPECT_EQ(test::reasonOf([&] { readWhole(fileString(std::string("a\0b", 3)), 100); }), "is not a path");
}

TEST_F(WholeFile, IsWrittenInPlaceOfTheOldOne)
{
    const std::vector<std::string> before = test::listFolder(folder());
    writeWhole(path_, "new");
    EXPECT_EQ(test::readFile(path_), "new");
    EXPECT_EQ(test::listFolder(folder()), before) << "nothing is left beside it";
}

TEST_F(WholeFile, ThatCannotBeWrittenSaysWhy)
{
    const std::string noFolder = test::reasonOf([&] { writeWhole(folder() / U"none/file", "new"); });
    const std::string aFolder = test::reasonOf([&] { writeWhole(folder(), "new"); });
    for (const std::string& reason : {noFolder, aFolder}) {
        EXPECT_THAT(reason, testing::StartsWith("cannot be written: "));
        EXPECT_GT(reason.size(), std::string("cannot be written: ").size());
    }
    EXPECT_NE(noFolder, aFolder);
}

TEST_F(WholeFile, NamesThePathInItsError)
{
    try {
        readWhole(folder() / U"none", 100);
        ADD_FAILURE();
    } catch (const FileError& error) {
        EXPECT_EQ(error.path(), folder() / U"none");
        EXPECT_EQ(error.what(), (folder() / U"none").utf8() + ": does not exist");
    }
}

}  // namespace
