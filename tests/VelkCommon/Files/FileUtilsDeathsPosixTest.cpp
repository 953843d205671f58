// Full disks, processes that die half-way and several processes at once leave either the old file or the new one,
// and always a whole one.
#include <VelkCommon/Files/FileLock.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Files/WorkFolder.h>

#include "PosixFiles.h"
#include "support/Processes.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

namespace {

using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;

using FileUtilsDeaths = test::PosixFiles;

TEST_F(FileUtilsDeaths, AFullDiskLeavesTheTarget)
{
    test::writeFile(at(U"from"), std::string(2 * smallDisk, 'n'));
    test::writeFile(at(U"to"), "old");
    test::inChild([this] {
        test::limitFileSize(smallDisk);
        EXPECT_FALSE(FileUtils::copyFile(at(U"from"), at(U"to"), true));
        EXPECT_FALSE(FileUtils::copyFile(at(U"from"), at(U"new"), true));
        ReplacementFile file(at(U"to"));
        EXPECT_FALSE(file.write(std::string(2 * smallDisk, 'n')));
        EXPECT_FALSE(file.write("n")) << "what follows a fault would leave a hole";
        EXPECT_FALSE(file.commit());
    });
    EXPECT_EQ(test::readFile(at(U"to")), "old");
    EXPECT_THAT(names(), ElementsAre("from", "to"));
}

// The process dies at each system call of the operation in turn.
class DeathOf : public test::OtherVolume
{
protected:
    void everywhere(const fileString& target, const std::function<void()>& work)
    {
        const std::string oldText(60'000, 'o');
        const std::string newText(60'000, 'n');
        test::killedAtEachSystemCall(
            [&] {
                test::writeFile(target, oldText);
                test::writeFile(source_, newText);
            },
            work,
            [&](bool died) {
                const std::string text = test::readFile(target);
                ASSERT_TRUE(text == newText || (died && text == oldText)) << "torn";
                ASSERT_TRUE(text == newText || test::readFile(source_) == newText) << "lost";
                WorkFolder::removeLeftovers(target.parentPath());
                ASSERT_THAT(test::listFolder(target.parentPath()), Each(AnyOf("from", "to", "other"))) << "left";
            });
    }

    fileString source_ = at(U"from");
};

TEST_F(DeathOf, CopyFileLeavesOldOrNew)
{
    everywhere(at(U"to"), [this] { EXPECT_TRUE(FileUtils::copyFile(source_, at(U"to"), true)); });
}

TEST_F(DeathOf, MoveFileLeavesOldOrNew)
{
    everywhere(at(U"to"), [this] { EXPECT_TRUE(FileUtils::moveFile(source_, at(U"to"), true)); });
}

TEST_F(DeathOf, MoveFileToAnotherVolumeLeavesOldOrNew)
{
    everywhere(other_ / U"to", [this] { EXPECT_TRUE(FileUtils::moveFile(source_, other_ / U"to", true)); });
}

TEST_F(DeathOf, ReplacementFileLeavesOldOrNew)
{
    everywhere(at(U"to"), [this] {
        ReplacementFile file(at(U"to"));
        for (int block = 0; block < 3; ++block)
            EXPECT_TRUE(file.write(std::string(20'000, 'n')));
        EXPECT_TRUE(file.commit());
    });
}

// Many processes try to create the same new file: exactly one succeeds, and no other replaces it.
TEST_F(FileUtilsDeaths, OneOfManyMakesAFileThatMustNotBeThere)
{
    constexpr int processes = 8;
    for (int round = 0; round < 10; ++round) {
        std::vector<std::unique_ptr<test::Child>> children;
        for (char letter = 'a'; letter < 'a' + processes; ++letter)
            children.push_back(std::make_unique<test::Child>([this, letter] {
                const fileString own = at(U"from") + fileString(std::string(1, letter));
                test::writeFile(own, std::string(1, letter));
                const bool made = letter % 2 == 0 ? FileUtils::copyFile(own, at(U"to"), false)
                                                  : FileUtils::moveFile(own, at(U"to"), false);
                if (made)
                    test::writeFile(at(U"winner") + fileString(std::string(1, letter)), "");
            }));
        for (const auto& child : children)
            child->wait();
        std::vector<std::string> winners;
        for (const std::string& name : names())
            if (name.starts_with("winner"))
                winners.push_back(name.substr(6));
        EXPECT_THAT(winners, ElementsAre(test::readFile(at(U"to"))));
        for (const std::string& name : names())
            FileUtils::removePath(root_.path() / fileString(name), FileUtils::noFlags);
    }
}

TEST_F(FileUtilsDeaths, AWorkFolderOfAKilledProcessIsALeftover)
{
    test::killedAtEachSystemCall([] {},
                                 [this] {
                                     const WorkFolder folder(root_.path());
                                     test::writeFile(folder.path() / U"file", "text");
                                 },
                                 [this](bool) {
                                     WorkFolder::removeLeftovers(root_.path());
                                     ASSERT_THAT(names(), ElementsAre());
                                 });
}

TEST_F(FileUtilsDeaths, TheLockOfAKilledProcessIsFree)
{
    const fileString path = at(U"data.lock");
    test::Signal locked;
    test::Signal never;
    test::Child holder([&] {
        const FileLock lock(path, std::chrono::milliseconds(0), "work");
        locked.send();
        never.wait();
    });
    locked.wait();
    EXPECT_TRUE(FileLock(path, std::chrono::milliseconds(0), "work").isBusy());
    holder.kill();
    EXPECT_TRUE(FileLock(path, std::chrono::milliseconds(0), "work"));
    EXPECT_THAT(names(), ElementsAre());
}

}  // namespace
