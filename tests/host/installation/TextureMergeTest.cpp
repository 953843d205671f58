#include "host/installation/TextureMerge.h"

#include "host/fixtures/Fixtures.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Reporting/ProgressSubject.h>

#include <optional>

using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

class TextureMerge : public test::TestHost
{
protected:
    TextureMerge()
    {
        test::ZipBuilder().add("oak.png", "oak").writeTo(others_);
        FileUtils::createDirectoriesWithPerm(archive_.parentPath());
    }

    void merge() const
    {
        ProgressSubject progress;
        VelkHost::TextureMerge merge(archive_, "testing");
        merge.add(others_, progress);
        merge.keepNew();
    }

    static std::vector<std::string> namesIn(const fileString& archive)
    {
        std::vector<std::string> names;
        for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
            names.push_back(name.utf8());
        return names;
    }

    /// Merging fails for this reason, and changes neither archive.
    template <typename Matcher>
    void expectRefusal(const Matcher& reason, const std::string& old) const
    {
        EXPECT_THAT(test::reasonOf([&] { merge(); }), reason);
        EXPECT_EQ(test::readFile(archive_), old);
        EXPECT_THAT(namesIn(others_), UnorderedElementsAre("oak.png"));
    }

    fileString archive_ = folder() / U"referenced" / U"a.zip";
    fileString others_ = folder() / U"others.zip";
};

TEST_F(TextureMerge, AddsWhatIsNotThere)
{
    test::ZipBuilder().add("ash.png", "ash").writeTo(archive_);
    merge();
    EXPECT_THAT(namesIn(archive_), UnorderedElementsAre("ash.png", "oak.png"));
    EXPECT_FALSE(others_.pathExists());
}

TEST_F(TextureMerge, BringsTheOldArchiveBackUnlessTheNewOneIsKept)
{
    test::ZipBuilder().add("ash.png", "ash").writeTo(archive_);
    const std::string old = test::readFile(archive_);
    ProgressSubject progress;
    std::optional<VelkHost::TextureMerge> merge(std::in_place, archive_, "testing");
    merge->add(others_, progress);
    EXPECT_NE(test::readFile(archive_), old);
    merge.reset();
    EXPECT_EQ(test::readFile(archive_), old);
}

TEST_F(TextureMerge, RefusesADestinationThatIsNoArchive)
{
    for (const std::string text : {"", "text", "PK\5\6"}) {
        test::writeFile(archive_, text);
        expectRefusal(StartsWith("is not a sound zip archive ("), text);
    }
}

TEST_F(TextureMerge, RefusesAFolderAsItsDestination)
{
    FileUtils::createDirectoriesWithPerm(archive_);
    EXPECT_EQ(test::reasonOf([&] { merge(); }), "is a folder, not a file");
    EXPECT_TRUE(others_.pathExists());
}

}  // namespace
