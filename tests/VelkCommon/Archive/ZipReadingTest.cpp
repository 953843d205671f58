#include "ZipWalk.h"

#include "support/Names.h"

#include <gmock/gmock.h>

#include <new>
#include <string>
#include <vector>

namespace {

using test::ZipBuilder;
using test::ZipDescriptor;
using test::ZipHandle;
using test::ZipItem;
using testing::ElementsAre;
using testing::IsEmpty;

class ZipReading : public test::ArchiveTest
{
protected:
    fileString archive_ = at(U"archive.zip");
};

TEST_F(ZipReading, ConstantTexts)
{
    EXPECT_EQ(ZipUtils::getExtension(), U".zip");
    EXPECT_FALSE(ZipUtils::getDelimiter().empty());
}

TEST_F(ZipReading, EntriesInArchiveOrder)
{
    ZipBuilder().add("b", "1").add("folder/", "").add("a", "2").add("b", "3").writeTo(archive_);
    EXPECT_EQ(ZipUtils::getSizeOfArchive(archive_), 4u);
    EXPECT_THAT(ZipUtils::getFilenamesInArchive(archive_),
                ElementsAre(std::string("b"), std::string("folder/"), std::string("a"), std::string("b")));
}

TEST_F(ZipReading, TheWalkGivesNamesOnce)
{
    ZipBuilder().add("b", "1").add("folder/", "").add("a", "2").writeTo(archive_);
    std::vector<std::string> seen;
    const auto names = walk(archive_, [&](const fileString& name, const ZipHandle&, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_NE(entry, nullptr);
        seen.push_back(name.utf8());
    });
    EXPECT_THAT(seen, ElementsAre("b", "folder/", "a"));
    EXPECT_EQ(names, ZipUtils::getFilenamesInArchive(archive_));
}

TEST_F(ZipReading, TheWalkEndsBehindARefusedEntryAndBeforeAStop)
{
    ZipBuilder().add("a", "1").add("b", "2").add("c", "3").writeTo(archive_);
    int calls = 0;
    const auto second = [&](const std::u32string&, const ZipHandle&, ZipUtils::ZipRawDataInfo*) { return ++calls < 2; };
    EXPECT_THAT(ZipUtils::getFilesDataInArchive(archive_, second, &test::never),
                ElementsAre(std::string("a"), std::string("b")));
    EXPECT_EQ(calls, 2);
    calls = 0;
    const auto all = [&](const std::u32string&, const ZipHandle&, ZipUtils::ZipRawDataInfo*) { return ++calls > 0; };
    EXPECT_THAT(ZipUtils::getFilesDataInArchive(archive_, all, [&] { return calls == 1; }),
                ElementsAre(std::string("a")));
    EXPECT_THAT(ZipUtils::getFilesDataInArchive(archive_, all, [] { return true; }), IsEmpty());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(ZipUtils::getFilesDataInArchive(archive_, all, {}).size(), 3u) << "without a predicate it never stops";
}

TEST_F(ZipReading, AnExceptionPassesThroughAndTheNextWalkWorks)
{
    ZipBuilder().add("a", "1").writeTo(archive_);
    EXPECT_THROW(walk(archive_, [](const fileString&, const ZipHandle&, ZipUtils::ZipRawDataInfo*) { throw 1; }), int);
    EXPECT_EQ(namesOf(archive_), "a");
    EXPECT_EQ(dataOf(archive_, "a"), "1");
}

// ---- Names ---------------------------------------------------------------------------------------

struct NameCase
{
    const char* name;
    const char* bytes;
    std::uint16_t flags;
    const char32_t* text;
};

void PrintTo(const NameCase& row, std::ostream* out)
{
    *out << row.name;
}

const NameCase nameCases[] = {
    {"Ascii", "a b.txt", 0, U"a b.txt"},
    {"DeclaredUtf8",
     "K\xC3\xBC"
     "che/\xE6\xA4\x85.png",
     test::zip::utf8Names, U"Küche/椅.png"},
    {"Utf8WithoutTheFlag",
     "K\xC3\xBC"
     "che",
     0, U"Küche"},
    {"CodePage437",
     "K\x81"
     "che \x9B\xE1",
     0, U"Küche ¢ß"},
    {"BoxesOfCodePage437", "\xB0\xFF", 0, U"░\u00A0"},
    {"OddBytesDeclaredAsUtf8",
     "a\xFF"
     "b",
     test::zip::utf8Names,
     U"a\xDCFF"
     U"b"},
    {"UpAndAbsolute", "../../etc/passwd", 0, U"../../etc/passwd"},
    {"Backslashes", "a\\b", 0, U"a\\b"},
    {"Empty", "", 0, U""},
};

class ZipNames : public ZipReading, public testing::WithParamInterface<NameCase>
{};

TEST_P(ZipNames, AreDecodedAndFound)
{
    ZipItem item;
    item.name = GetParam().bytes;
    item.flags = GetParam().flags;
    item.data = "data";
    ZipBuilder().add(item).writeTo(archive_);
    std::u32string seen;
    const auto names = ZipUtils::getFilesDataInArchive(
        archive_,
        [&](const std::u32string& name, const ZipHandle&, ZipUtils::ZipRawDataInfo*) {
            seen = name;
            return true;
        },
        &test::never);
    EXPECT_EQ(seen, GetParam().text);
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names[0].unicodeString(), GetParam().text);
    EXPECT_EQ(dataOf(archive_, fileString(seen).utf8()), "data");
    EXPECT_EQ(streamOf(archive_, fileString(seen).utf8()), "data");
}

INSTANTIATE_TEST_SUITE_P(Encodings, ZipNames, testing::ValuesIn(nameCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ZipReading, TheLastOfSeveralEntriesStandsForTheName)
{
    ZipBuilder().add("a", "first").add("b", "other").add("a", "last").writeTo(archive_);
    EXPECT_EQ(dataOf(archive_, "a"), "last");
    EXPECT_EQ(streamOf(archive_, "a"), "last");
}

// ---- Data ----------------------------------------------------------------------------------------

struct DataCase
{
    const char* name;
    ZipItem item;
};

void PrintTo(const DataCase& row, std::ostream* out)
{
    *out << row.name;
}

ZipItem item(const std::string& data, bool deflated, ZipDescriptor descriptor = ZipDescriptor::none, bool wide = false)
{
    ZipItem made;
    made.name = "entry";
    made.data = data;
    made.deflated = deflated;
    made.descriptor = descriptor;
    made.wide = wide;
    return made;
}

const DataCase dataCases[] = {
    {"EmptyStored", item("", false)},
    {"EmptyDeflated", item("", true)},
    {"ShortStored", item("x", false)},
    {"ShortDeflated", item("x", true)},
    {"NoiseStored", item(test::noise(300'000), false)},
    {"NoiseDeflated", item(test::noise(300'000), true)},
    {"ZerosDeflated", item(std::string(5'000'000, '\0'), true)},
    {"DescriptorDeflated", item(test::noise(3'000), true, ZipDescriptor::signedNarrow)},
    {"DescriptorStored", item(test::noise(3'000), false, ZipDescriptor::plainNarrow)},
    {"WideDescriptor", item(test::noise(3'000), true, ZipDescriptor::signedWide, true)},
    {"WideStored", item(test::noise(3'000), false, ZipDescriptor::none, true)},
};

class ZipData : public ZipReading, public testing::WithParamInterface<DataCase>
{};

TEST_P(ZipData, IsReadWholeAndInBlocksOfAnySize)
{
    ZipBuilder().add("before", "b").add(GetParam().item).add("behind", "c").writeTo(archive_);
    const std::string& data = GetParam().item.data;
    EXPECT_TRUE(dataOf(archive_, "entry") == data);
    for (const int blockSize : {7, 1000, 131'072, 131'073, 52'428'800})
        if (blockSize >= 1000 || data.size() < 100'000) {
            EXPECT_TRUE(streamOf(archive_, "entry", blockSize) == data) << blockSize;
        }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ZipData, testing::ValuesIn(dataCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ZipReading, BlocksAreFullButForTheLast)
{
    ZipBuilder().add(item(test::noise(250'000), true)).writeTo(archive_);
    ZipUtils::ZipInputStream stream(combined(archive_, "entry"));
    std::vector<std::size_t> sizes;
    while (!stream.reachedEOF()) {
        EXPECT_FALSE(stream.isWhole());
        sizes.push_back(stream.readArchivedFile(100'000).size());
    }
    EXPECT_THAT(sizes, ElementsAre(100'000u, 100'000u, 50'000u));
    EXPECT_TRUE(stream.isWhole());
    EXPECT_TRUE(stream.isFileOpen());
}

TEST_F(ZipReading, ABlockMayBeAsLargeAsTheEntry)
{
    ZipBuilder().add(item(std::string(3'000'000, 'x'), true)).writeTo(archive_);
    ZipUtils::ZipInputStream stream(combined(archive_, "entry"));
    EXPECT_EQ(stream.readArchivedFile(52'428'800).size(), 3'000'000u);
    EXPECT_TRUE(stream.isWhole());
}

TEST_F(ZipReading, NothingIsReadForNoBytes)
{
    ZipBuilder().add("entry", "data").writeTo(archive_);
    ZipUtils::ZipInputStream stream(combined(archive_, "entry"));
    EXPECT_THAT(stream.readArchivedFile(0), IsEmpty());
    EXPECT_THAT(stream.readArchivedFile(-5), IsEmpty());
    EXPECT_FALSE(stream.reachedEOF());
    EXPECT_EQ(stream.readArchivedFile(100).size(), 4u);
}

TEST_F(ZipReading, CombinedPathsThatNameNoEntry)
{
    ZipBuilder().add("entry", "data").writeTo(archive_);
    const fileString delimiter = ZipUtils::getDelimiter();
    const fileString paths[] = {{},
                                archive_,
                                archive_ + delimiter,
                                archive_ + delimiter + fileString(std::string("Entry")),
                                archive_ + delimiter + fileString(std::string("entry/")),
                                delimiter + fileString(std::string("entry")),
                                at(U"missing.zip") + delimiter + fileString(std::string("entry")),
                                folder() + delimiter + fileString(std::string("entry"))};
    for (const fileString& path : paths) {
        ZipUtils::writeFileDataFromArchive(path, [&](std::vector<unsigned char>&) { ADD_FAILURE() << path; });
        ZipUtils::ZipInputStream stream(path);
        EXPECT_FALSE(stream.isFileOpen()) << path;
        EXPECT_TRUE(stream.reachedEOF()) << path;
        EXPECT_FALSE(stream.isWhole()) << path;
        EXPECT_THAT(stream.readArchivedFile(10), IsEmpty()) << path;
    }
}

TEST_F(ZipReading, ACombinedPathNamesNoFile)
{
    ZipBuilder().add("entry", "data").writeTo(archive_);
    EXPECT_FALSE(combined(archive_, "entry").pathExists());
    EXPECT_FALSE(combined(archive_, "").pathExists());
}

TEST_F(ZipReading, OddPathsOfArchives)
{
    std::vector<std::u32string> names = {U"blank blank.zip", U"K\u00FCche \u6905.zip", U"a#b%20&c+d.zip"};
    if constexpr (test::namesMayHoldAnything)
        names.insert(names.end(), {U"a|b.zip", U"a::b.zip"});
    for (const std::u32string& name : names) {
        const fileString path = at(name);
        ZipBuilder().add("x|y::z", "data").writeTo(path);
        EXPECT_EQ(dataOf(path, "x|y::z"), "data") << path;
        EXPECT_EQ(streamOf(path, "x|y::z"), "data") << path;
    }
}

TEST_F(ZipReading, ALargeEntryIsForTheBlockReader)
{
    const std::string data(ZipUtils::wholeEntryLimit + 1, 'x');
    ZipBuilder().add(item(data, true)).writeTo(archive_);
    EXPECT_THROW(dataOf(archive_, "entry"), std::bad_alloc);
    EXPECT_TRUE(streamOf(archive_, "entry", 52'428'800) == data);
}

TEST_F(ZipReading, TheLargestWholeEntry)
{
    const std::string data(ZipUtils::wholeEntryLimit, 'x');
    ZipBuilder().add(item(data, true)).writeTo(archive_);
    EXPECT_TRUE(dataOf(archive_, "entry") == data);
}

TEST_F(ZipReading, DataIsReadWithinAWalkOfTheSameArchive)
{
    ZipBuilder().add("a", "1").add("b", "2").add("a", "3").writeTo(archive_);
    std::string read;
    walk(archive_, [&](const fileString& name, const ZipHandle&, ZipUtils::ZipRawDataInfo*) {
        read += dataOf(archive_, name.utf8()) + streamOf(archive_, name.utf8());
    });
    EXPECT_EQ(read, "332233");
}

}  // namespace
