#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/detail/LockPatience.h>

#include "support/OpenModes.h"
#include "support/Processes.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <sys/stat.h>
#include <unistd.h>

#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

std::string readAll(std::istream& in)
{
    return {std::istreambuf_iterator<char>(in), {}};
}

// Waits for a held file for as long as it takes, however busy the machine is.
class NoHurry
{
public:
    NoHurry() { Velk::detail::setLockPatience(std::chrono::hours(1)); }
    ~NoHurry() { Velk::detail::setLockPatience(Velk::detail::usualLockPatience); }
    NoHurry(const NoHurry&) = delete;
    NoHurry& operator=(const NoHurry&) = delete;
};

class LockingFStreamPosix : public testing::Test
{
protected:
    LockingFStreamPosix() { test::writeFile(file_, "old"); }

    test::TemporaryFolder root_;
    fileString file_ = root_ / U"file";
    test::Signal held_;
    test::Signal release_;
};

TEST_F(LockingFStreamPosix, AnotherProcessesWriterIsFelt)
{
    test::Child writer([this] {
        LockingFStream out(file_, test::writeBytes);
        held_.send();
        release_.wait();
        out << "new";
    });
    held_.wait();
    EXPECT_TRUE(FileUtils::isPathWriteLocked(file_));
    EXPECT_FALSE(FileUtils::canWriteFile(file_));
    EXPECT_TRUE(LockingFStream(file_, test::readText).fail());
    release_.send();
    writer.wait();
    EXPECT_FALSE(FileUtils::isPathWriteLocked(file_));
    EXPECT_TRUE(FileUtils::canWriteFile(file_));
    EXPECT_EQ(test::readFile(file_), "new");
}

TEST_F(LockingFStreamPosix, AnotherProcessesReaderKeepsTheFileFromBeingEmptied)
{
    test::Child reader([this] {
        LockingFStream in(file_, test::readText);
        held_.send();
        release_.wait();
        EXPECT_EQ(readAll(in), "old");
    });
    held_.wait();
    EXPECT_FALSE(FileUtils::isPathWriteLocked(file_));
    EXPECT_EQ(readAll(*std::make_unique<LockingFStream>(file_, test::readText)), "old");
    EXPECT_TRUE(LockingFStream(file_, test::writeBytes).fail());
    release_.send();
    reader.wait();
}

TEST_F(LockingFStreamPosix, ADeadHolderLetsGo)
{
    test::Child writer([this] {
        LockingFStream out(file_, test::writeBytes);
        held_.send();
        release_.wait();
    });
    held_.wait();
    writer.kill();
    EXPECT_FALSE(FileUtils::isPathWriteLocked(file_));
    EXPECT_TRUE(LockingFStream(file_, test::readText).good());
}

// The holder lets go while others wait for it; all of them get the file.
TEST_F(LockingFStreamPosix, WaitersGetTheFileWhenTheHolderLetsGo)
{
    const NoHurry noHurry;
    // Another process holds the file, because children of this one would inherit the lock.
    test::Child holder([this] {
        LockingFStream out(file_, test::writeBytes);
        held_.send();
        release_.wait();
        out << "new";
    });
    held_.wait();
    std::vector<std::unique_ptr<test::Child>> waiters;
    for (int i = 0; i < 3; ++i)
        waiters.push_back(std::make_unique<test::Child>([this] {
            held_.send();
            LockingFStream in(file_, test::readText);
            EXPECT_EQ(readAll(in), "new");
        }));
    for (int i = 0; i < 3; ++i)
        held_.wait();
    release_.send();
    holder.wait();
    for (const auto& waiter : waiters)
        waiter->wait();
}

// Writers increase a number in turn: none of them sees a file that another has half written.
TEST_F(LockingFStreamPosix, ThreadsNeverSeeAHalfWrittenFile)
{
    const std::string text(200'000, 'x');
    test::writeFile(file_, text);
    const auto write = [&] { LockingFStream(file_, test::writeBytes) << text; };
    const auto read = [&] {
        LockingFStream in(file_, test::readText);
        EXPECT_TRUE(!in.isOpen() || readAll(in).size() == text.size());
    };
    test::onThreads(4, [&](std::size_t i) {
        for (int round = 0; round < 20; ++round)
            i % 2 == 0 ? write() : read();
    });
}

// Others keep replacing the file by renaming. Whoever opens it gets the lock on the file that has the name at that
// moment, never on a file that has lost its name.
TEST_F(LockingFStreamPosix, TheLockIsOnTheFileThatHasTheName)
{
    const NoHurry noHurry;
    {
        const test::Repeatedly replacer([&, i = 0]() mutable {
            test::writeFile(root_ / U"next", std::to_string(++i));
            FileUtils::renameFile(root_ / U"next", file_);
        });
        for (int round = 0; round < 200; ++round) {
            LockingFStream in(file_, test::readText);
            EXPECT_TRUE(in.good());
        }
    }
    LockingFStream out(file_, test::writeBytes);
    out << "mine";
    out.close();
    EXPECT_EQ(test::readFile(file_), "mine");
}

TEST_F(LockingFStreamPosix, AFullDiskShows)
{
    test::inChild([this] {
        test::limitFileSize(1000);
        LockingFStream little(file_, test::writeBytes);
        little << std::string(2000, 'x');
        EXPECT_TRUE(little.good()) << "still in the buffer";
        little.close();
        EXPECT_TRUE(little.fail());
        LockingFStream large(file_, test::writeBytes);
        large << std::string(2'000'000, 'x');
        EXPECT_TRUE(large.bad());
        large.close();
        LockingFStream flushed(file_, test::writeBytes);
        flushed << std::string(2000, 'x') << std::flush;
        EXPECT_TRUE(flushed.bad());
    });
}

TEST_F(LockingFStreamPosix, AReadFaultIsNoEnd)
{
    LockingFStream in(std::string("/proc/self/mem"), test::readText);
    ASSERT_TRUE(in.isOpen());
    EXPECT_EQ(readAll(in), "");
    EXPECT_TRUE(in.bad());
    LockingFStream throwing(std::string("/proc/self/mem"), test::readText);
    throwing.exceptions(std::ios_base::badbit);
    EXPECT_THROW(readAll(throwing), std::ios_base::failure);
}

TEST_F(LockingFStreamPosix, AccessRightsCount)
{
    ASSERT_EQ(::chmod(root_.path().utf8().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(file_.utf8().c_str(), ::geteuid() == 0 ? 0600 : 0), 0);
    test::asOrdinaryUser([this] {
        EXPECT_TRUE(LockingFStream(file_, test::readText).fail());
        EXPECT_TRUE(LockingFStream(file_, test::writeBytes).fail());
        EXPECT_TRUE(LockingFStream(root_ / U"new", test::writeBytes).fail());
    });
}

}  // namespace
