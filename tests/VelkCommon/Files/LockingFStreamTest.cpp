#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>

#include "support/OpenModes.h"
#include "support/TestHost.h"
#include "support/Threads.h"

#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using test::readBytes;
using test::readText;
using test::writeBytes;
using test::writeText;

std::string readAll(std::istream& in)
{
    return {std::istreambuf_iterator<char>(in), {}};
}

// Longer than any buffer, with every byte value.
std::string bigText()
{
    std::string text;
    for (int i = 0; text.size() < 1'000'000; ++i)
        text += static_cast<char>(i % 251 * (i % 7));
    return text;
}

class LockingFStreamTest : public testing::Test
{
protected:
    test::TemporaryFolder root_;
    fileString file_ = root_ / U"fïle";
};

TEST_F(LockingFStreamTest, WritesAndReadsBytesAsTheyAre)
{
    const std::string text = bigText();
    LockingFStream out(file_, writeBytes);
    EXPECT_TRUE(out.isOpen());
    out << "a\r\n\x1A" << 5 << '\n';
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.put('z');
    out.close();
    EXPECT_TRUE(out.good());
    EXPECT_FALSE(out.isOpen());
    EXPECT_EQ(test::readFile(file_),
              "a\r\n\x1A"
              "5\n" +
                  text + "z");
    LockingFStream in(file_, readBytes);
    ASSERT_TRUE(in.good());
    EXPECT_EQ(readAll(in),
              "a\r\n\x1A"
              "5\n" +
                  text + "z");
}

TEST_F(LockingFStreamTest, ModesAreNumbersOfItsOwn)
{
    EXPECT_EQ(readText, 1);
    EXPECT_EQ(writeText, 2);
    EXPECT_EQ(readBytes, 33);
    EXPECT_EQ(writeBytes, 34);
    test::writeFile(file_, "old text");
    {
        LockingFStream in(file_, readText);
        EXPECT_EQ(readAll(in), "old text");
        in.clear();
        in << "x";
        in.flush();
        EXPECT_TRUE(in.fail()) << "a reader does not write";
    }
    EXPECT_EQ(test::readFile(file_), "old text");
    {
        LockingFStream out(file_, writeText);
        std::string text;
        out >> text;
        EXPECT_TRUE(out.fail()) << "a writer does not read";
    }
    EXPECT_EQ(test::readFile(file_), "") << "writing empties the file";
}

TEST_F(LockingFStreamTest, OtherModesFailAndTouchNothing)
{
    test::writeFile(file_, "text");
    for (const int mode : {0, 3, 35, 32, 8, 16, 42, 38, 50, 5, 9, -1, writeBytes | 1 << 30}) {
        LockingFStream stream(file_, mode);
        EXPECT_TRUE(stream.fail()) << mode;
        EXPECT_FALSE(stream.isOpen()) << mode;
    }
    EXPECT_EQ(test::readFile(file_), "text");
}

TEST_F(LockingFStreamTest, TextEndsItsLinesAsTheSystemDoes)
{
    {
        LockingFStream out(file_, writeText);
        out << "one\ntwo\n";
    }
#ifdef _WIN32
    EXPECT_EQ(test::readFile(file_), "one\r\ntwo\r\n");
#else
    EXPECT_EQ(test::readFile(file_), "one\ntwo\n");
#endif
    LockingFStream in(file_, readText);
    std::string line;
    std::vector<std::string> lines;
    while (std::getline(in, line))
        lines.push_back(line);
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two"}));
}

TEST_F(LockingFStreamTest, TheDestructorWritesWhatIsBuffered)
{
    {
        LockingFStream out(file_, writeBytes);
        out << "text";
    }
    EXPECT_EQ(test::readFile(file_), "text");
}

TEST_F(LockingFStreamTest, AReaderSeeks)
{
    const std::string text = bigText();
    test::writeFile(file_, text);
    for (const int mode : {readBytes, readText}) {
        LockingFStream in(file_, mode);
        in.seekg(0, std::ios_base::end);
        EXPECT_EQ(in.tellg(), std::streamoff(text.size()));
        in.seekg(123456);
        EXPECT_EQ(in.tellg(), std::streamoff(123456));
        EXPECT_EQ(in.get(), static_cast<unsigned char>(text[123456]));
        in.seekg(-10, std::ios_base::cur);
        EXPECT_EQ(in.tellg(), std::streamoff(123447));
        EXPECT_EQ(in.get(), static_cast<unsigned char>(text[123447]));
        in.seekg(static_cast<std::streamoff>(text.size() - 3));
        EXPECT_EQ(readAll(in), text.substr(text.size() - 3));
        in.clear();
        in.seekg(-1, std::ios_base::beg);
        EXPECT_TRUE(in.fail());
    }
}

TEST_F(LockingFStreamTest, AWriterSeeks)
{
    LockingFStream out(file_, writeBytes);
    out << "0123456789";
    EXPECT_EQ(out.tellp(), std::streamoff(10));
    out.seekp(3);
    out << "abc";
    EXPECT_EQ(out.tellp(), std::streamoff(6));
    out.seekp(0, std::ios_base::end);
    out << "end";
    out.close();
    EXPECT_TRUE(out.good());
    EXPECT_EQ(test::readFile(file_), "012abc6789end");
}

TEST_F(LockingFStreamTest, FailureToOpenShowsAndThrowsNothing)
{
    for (const fileString& path : {fileString(), root_.path(), root_ / U"missing/file"})
        for (const int mode : {readText, writeText, writeBytes}) {
            LockingFStream stream(path, mode);
            EXPECT_TRUE(stream.fail()) << path;
            EXPECT_FALSE(stream.isOpen());
            stream.close();
            EXPECT_TRUE(stream.fail());
            stream.clear();
            EXPECT_EQ(stream.get(), std::char_traits<char>::eof());
            stream.clear();
            stream << "x";
            EXPECT_TRUE(stream.bad());
            stream.clear();
            EXPECT_EQ(stream.tellg(), std::streampos(-1));
        }
    EXPECT_FALSE(LockingFStream(root_ / U"missing", readText).isOpen());
    EXPECT_FALSE((root_ / U"missing").pathExists()) << "reading makes no file";
}

TEST_F(LockingFStreamTest, ThrowsWhereTheCallerAsksForIt)
{
    LockingFStream stream(root_ / U"missing", readText);
    EXPECT_THROW(stream.exceptions(std::ios_base::failbit), std::ios_base::failure);
}

TEST_F(LockingFStreamTest, ClosingTwiceIsHarmless)
{
    LockingFStream out(file_, writeBytes);
    out << "text";
    out.close();
    out.close();
    EXPECT_TRUE(out.good());
    EXPECT_EQ(test::readFile(file_), "text");
}

TEST_F(LockingFStreamTest, ReadersShareTheFile)
{
    test::writeFile(file_, "text");
    LockingFStream first(file_, readText);
    LockingFStream second(file_, readText);
    EXPECT_FALSE(FileUtils::isPathWriteLocked(file_)) << "nobody writes";
    EXPECT_EQ(readAll(first), "text");
    EXPECT_EQ(readAll(second), "text");
}

TEST_F(LockingFStreamTest, AWriterIsAlone)
{
    LockingFStream writer(file_, writeBytes);
    EXPECT_TRUE(writer.isOpen());
    EXPECT_TRUE(FileUtils::isPathWriteLocked(file_)) << "a holder in this process counts too";
    writer.close();
    EXPECT_FALSE(FileUtils::isPathWriteLocked(file_));
    EXPECT_TRUE(LockingFStream(file_, readText).good());
}

// All at once, because each attempt waits for the whole time that opening a held file may take.
TEST_F(LockingFStreamTest, WhoComesTooLateGetsNothing)
{
    const fileString read = root_ / U"read";
    const fileString written = root_ / U"written";
    test::writeFile(read, "text");
    LockingFStream reader(read, readText);
    LockingFStream writer(written, writeBytes);
    const std::vector<std::pair<fileString, int>> late{{read, writeBytes}, {written, readText}, {written, writeBytes}};
    test::onThreads(late.size(), [&](std::size_t i) {
        EXPECT_TRUE(LockingFStream(late[i].first, late[i].second).fail()) << late[i].first << ' ' << late[i].second;
    });
    EXPECT_EQ(readAll(reader), "text") << "not emptied without the lock";
}

TEST_F(LockingFStreamTest, NobodyLocksAMissingFile)
{
    EXPECT_FALSE(FileUtils::isPathWriteLocked(file_));
    EXPECT_FALSE(file_.pathExists());
}

}  // namespace
