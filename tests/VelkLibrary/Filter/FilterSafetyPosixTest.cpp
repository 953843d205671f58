#include <VelkCommon/Files/LockingFStream.h>
#include <VelkLibrary/Filter/FilterFile.h>
#include <VelkLibrary/JsonReader.h>
#include <VelkLibrary/LibraryFilterManager.h>

#include "FilterTest.h"
#include "support/DocumentDeaths.h"
#include "support/Numbers.h"
#include "support/OpenModes.h"
#include "support/Processes.h"

#include <gmock/gmock.h>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <new>

namespace {

using testing::ElementsAre;

// From now on this process, which must be a child, gets no memory from the system for that call.
void refuseMemoryFor(long systemCall)
{
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(systemCall), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOMEM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

class FilterSafety : public test::FilterTest
{
protected:
    static void useFilters(char letter, int count)
    {
        std::vector<LibraryFilter> filters;
        for (int i = 0; i < count; ++i)
            filters.emplace_back(letter + std::to_string(i), i, std::vector<std::string>(20, std::string(10, letter)));
        manager().setLibraryFilters(filters);
    }

    static std::string savedText()
    {
        manager().saveFilters();
        return test::readFile(filterFile());
    }
};

TEST_F(FilterSafety, ADeathAtAnyMomentLeavesTheOldOrTheNewFile)
{
    useFilters('o', 60);
    const std::string oldText = savedText();
    useFilters('n', 60);
    const std::string newText = savedText();
    test::expectOldOrNewAtEveryDeath(
        filterFile(), oldText, [] { manager().saveFilters(); },
        [&](const std::string& text) { return text == newText; });
}

TEST_F(FilterSafety, ADeathWhileMergingLeavesTheOldOrTheNewFile)
{
    useFilters('o', 30);
    const std::string oldText = savedText();
    useFilters('n', 1);
    test::expectOldOrNewAtEveryDeath(
        filterFile(), oldText, [] { EXPECT_TRUE(manager().mergeFilters(filterFile())); },
        [](const std::string& text) {
            return text.find("nnnnnnnnnn") != std::string::npos && !json::read(text)->empty();
        });
}

// A file that was taken for a missing or a damaged one would be replaced by what is held instead.
TEST_F(FilterSafety, LackOfMemoryIsNoFaultOfTheFile)
{
    useFilters('o', 1);
    const std::string text = savedText();
    const fileString path = filterFile();
    for (const long systemCall : {SYS_newfstatat, SYS_openat}) {
        test::inChild([&] {
            refuseMemoryFor(systemCall);
            FilterFile file;
            EXPECT_THROW(file.read(path), std::bad_alloc) << systemCall;
        });
    }
    EXPECT_EQ(test::readFile(path), text);
}

TEST_F(FilterSafety, AFullDiskLeavesTheOldFile)
{
    useFilters('o', 10);
    const std::string oldText = savedText();
    useFilters('n', 500);
    test::expectOldOnFullDisk(filterFile(), oldText, 20'000, [this] {
        manager().saveFilters();
        expectReport(test::reportLine::filtersNotWritten, "Error Writing Library Filter Data File");
    });
    test::expectOldOnFullDisk(filterFile(), oldText, 20'000, [] {
        EXPECT_FALSE(manager().mergeFilters(filterFile()));
        EXPECT_EQ(manager().getLibraryFilters().size(), 500U);
    });
}

TEST_F(FilterSafety, ProcessesThatSaveAtOnceLeaveOneOfTheirFiles)
{
    std::vector<std::string> texts;
    for (const char letter : {'a', 'b'}) {
        useFilters(letter, 60);
        texts.push_back(savedText());
    }
    test::expectWholeAmongWriters(
        filterFile(),
        [](int writer) {
            useFilters(static_cast<char>('a' + writer), 60);
            manager().saveFilters();
        },
        [&](const std::string& text) { return text == texts[0] || text == texts[1]; });
}

// The user may write the file, but may not make the file that would take its place.
class FilterFileThatCannotBeReplaced : public FilterSafety, public testing::WithParamInterface<mode_t>
{
protected:
    FilterFileThatCannotBeReplaced()
    {
        setMode(folder(), 0755);
        setMode(userFolder_, 0777);
        writeOld();
        setMode(filterFile().parentPath(), GetParam());
    }

    static void setMode(const fileString& path, mode_t mode)
    {
        EXPECT_EQ(::chmod(path.utf8().c_str(), mode), 0) << path;
    }

    static void writeOld()
    {
        test::writeFile(filterFile(), old);
        setMode(filterFile(), 0666);
    }

    static constexpr const char* old = "{\"Current_Filter\": 7}";
    const fileString userFolder_ = PathUtils::getObject().getUserDatabasePath();
};

TEST_P(FilterFileThatCannotBeReplaced, IsWrittenInPlace)
{
    useFilters('n', 2);
    test::asOrdinaryUser([this] {
        manager().saveFilters();
        EXPECT_TRUE(messages().empty());
        EXPECT_TRUE(assertions().empty());
    });
    FilterFile file;
    EXPECT_TRUE(file.read(filterFile()));
    EXPECT_EQ(file.filters.size(), 2U);
    EXPECT_THAT(test::listFolder(userFolder_), testing::IsEmpty());
}

TEST_P(FilterFileThatCannotBeReplaced, IsOldOrNewWhenItIsReadAfterADeath)
{
    useFilters('n', 2);
    bool wasOld = false;
    bool wasNew = false;
    test::killedAtEachSystemCall(
        writeOld,
        [] {
            test::becomeOrdinaryUser();
            manager().saveFilters();
        },
        [&](bool) {
            FilterFile file;
            ASSERT_TRUE(file.read(filterFile()));
            wasOld = wasOld || (file.currentId == 7 && file.filters.empty());
            wasNew = wasNew || file.filters.size() == 2;
            ASSERT_EQ(file.filters.size(), file.currentId == 7 ? 0U : 2U);
            ASSERT_THAT(test::listFolder(filterFile().parentPath()), ElementsAre("catalog_filters.json"));
        });
    EXPECT_TRUE(wasOld);
    EXPECT_TRUE(wasNew);
}

TEST_P(FilterFileThatCannotBeReplaced, IsReportedWhenItMayNotBeWrittenEither)
{
    setMode(filterFile(), 0444);
    useFilters('n', 1);
    test::asOrdinaryUser([this] {
        manager().saveFilters();
        ASSERT_EQ(messages().size(), 1U);
        EXPECT_EQ(messages().front().id, test::messageId::fileUnwritable);
        EXPECT_EQ(messages().front().line, test::reportLine::filtersUnwritable);
    });
    EXPECT_EQ(test::readFile(filterFile()), old);
}

INSTANTIATE_TEST_SUITE_P(Folders, FilterFileThatCannotBeReplaced, testing::Values(mode_t{0755}, mode_t{01777}),
                         [](const auto& info) { return info.param == mode_t{0755} ? "Closed" : "Sticky"; });

// Other programs may write a file in place; readers wait until they are done.
TEST_F(FilterSafety, AFileThatIsBeingWrittenIsWaitedFor)
{
    test::Signal holding;
    test::Signal reading;
    const std::string text = "{" + test::filterText("A", 1, "") + "}";
    test::Child writer([&] {
        LockingFStream file(filterFile(), test::writeBytes);
        holding.send();
        reading.wait();
        file << text;
        file.close();
    });
    holding.wait();
    reading.send();
    load(filterFile());
    writer.wait();
    EXPECT_THAT(filters(), ElementsAre("1 A []"));
}

}  // namespace
