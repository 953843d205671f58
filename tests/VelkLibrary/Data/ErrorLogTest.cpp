#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/Process.h>
#include <VelkLibrary/ErrorLog.h>

#include "support/Names.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <gmock/gmock.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iomanip>
#include <limits>
#include <locale>
#include <regex>
#include <thread>
#include <typeinfo>
#include <utility>

namespace {

using Library::ErrorLog;

// Every insertion returns the log.
static_assert(std::is_same_v<decltype(std::declval<ErrorLog&>() << 'c' << 1 << 1U << 1L << 1UL << 1LL << 1ULL << true),
                             ErrorLog&>);
static_assert(std::is_same_v<decltype(std::declval<ErrorLog&>()
                                      << std::size_t{1} << std::int64_t{1} << std::int16_t{1} << 1.5 << 1.5F << std::hex
                                      << std::setw(3) << static_cast<void*>(nullptr)),
                             ErrorLog&>);
static_assert(std::is_same_v<decltype(std::declval<ErrorLog&>()
                                      << "text" << std::string() << std::string_view() << std::u32string() << U"text"
                                      << fileString() << boost::uuids::uuid()),
                             ErrorLog&>);
template <typename... T>
constexpr bool beginsAChain =
    (std::is_same_v<std::remove_reference_t<decltype(ErrorLog() << std::declval<const T&>())>, ErrorLog> && ...);
static_assert(beginsAChain<char, signed char, unsigned char, bool, short, unsigned short, int, unsigned, long,
                           unsigned long, long long, unsigned long long, std::size_t, std::int64_t, float, double,
                           long double, void*, const char*, char*, const char[3], std::string, std::string_view,
                           const char32_t*, std::u32string, std::u32string_view, fileString, boost::uuids::uuid,
                           decltype(std::setw(1)), decltype(std::setfill('x')), std::thread::id>);
static_assert(sizeof(ErrorLog) == sizeof(std::ostringstream));

const boost::uuids::uuid id{
    {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff}};
constexpr const char* idText = "00112233-4455-6677-8899-aabbccddeeff";

struct Record
{
    std::string thread;
    std::string message;
};

// The records of a log; fails the test when the log is anything else.
std::vector<Record> parse(std::string log)
{
    if (Velk::Platform::linesEndWithCarriageReturn)
        log.erase(std::remove(log.begin(), log.end(), '\r'), log.end());
    const std::regex head(
        "---\nTime: \\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{6}Z\nThread ID: (\\d+)\nMessage: \\|\n");
    const std::string foot = "\n...\n";
    std::vector<Record> records;
    for (std::smatch match; !log.empty();) {
        if (!std::regex_search(log, match, head, std::regex_constants::match_continuous)) {
            ADD_FAILURE() << "not a record: " << log.substr(0, 200);
            return records;
        }
        const auto begin = static_cast<std::size_t>(match.length());
        const std::size_t end = log.find(foot, begin);
        if (end == std::string::npos) {
            ADD_FAILURE() << "no end of the record: " << log.substr(0, 200);
            return records;
        }
        records.push_back({match[1], log.substr(begin, end + 1 - begin)});
        log.erase(0, end + foot.size());
    }
    return records;
}

constexpr std::string_view lineEnd = Velk::Platform::linesEndWithCarriageReturn ? "\r\n" : "\n";

class ErrorLogTest : public test::TestHost
{
protected:
    fileString path() const { return folder() / U"user" / U"errors.log"; }
    std::vector<Record> records() const { return parse(test::readFile(path())); }

    // The only message in the log.
    std::string message() const
    {
        const auto all = records();
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? std::string() : all.front().message;
    }

    void writeLogOfAge(std::chrono::seconds age) const
    {
        test::writeFile(path(), "earlier\n");
        std::filesystem::last_write_time(path().utf8(), std::filesystem::file_time_type::clock::now() - age);
    }
};

// ---- Records -------------------------------------------------------------------------------------

TEST_F(ErrorLogTest, IsInTheUsersDatabaseFolder)
{
    EXPECT_EQ(ErrorLog::file(), path());
    auto services = this->services();
    services.folders.userDatabase = folder() / U"other/";
    Velk::installHost(services);
    EXPECT_EQ(ErrorLog::file(), folder() / U"other/errors.log") << "the host is asked again";
}

TEST_F(ErrorLogTest, ItsNameIsTranslated)
{
    auto services = this->services();
    services.translate = [](std::u32string_view text) {
        return text == U"errors.log" ? std::u32string(U"fehler.log") : std::u32string(text);
    };
    Velk::installHost(services);
    ErrorLog() << "a";
    EXPECT_TRUE((folder() / U"user/fehler.log").pathExists());
    EXPECT_FALSE(path().pathExists());
}

TEST_F(ErrorLogTest, ARecordHasTimeThreadAndMessage)
{
    ErrorLog() << "Unable to determine api endpoint";
    const auto all = records();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].message, "Unable to determine api endpoint\n");
    EXPECT_EQ(all[0].thread, std::to_string(Velk::Platform::currentThreadId()));
}

TEST_F(ErrorLogTest, RecordsAreAppended)
{
    test::writeFile(path(), "");
    ErrorLog() << "one";
    ErrorLog() << "two";
    test::Thread([] { ErrorLog() << "three"; }).join();
    const auto all = records();
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].message, "one\n");
    EXPECT_EQ(all[1].message, "two\n");
    EXPECT_EQ(all[2].message, "three\n");
    EXPECT_EQ(all[0].thread, all[1].thread);
    EXPECT_NE(all[0].thread, all[2].thread);
}

TEST_F(ErrorLogTest, TheLineBreakAtTheEndIsAddedOnlyWhereItIsMissing)
{
    ErrorLog() << "abc";
    ErrorLog() << "abc\n";
    ErrorLog() << "abc\n\n";
    ErrorLog() << "\n";
    const auto all = records();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[0].message, "abc\n");
    EXPECT_EQ(all[1].message, "abc\n");
    EXPECT_EQ(all[2].message, "abc\n\n");
    EXPECT_EQ(all[3].message, "\n");
}

TEST_F(ErrorLogTest, LinesAreNotIndented)
{
    ErrorLog() << "one\n  two\nthree" << std::endl << "four";
    EXPECT_EQ(message(), "one\n  two\nthree\nfour\n");
}

TEST_F(ErrorLogTest, AnEmptyMessageWritesNothing)
{
    {
        const ErrorLog silent;
    }
    ErrorLog() << "" << std::string() << static_cast<const char*>(nullptr);
    EXPECT_FALSE(path().pathExists());
}

// ---- Insertions ----------------------------------------------------------------------------------

TEST_F(ErrorLogTest, TextsAreInsertedWhole)
{
    char changing[] = "changing";
    char* pointer = changing;
    const char array[] = "array";
    ErrorLog() << static_cast<const char32_t*>(nullptr) << "literal " << std::string("a\0b ", 4)
               << std::u32string(U"Küche\U0001F600 ") << U"bare " << std::u32string_view(U"é ")
               << std::string_view("view ") << changing << ' ' << pointer << ' ' << array << ' '
               << static_cast<const char*>(nullptr) << fileString(std::u32string(U"/ä/ö.calib"));
    EXPECT_EQ(message(), std::string("literal a\0b ", 12) + "Küche\U0001F600 bare é view changing changing array " +
                             test::shown("/ä/ö.calib\n"));
}

TEST_F(ErrorLogTest, OddNamesAreInsertedAsTheyAre)
{
    ErrorLog() << fileString(std::string("/caf\xE9"));
    EXPECT_EQ(message(), test::shown("/caf\xE9\n"));
}

TEST_F(ErrorLogTest, TextThatIsNotUnicodeIsStillLogged)
{
    ErrorLog() << std::u32string{U'a', char32_t{0xD800}, U'b'};
    EXPECT_EQ(message(),
              "a\xEF\xBF\xBD"
              "b\n");
}

TEST_F(ErrorLogTest, NumbersAreInsertedInFull)
{
    ErrorLog() << static_cast<long long>(-5) << ' ' << 18446744073709551615ULL << ' '
               << std::numeric_limits<long long>::min() << ' ' << std::size_t{7} << ' ' << std::int64_t{-8} << ' ' << -9
               << ' ' << 10U << ' ' << 11L << ' ' << 12UL << ' ' << short{13} << ' ' << 1.5 << ' ' << true << 'c';
    EXPECT_EQ(message(), "-5 18446744073709551615 -9223372036854775808 7 -8 -9 10 11 12 13 1.5 1c\n");
}

TEST_F(ErrorLogTest, ManipulatorsAct)
{
    ErrorLog() << std::hex << 255LL << std::dec << ' ' << std::setw(4) << std::setfill('0') << 7 << ' '
               << std::boolalpha << true << std::flush;
    EXPECT_EQ(message(), "ff 0007 true\n");
}

TEST_F(ErrorLogTest, UuidsAreInsertedAsText)
{
    ErrorLog() << std::uppercase << std::hex << id;
    EXPECT_EQ(message(), std::string(idText) + "\n");
}

TEST_F(ErrorLogTest, UuidsHonourWidthFillAndAdjustment)
{
    ErrorLog() << std::setfill('*') << '[' << std::setw(40) << std::right << id << "][" << std::setw(40) << std::left
               << id << "][" << std::setw(40) << std::internal << id << "][" << std::setw(10) << id << id << ']';
    const std::string text = idText;
    EXPECT_EQ(message(), "[****" + text + "][" + text + "****][****" + text + "][" + text + text + "]\n");
}

TEST_F(ErrorLogTest, TheGlobalLocaleDoesNotChangeNumbers)
{
    struct Grouping : std::numpunct<char>
    {
        std::string do_grouping() const override { return "\3"; }
        char do_thousands_sep() const override { return '.'; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    ErrorLog() << 1234567LL << ' ' << 1234567;
    std::locale::global(before);
    EXPECT_EQ(message(), "1234567 1234567\n");
}

// ---- Age -----------------------------------------------------------------------------------------

constexpr std::chrono::seconds week{604800};
constexpr std::chrono::seconds minute{60};

TEST_F(ErrorLogTest, ALogOfAWeekIsKept)
{
    writeLogOfAge(week - minute);
    ErrorLog() << "new";
    EXPECT_TRUE(test::readFile(path()).starts_with("earlier\n---" + std::string(lineEnd)));
}

TEST_F(ErrorLogTest, AnOlderLogIsRemovedFirst)
{
    writeLogOfAge(week + minute);
    ErrorLog() << "new";
    EXPECT_EQ(message(), "new\n");
}

TEST_F(ErrorLogTest, AnEmptyMessageRemovesAnOldLogToo)
{
    writeLogOfAge(week + minute);
    {
        const ErrorLog silent;
    }
    EXPECT_FALSE(path().pathExists());
    writeLogOfAge(week - minute);
    {
        const ErrorLog silent;
    }
    EXPECT_EQ(test::readFile(path()), "earlier\n");
}

TEST_F(ErrorLogTest, ALogFromTheFutureIsKept)
{
    writeLogOfAge(-4 * week);
    ErrorLog() << "new";
    EXPECT_TRUE(test::readFile(path()).starts_with("earlier\n---" + std::string(lineEnd)));
}

// ---- Failures ------------------------------------------------------------------------------------

TEST_F(ErrorLogTest, AMissingFolderLosesTheRecord)
{
    auto services = this->services();
    services.folders.userDatabase = folder() / U"missing";
    Velk::installHost(services);
    EXPECT_NO_THROW(ErrorLog() << "lost");
    EXPECT_FALSE((folder() / U"missing").pathExists());
}

TEST_F(ErrorLogTest, AFolderInTheLogsPlaceLosesTheRecord)
{
    ASSERT_TRUE(FileUtils::createDirectoriesWithPerm(path()));
    std::error_code notForFolders;  // on Windows
    std::filesystem::last_write_time(path().utf8(), std::filesystem::file_time_type::clock::now() - 2 * week,
                                     notForFolders);
    EXPECT_NO_THROW(ErrorLog() << "lost");
    EXPECT_TRUE(path().pathExists());
}

TEST_F(ErrorLogTest, AHostThatThrowsLosesTheRecordAtMost)
{
    auto services = this->services();
    services.translate = [](std::u32string_view) -> std::u32string { throw 1; };
    Velk::installHost(services);
    EXPECT_NO_THROW(ErrorLog() << "text");
}

TEST_F(ErrorLogTest, AHostMayLogWhileItIsAskedForTheName)
{
    auto services = this->services();
    bool told = false;
    services.translate = [&told](std::u32string_view text) {
        if (!std::exchange(told, true))
            ErrorLog() << "untranslated";
        return std::u32string(text);
    };
    Velk::installHost(services);
    ErrorLog() << "text";
    const auto all = records();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].message, "untranslated\n");
    EXPECT_EQ(all[1].message, "text\n");
}

TEST_F(ErrorLogTest, ItCanBeDestroyedWhileAnExceptionIsThrown)
{
    try {
        ErrorLog log;
        log << "before";
        throw std::runtime_error("any");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(message(), "before\n");
    }
}

// ---- Many at once --------------------------------------------------------------------------------

// Messages that show a torn record: many lines of one letter.
std::string messageOf(char letter, int number)
{
    return std::string(1, letter) + std::to_string(number) + "\n" + std::string(3000, letter) + "\n";
}

void logFromThreads(std::size_t threads, int messages, char firstLetter)
{
    test::onThreads(threads, [=](std::size_t i) {
        for (int number = 0; number < messages; ++number)
            ErrorLog() << messageOf(static_cast<char>(firstLetter + static_cast<char>(i)), number);
    });
}

void expectAllOnce(const std::vector<Record>& records, int letters, int messages, char firstLetter)
{
    std::vector<std::string> expected;
    for (int i = 0; i < letters; ++i)
        for (int number = 0; number < messages; ++number)
            expected.push_back(messageOf(static_cast<char>(firstLetter + i), number));
    std::vector<std::string> found;
    for (const Record& record : records)
        found.push_back(record.message);
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    EXPECT_TRUE(found == expected) << found.size() << " records of " << expected.size();
}

TEST_F(ErrorLogTest, ThreadsLoseAndMixNothing)
{
    logFromThreads(16, 50, 'a');
    expectAllOnce(records(), 16, 50, 'a');
}

}  // namespace

#ifndef _WIN32

#include "support/Processes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

TEST_F(ErrorLogTest, ProcessesLoseAndMixNothing)
{
    test::Child first([] { logFromThreads(8, 50, 'A'); });
    test::Child second([] { logFromThreads(8, 50, 'I'); });
    first.wait();
    second.wait();
    expectAllOnce(records(), 16, 50, 'A');
}

// In a folder that everybody may write to, anybody can put a link in the log's place.
TEST_F(ErrorLogTest, ALinkInTheLogsPlaceIsNotFollowed)
{
    const fileString other = folder() / U"other";
    ASSERT_EQ(::symlink(other.utf8().c_str(), path().utf8().c_str()), 0);
    EXPECT_NO_THROW(ErrorLog() << "lost");
    EXPECT_FALSE(other.pathExists()) << "created through the link";
    test::writeFile(other, "kept");
    EXPECT_NO_THROW(ErrorLog() << "lost");
    EXPECT_EQ(test::readFile(other), "kept");
}

TEST_F(ErrorLogTest, AFileWithASecondNameIsNotAppendedTo)
{
    const fileString other = folder() / U"other";
    test::writeFile(other, "kept");
    ASSERT_EQ(::link(other.utf8().c_str(), path().utf8().c_str()), 0);
    EXPECT_NO_THROW(ErrorLog() << "lost");
    EXPECT_EQ(test::readFile(other), "kept");
}

TEST_F(ErrorLogTest, APipeInTheLogsPlaceLosesTheRecord)
{
    ASSERT_EQ(::mkfifo(path().utf8().c_str(), 0666), 0);
    const int reader = ::open(path().utf8().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_NE(reader, -1);
    EXPECT_NO_THROW(ErrorLog() << "lost");
    char byte = 0;
    EXPECT_EQ(::read(reader, &byte, 1), 0);
    ::close(reader);
    EXPECT_NO_THROW(ErrorLog() << "lost, too");
}

// The class is not exported as a whole, but all modules must agree that it is one type.
TEST_F(ErrorLogTest, IsOneTypeHereAndInTheLibrary)
{
    ErrorLog log;
    std::ostream& stream = log;
    EXPECT_EQ(dynamic_cast<ErrorLog*>(&stream), &log);
    EXPECT_EQ(typeid(stream), typeid(ErrorLog));
}

TEST_F(ErrorLogTest, AFullDiskLosesTheRecordWithoutNotice)
{
    test::inChild([] {
        test::limitFileSize(10);
        EXPECT_NO_THROW(ErrorLog() << "lost");
    });
    EXPECT_LE(FileUtils::fileSize(path()), 10);
}

TEST_F(ErrorLogTest, WithoutTheRightToWriteTheRecordIsLost)
{
    test::writeFile(path(), "earlier\n");
    for (const fileString& open : {folder(), path().parentPath()})
        ASSERT_EQ(::chmod(open.utf8().c_str(), 0555), 0);
    ASSERT_EQ(::chmod(path().utf8().c_str(), 0444), 0);
    test::asOrdinaryUser([] { EXPECT_NO_THROW(ErrorLog() << "lost"); });
    EXPECT_EQ(test::readFile(path()), "earlier\n");
    ASSERT_EQ(::chmod(folder().utf8().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path().parentPath().utf8().c_str(), 0755), 0);
}

TEST_F(ErrorLogTest, AnOldLogThatCannotBeRemovedIsAppendedTo)
{
    writeLogOfAge(week + minute);
    ASSERT_EQ(::chmod(folder().utf8().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path().parentPath().utf8().c_str(), 0555), 0);
    ASSERT_EQ(::chmod(path().utf8().c_str(), 0666), 0);
    test::asOrdinaryUser([] { ErrorLog() << "new"; });
    ASSERT_EQ(::chmod(path().parentPath().utf8().c_str(), 0755), 0);
    EXPECT_TRUE(test::readFile(path()).starts_with("earlier\n---" + std::string(lineEnd)));
}

}  // namespace

#endif
