// Archives and entries that are broken, or made to do harm.
#include "ZipWalk.h"

#include <gmock/gmock.h>

#include <functional>
#include <new>
#include <string>

namespace {

using test::ZipBuilder;
using test::ZipDescriptor;
using test::ZipHandle;
using test::ZipItem;
using testing::IsEmpty;

std::string sound()
{
    return ZipBuilder().add("a", "first").add("b", "second").bytes();
}

// ---- Archives that are not readable --------------------------------------------------------------

struct BrokenCase
{
    const char* name;
    std::function<std::string()> bytes;
};

void PrintTo(const BrokenCase& row, std::ostream* out)
{
    *out << row.name;
}

ZipItem lying(const std::function<void(ZipItem&)>& lie)
{
    ZipItem item;
    item.name = "liar";
    item.data = std::string(1000, 'x');
    lie(item);
    return item;
}

std::string with(const std::function<void(ZipItem&)>& lie)
{
    return ZipBuilder().add("a", std::string(1000, 'a')).add(lying(lie)).bytes();
}

std::string patched(std::string bytes, std::size_t fromEnd, char byte)
{
    bytes[bytes.size() - fromEnd] = byte;
    return bytes;
}

const BrokenCase brokenCases[] = {
    {"Empty", [] { return std::string(); }},
    {"Text", [] { return std::string("this is no archive"); }},
    {"LongText", [] { return std::string(200'000, 'x'); }},
    {"Cut", [] { return sound().substr(0, sound().size() - 1); }},
    {"BytesBehind", [] { return sound() + "x"; }},
    {"CutBehindAnArchiveInIt",
     [] {
         const std::string outer = ZipBuilder().add("inner.zip", sound()).add("b", std::string(1000, 'b')).bytes();
         return outer.substr(0, 500);
     }},
    {"CutDirectory", [] { return sound().substr(0, sound().size() - 40); }},
    {"WithoutBeginning", [] { return sound().substr(40); }},
    {"CountTooHigh", [] { return patched(sound(), 12, 3); }},
    {"CountTooLow", [] { return patched(sound(), 12, 1); }},
    {"DirectoryTooLong", [] { return patched(sound(), 9, 1); }},
    {"DirectoryTooShort", [] { return patched(sound(), 10, 60); }},
    {"SharedHeaders", [] { return with([](ZipItem& item) { item.offset = 0; }); }},
    {"OverlappingEntries", [] { return with([](ZipItem& item) { item.offset = 500; }); }},
    {"OffsetBehindTheEnd", [] { return with([](ZipItem& item) { item.offset = 1'000'000; }); }},
    {"OffsetBehindEverything",
     [] {
         return with([](ZipItem& item) {
             item.offset = 0xFFFFFFFFFFFFFFF0ULL;
             item.wide = true;
         });
     }},
    {"MoreCompressedThanThereIs", [] { return with([](ZipItem& item) { item.compressedSize = 1'000'000; }); }},
    {"MoreCompressedThanAnythingHolds",
     [] {
         return with([](ZipItem& item) {
             item.compressedSize = 0xFFFFFFFFFFFFFFF0ULL;
             item.wide = true;
         });
     }},
    {"DataIntoTheDirectory", [] { return with([](ZipItem& item) { item.compressedSize = 1005; }); }},
    {"WideSizeMissing", [] { return with([](ZipItem& item) { item.compressedSize = test::zip::full32; }); }},
};

class Unreadable : public test::ArchiveTest, public testing::WithParamInterface<BrokenCase>
{};

TEST_P(Unreadable, HasNoEntriesAndTakesNone)
{
    // A record that says "see the zip64 field" without having one.
    std::string bytes = GetParam().bytes();
    if (std::string(GetParam().name) == "WideSizeMissing") {
        const std::size_t record = bytes.rfind(test::zip::signature::central);
        bytes.erase(record + test::zip::centralSize + test::zip::extraHeaderSize, 12);
        bytes[record + test::zip::centralExtraSize] = 0;
        bytes[bytes.size() - 10] = static_cast<char>(bytes[bytes.size() - 10] - 12);
    }
    const fileString archive = at(U"broken.zip");
    test::writeFile(archive, bytes);
    ZipBuilder().add("c", "third").writeTo(at(U"source.zip"));
    EXPECT_EQ(ZipUtils::getSizeOfArchive(archive), 0u);
    EXPECT_THAT(ZipUtils::getFilenamesInArchive(archive), IsEmpty());
    EXPECT_THAT(walk(archive, [](auto&&...) { ADD_FAILURE() << "visited"; }), IsEmpty());
    EXPECT_FALSE(ZipUtils::canAddToArchive(archive));
    EXPECT_EQ(dataOf(archive, "a"), "-");
    EXPECT_EQ(streamOf(archive, "a"), "-");
    walk(at(U"source.zip"), [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_FALSE(ZipUtils::writeFileToArchiveRaw(archive, name, handle, false, entry));
    });
    EXPECT_TRUE(test::readFile(archive) == bytes);
}

INSTANTIATE_TEST_SUITE_P(Broken, Unreadable, testing::ValuesIn(brokenCases),
                         [](const auto& row) { return std::string(row.param.name); });

class ZipUnreadable : public test::ArchiveTest
{
protected:
    fileString archive_ = at(U"archive.zip");
};

TEST_F(ZipUnreadable, FoldersAndMissingFilesHaveNoEntries)
{
    for (const fileString& path : {folder(), at(U"missing.zip"), fileString()}) {
        EXPECT_EQ(ZipUtils::getSizeOfArchive(path), 0u);
        EXPECT_THAT(ZipUtils::getFilenamesInArchive(path), IsEmpty());
        EXPECT_THAT(walk(path, [](auto&&...) { ADD_FAILURE() << "visited"; }), IsEmpty());
        EXPECT_FALSE(ZipUtils::canAddToArchive(path));
    }
}

// A small file whose entries are all the same bytes: 65,000 times 1 MB.
TEST_F(ZipUnreadable, ABombOfSharedBytesHasNoEntries)
{
    ZipBuilder builder;
    ZipItem item;
    item.name = "kernel";
    item.data = std::string(1'000'000, '\0');
    item.deflated = true;
    builder.add(item);
    item.deflated = false;
    item.compressedSize = test::deflated(item.data).size();
    item.size = item.data.size();
    item.data.clear();
    item.method = test::zip::deflated;
    item.offset = 0;
    for (int i = 0; i < 65'000; ++i)
        builder.add(item);
    builder.writeTo(archive_);
    EXPECT_EQ(ZipUtils::getSizeOfArchive(archive_), 0u);
}

TEST_F(ZipUnreadable, AnEndRecordInTheCommentIsNotTaken)
{
    const std::string fake = ZipBuilder().bytes();
    ZipBuilder().add("real", "x").comment("see " + fake + " there").writeTo(archive_);
    EXPECT_EQ(namesOf(archive_), "real");
}

// ---- Entries that cannot be read -----------------------------------------------------------------

struct DamagedCase
{
    const char* name;
    ZipItem item;
    bool hasGap = false;  // behind its data; a copy does not have it
};

void PrintTo(const DamagedCase& row, std::ostream* out)
{
    *out << row.name;
}

ZipItem damaged(bool deflated, const std::function<void(ZipItem&)>& damage)
{
    ZipItem item;
    item.name = "entry";
    item.data = test::noise(2000);
    item.deflated = deflated;
    damage(item);
    return item;
}

const DamagedCase damagedCases[] = {
    {"WrongChecksumStored", damaged(false, [](ZipItem& item) { item.crc = 1; })},
    {"WrongChecksumDeflated", damaged(true, [](ZipItem& item) { item.crc = 1; })},
    {"WrongChecksumOfNothing", damaged(false,
                                       [](ZipItem& item) {
                                           item.data.clear();
                                           item.crc = 1;
                                       })},
    {"LongerThanDeclaredStored", damaged(false, [](ZipItem& item) { item.size = 1999; })},
    {"LongerThanDeclaredDeflated", damaged(true, [](ZipItem& item) { item.size = 1999; })},
    {"ShorterThanDeclaredStored", damaged(false, [](ZipItem& item) { item.size = 2001; })},
    {"ShorterThanDeclaredDeflated", damaged(true, [](ZipItem& item) { item.size = 2001; })},
    {"DeclaredWithoutMeasure", damaged(true,
                                       [](ZipItem& item) {
                                           item.size = std::uint64_t{1} << 60U;
                                           item.wide = true;
                                       })},
    {"CutInTheArchive", damaged(true, [](ZipItem& item) { item.compressedSize = 1000; }), true},
    {"NotDeflatedAtAll", damaged(false, [](ZipItem& item) { item.method = test::zip::deflated; })},
    {"Encrypted", damaged(false, [](ZipItem& item) { item.flags = test::zip::encrypted; })},
    {"EncryptedDeflated", damaged(true, [](ZipItem& item) { item.flags = test::zip::encrypted; })},
    {"UnknownMethod", damaged(false, [](ZipItem& item) { item.method = test::zip::unknownMethod; })},
};

class Damaged : public ZipUnreadable, public testing::WithParamInterface<DamagedCase>
{};

TEST_P(Damaged, GivesNoDataButItsNeighboursDo)
{
    ZipBuilder().add("before", "b").add(GetParam().item).add("behind", "c").writeTo(archive_);
    EXPECT_EQ(namesOf(archive_), "before entry behind");
    std::string whole = "-";
    try {
        whole = dataOf(archive_, "entry");
    } catch (const std::bad_alloc&) {
        EXPECT_STREQ(GetParam().name, "DeclaredWithoutMeasure");
    }
    EXPECT_EQ(whole, "-");
    EXPECT_EQ(streamOf(archive_, "entry"), "-");
    EXPECT_EQ(dataOf(archive_, "before"), "b");
    EXPECT_EQ(dataOf(archive_, "behind"), "c");
}

TEST_P(Damaged, IsCopiedAsItIs)
{
    ZipBuilder().add("before", "b").add(GetParam().item).add("behind", "c").writeTo(archive_);
    EXPECT_TRUE(copyAll(archive_, at(U"copy.zip")));
    EXPECT_EQ(test::readFile(at(U"copy.zip")) == test::readFile(archive_), !GetParam().hasGap);
    EXPECT_EQ(namesOf(at(U"copy.zip")), "before entry behind");
    EXPECT_EQ(dataOf(at(U"copy.zip"), "behind"), "c");
}

INSTANTIATE_TEST_SUITE_P(Entries, Damaged, testing::ValuesIn(damagedCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ZipUnreadable, TheStreamOfAnEncryptedEntryIsNotOpen)
{
    ZipBuilder().add(damaged(false, [](ZipItem& item) { item.flags = test::zip::encrypted; })).writeTo(archive_);
    ZipUtils::ZipInputStream stream(combined(archive_, "entry"));
    EXPECT_FALSE(stream.isFileOpen());
    EXPECT_TRUE(stream.reachedEOF());
}

// A gigabyte of zeros declared as ten bytes: a reader never gives more than the declared size.
TEST_F(ZipUnreadable, AnEntryThatGrowsIsLeftAtItsDeclaredSize)
{
    ZipItem item;
    item.name = "entry";
    item.data = std::string(30'000'000, '\0');
    item.deflated = true;
    item.size = 10;
    ZipBuilder().add(item).writeTo(archive_);
    ZipUtils::ZipInputStream stream(combined(archive_, "entry"));
    std::size_t got = 0;
    while (stream.isFileOpen() && !stream.reachedEOF())
        got += stream.readArchivedFile(1'000'000).size();
    EXPECT_LE(got, 10u);
    EXPECT_FALSE(stream.isWhole());
}

TEST_F(ZipUnreadable, ADamagedLocalHeaderLosesThatEntryOnly)
{
    std::string bytes = ZipBuilder().add("a", "1").add("b", "2").add("c", "3").bytes();
    bytes[bytes.find(test::zip::signature::local, 1)] = 'X';
    test::writeFile(archive_, bytes);
    std::string results;
    const auto names =
        walk(archive_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
            results += ZipUtils::writeFileToArchiveRaw(at(U"copy.zip"), name, handle, true, entry) ? "+" : "-";
        });
    EXPECT_EQ(results, "+-+");
    EXPECT_EQ(names.size(), 3u);
    EXPECT_EQ(namesOf(at(U"copy.zip")), "a c");
    EXPECT_EQ(dataOf(archive_, "b"), "-");
    EXPECT_EQ(dataOf(at(U"copy.zip"), "c"), "3");
}

TEST_F(ZipUnreadable, ALocalHeaderThatReachesIntoTheNextEntryIsDamaged)
{
    std::string bytes = ZipBuilder().add("a", "1").add("b", "2").bytes();
    bytes[28] = 100;  // the length of the extra field
    test::writeFile(archive_, bytes);
    EXPECT_EQ(dataOf(archive_, "a"), "-");
    EXPECT_EQ(streamOf(archive_, "a"), "-");
    EXPECT_EQ(dataOf(archive_, "b"), "2");
}

// Whichever byte is wrong, nothing crashes, and every entry that is read whole has the right checksum.
TEST_F(ZipUnreadable, AnyWrongByte)
{
    ZipItem item;
    item.name = "entry";
    item.data = "some text, some text, some text";
    item.deflated = true;
    item.descriptor = ZipDescriptor::signedNarrow;
    const std::string right = ZipBuilder().add(item).add("other", "x").comment("c").bytes();
    for (std::size_t position = 0; position < right.size(); ++position) {
        for (const unsigned flip : {0x01U, 0x80U, 0xFFU}) {
            std::string bytes = right;
            bytes[position] = static_cast<char>(static_cast<unsigned char>(bytes[position]) ^ flip);
            test::writeFile(archive_, bytes);
            for (const fileString& name : ZipUtils::getFilenamesInArchive(archive_)) {
                std::string data = "-";
                try {
                    data = dataOf(archive_, name.utf8());
                } catch (const std::bad_alloc&) {
                    continue;
                }
                EXPECT_EQ(streamOf(archive_, name.utf8()), data);
                EXPECT_TRUE(data == "-" || data == "x" || data == item.data) << position << ": " << data;
            }
            copyAll(archive_, at(U"copy.zip"));
        }
    }
}

TEST_F(ZipUnreadable, AnyCut)
{
    const std::string right = ZipBuilder().add("a", "first").add("b", "second").wideEnd().bytes();
    for (std::size_t size = 0; size < right.size(); ++size) {
        test::writeFile(archive_, right.substr(0, size));
        EXPECT_EQ(ZipUtils::getSizeOfArchive(archive_), 0u) << size;
    }
}

}  // namespace
