#include "host/installation/TextureMerge.h"

#include "host/fixtures/Fixtures.h"
#include "support/Processes.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Reporting/ProgressSubject.h>

#include <sys/stat.h>

namespace {

class TextureMergePosix : public test::TestHost
{};

// It would look as if it were empty, and what is in it would be gone afterwards.
TEST_F(TextureMergePosix, RefusesADestinationThatItsUserMayNotRead)
{
    const fileString archive = folder() / U"a.zip";
    const fileString others = folder() / U"others.zip";
    test::ZipBuilder().add("ash.png", "ash").writeTo(archive);
    test::ZipBuilder().add("oak.png", "oak").writeTo(others);
    const std::string old = test::readFile(archive);
    ASSERT_EQ(::chmod(folder().utf8().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(others.utf8().c_str(), 0666), 0);
    ASSERT_EQ(::chmod(archive.utf8().c_str(), 0), 0);
    test::asOrdinaryUser([&] {
        ProgressSubject progress;
        const auto merge = [&] {
            VelkHost::TextureMerge merge(archive, "testing");
            merge.add(others, progress);
            merge.keepNew();
        };
        EXPECT_EQ(test::reasonOf(merge), "is not a sound zip archive (Can't open file: Permission denied)");
    });
    ASSERT_EQ(::chmod(archive.utf8().c_str(), 0666), 0);
    EXPECT_EQ(test::readFile(archive), old);
    EXPECT_TRUE(others.pathExists());
}

}  // namespace
