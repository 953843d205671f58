#include "host/command/NewArchive.h"

#include "host/fixtures/Fixtures.h"

#include <VelkCommon/Archive/ZipUtils.h>

#include <filesystem>
#include <string>

using testing::ElementsAre;

namespace {

/// An archive in the place of an older file, with two files to come.
class NewArchive : public test::TestHost
{
protected:
    NewArchive()
    {
        std::filesystem::create_directory((folder() / U"out").utf8());
        test::writeFile(target_, "old");
        for (const char32_t* const name : {U"a", U"b"})
            test::writeFile(folder() / name, std::string(fileBytes, 'x'));
    }

    /// Packs both files; the second one changes to `bytes` after it was added, and before it is read.
    void pack(std::size_t bytes) const
    {
        VelkHost::NewArchive archive(target_);
        archive.addFile("a", folder() / U"a");
        archive.addFile("b", folder() / U"b");
        std::filesystem::resize_file((folder() / U"b").utf8(), bytes);
        EXPECT_TRUE(archive.close());
    }

    static constexpr std::size_t fileBytes = 100'000;

    fileString target_ = folder() / U"out" / U"new.calibz";
};

TEST_F(NewArchive, TakesTheOldFilesPlace)
{
    pack(fileBytes);
    EXPECT_EQ(ZipUtils::getSizeOfArchive(target_), 2U);
    EXPECT_THAT(test::listFolder(folder() / U"out"), ElementsAre("new.calibz"));
}

TEST_F(NewArchive, HoldsNoFileThatBecameShorter)
{
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, fileBytes - 1}) {
        SCOPED_TRACE(bytes);
        test::writeFile(folder() / U"b", std::string(fileBytes, 'x'));
        EXPECT_EQ(test::reasonOf([&] { pack(bytes); }),
                  "cannot be packed: a file could not be read to its end, or changed meanwhile");
        EXPECT_EQ(test::readFile(target_), "old");
        EXPECT_THAT(test::listFolder(folder() / U"out"), ElementsAre("new.calibz"));
    }
}

}  // namespace
