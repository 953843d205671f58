#include "LibraryImportFixture.h"
#include "support/ScriptedServer.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

namespace {

using test::ZipBuilder;
using testing::ElementsAre;
using testing::IsEmpty;

class UnpackRemote : public test::ImportTest
{
protected:
    auto unpack(const std::string& source)
    {
        return LibraryImport::unpackArchivedLibrary(fileString(source), progress_);
    }
    std::vector<std::string> temporaryFiles() const { return test::listFolder(at(U"temp")); }

    std::string archive_ = ZipBuilder().add("library.calib", "database").add("a.png", "picture").bytes();
    test::ScriptedServer server_;
    std::shared_ptr<test::RecordedProgress> progress_ = std::make_shared<test::RecordedProgress>();
};

TEST_F(UnpackRemote, ALocalArchiveGetsTemporaryNames)
{
    test::writeFile(at(U"lib.calibz"), archive_);
    const auto [first, second] = unpack(at(U"lib.calibz").utf8());
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->parentPath(), at(U"temp"));
    EXPECT_EQ(test::readFile(*first), "database");
    EXPECT_EQ(namesOf(*second), "a.png");
    EXPECT_TRUE(at(U"lib.calibz").pathExists());
    EXPECT_EQ(progress_->calls.front(), "range 2 100");
}

TEST_F(UnpackRemote, AMissingLocalArchive)
{
    const auto [first, second] = unpack(at(U"missing.calibz").utf8());
    EXPECT_FALSE(first || second);
}

TEST_F(UnpackRemote, ADownloadIsUnpackedAndRemoved)
{
    server_.on("/lib.calibz", test::Reply::file(archive_, "tag"));
    const auto [first, second] = unpack(server_.url("/lib.calibz"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(test::readFile(*first), "database");
    EXPECT_EQ(namesOf(*second), "a.png");
    EXPECT_EQ(temporaryFiles().size(), 2u) << "the download is gone";
    EXPECT_EQ(progress_->calls.size(), 5u);
}

TEST_F(UnpackRemote, FailedDownloadsGiveNothing)
{
    server_.on("/cut", test::Reply{.body = archive_, .cutAfter = 20});
    for (const char* const path : {"/missing.calibz", "/cut"}) {
        const auto [first, second] = unpack(server_.url(path));
        EXPECT_FALSE(first || second) << path;
        EXPECT_THAT(temporaryFiles(), IsEmpty()) << path;
    }
    EXPECT_THAT(progress_->calls, IsEmpty());
}

TEST_F(UnpackRemote, APageInsteadOfAnArchive)
{
    server_.on("/lib.calibz", test::Reply{.body = "<html>Please log in</html>"});
    const auto [first, second] = unpack(server_.url("/lib.calibz"));
    EXPECT_FALSE(first || second);
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST_F(UnpackRemote, CancellationAlsoRemovesTheDownload)
{
    server_.on("/lib.calibz", test::Reply::file(archive_, "tag"));
    progress_->cancelAfter = 1;
    const auto [first, second] = unpack(server_.url("/lib.calibz"));
    EXPECT_FALSE(first || second);
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

}  // namespace
