// Entries copied raw: their bytes, and everything recorded about them, stay unchanged.
#include "ZipWalk.h"

#include <VelkCommon/Files/FileUtils.h>

#include <gmock/gmock.h>

#include <string>

namespace {

using test::ZipBuilder;
using test::ZipDescriptor;
using test::ZipHandle;
using test::ZipItem;

struct KindCase
{
    const char* name;
    ZipItem item;
};

void PrintTo(const KindCase& row, std::ostream* out)
{
    *out << row.name;
}

template <typename Change>
ZipItem item(Change change)
{
    ZipItem made;
    made.name = "entry";
    made.data = test::noise(5000);
    change(made);
    return made;
}

const std::string unknownExtra(
    "\x99\x77\x04\x00"
    "abcd",
    8);
const std::string timeExtra(
    "UT\x05\x00\x03"
    "\x12\x34\x56\x60",
    9);

const KindCase kindCases[] = {
    {"Stored", item([](ZipItem&) {})},
    {"Deflated", item([](ZipItem& made) { made.deflated = true; })},
    {"Empty", item([](ZipItem& made) { made.data.clear(); })},
    {"Directory", item([](ZipItem& made) {
         made.name = "folder/";
         made.data.clear();
         made.externalAttributes = test::zip::folder;
     })},
    {"Encrypted", item([](ZipItem& made) { made.flags = test::zip::encrypted; })},
    {"UnknownMethod", item([](ZipItem& made) { made.method = test::zip::unknownMethod; })},
    {"Dates", item([](ZipItem& made) {
         made.time = 0;
         made.date = test::zip::firstDate;
     })},
    {"Attributes", item([](ZipItem& made) {
         made.madeBy = test::zip::madeByDos;
         made.externalAttributes = 0x21;
         made.internalAttributes = 1;
     })},
    {"Comment", item([](ZipItem& made) { made.comment = "a comment, \xFC"; })},
    {"ExtraFields", item([](ZipItem& made) {
         made.localExtra = timeExtra + unknownExtra;
         made.centralExtra = unknownExtra;
     })},
    {"OddExtraField", item([](ZipItem& made) { made.centralExtra = "abc"; })},
    {"NameInCodePage437", item([](ZipItem& made) {
         made.name =
             "K\x81"
             "che";
     })},
    {"NameDeclaredUtf8", item([](ZipItem& made) {
         made.name =
             "K\xC3\xBC"
             "che";
         made.flags = test::zip::utf8Names;
     })},
    {"NameOfOddBytes", item([](ZipItem& made) {
         made.name = "a\xFF";
         made.flags = test::zip::utf8Names;
     })},
    {"PathUpwards", item([](ZipItem& made) { made.name = "../../up"; })},
    {"SignedDescriptor", item([](ZipItem& made) { made.descriptor = ZipDescriptor::signedNarrow; })},
    {"PlainDescriptor", item([](ZipItem& made) { made.descriptor = ZipDescriptor::plainNarrow; })},
    {"WideSignedDescriptor", item([](ZipItem& made) {
         made.descriptor = ZipDescriptor::signedWide;
         made.wide = true;
     })},
    {"WidePlainDescriptor", item([](ZipItem& made) { made.descriptor = ZipDescriptor::plainWide; })},
    {"DescriptorOfNothing", item([](ZipItem& made) {
         made.descriptor = ZipDescriptor::signedNarrow;
         made.data.clear();
     })},
    {"Wide", item([](ZipItem& made) { made.wide = true; })},
    {"WideWithExtraFields", item([](ZipItem& made) {
         made.wide = true;
         made.localExtra = unknownExtra;
         made.centralExtra = timeExtra + unknownExtra;
     })},
};

class ZipCopy : public test::ArchiveTest, public testing::WithParamInterface<KindCase>
{
protected:
    fileString source_ = at(U"source.zip");
    fileString copy_ = at(U"copy.zip");
};

std::string builtWith(const ZipItem& kind)
{
    return ZipBuilder().add("a", "1").add(kind).add("c", "3").bytes();
}

TEST_P(ZipCopy, TheCopyOfAllIsTheSameFile)
{
    test::writeFile(source_, builtWith(GetParam().item));
    EXPECT_TRUE(copyAll(source_, copy_));
    EXPECT_TRUE(test::readFile(copy_) == test::readFile(source_));
}

TEST_P(ZipCopy, AloneItIsWhatAWriterWouldHaveWritten)
{
    const ZipItem& kind = GetParam().item;
    test::writeFile(source_, builtWith(kind));
    int index = 0;
    const auto names =
        walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
            if (++index == 2) {
                EXPECT_TRUE(ZipUtils::writeFileToArchiveRaw(copy_, name, handle, true, entry));
            }
        });
    EXPECT_EQ(names.size(), 3u);
    EXPECT_TRUE(test::readFile(copy_) == ZipBuilder().add(kind).bytes());
}

TEST_P(ZipCopy, BehindAnotherArchivesEntries)
{
    const ZipItem& kind = GetParam().item;
    test::writeFile(source_, builtWith(kind));
    ZipBuilder().add("old", "o").comment("kept").writeTo(copy_);
    EXPECT_TRUE(copyAll(source_, copy_));
    EXPECT_EQ(ZipUtils::getSizeOfArchive(copy_), 4u);
    EXPECT_EQ(dataOf(copy_, "old"), "o");
    EXPECT_EQ(dataOf(copy_, "c"), "3");
    const std::string name = ZipUtils::getFilenamesInArchive(source_)[1].utf8();
    EXPECT_TRUE(dataOf(copy_, name) == dataOf(source_, name));
    EXPECT_TRUE(test::readFile(copy_).ends_with("kept"));
}

INSTANTIATE_TEST_SUITE_P(Kinds, ZipCopy, testing::ValuesIn(kindCases),
                         [](const auto& row) { return std::string(row.param.name); });

class ZipShapes : public test::ArchiveTest
{
protected:
    fileString source_ = at(U"source.zip");
    fileString copy_ = at(U"copy.zip");
};

TEST_F(ZipShapes, BytesInFrontOfTheArchive)
{
    for (const bool counted : {false, true}) {
        ZipBuilder().lead("#!/bin/sh\n", counted).add("a", "1").add("b", "2").writeTo(source_);
        EXPECT_EQ(namesOf(source_), "a b");
        EXPECT_EQ(dataOf(source_, "b"), "2");
        EXPECT_TRUE(copyAll(source_, copy_));
        EXPECT_TRUE(test::readFile(copy_) == ZipBuilder().add("a", "1").add("b", "2").bytes());
        FileUtils::removePath(copy_, FileUtils::noFlags);
    }
}

TEST_F(ZipShapes, BytesInFrontWithZip64Records)
{
    ZipItem wide;
    wide.name = "b";
    wide.data = "2";
    wide.wide = true;
    for (const bool counted : {false, true}) {
        ZipBuilder().lead(std::string(1000, '#'), counted).add("a", "1").add(wide).wideEnd().writeTo(source_);
        EXPECT_EQ(namesOf(source_), "a b");
        EXPECT_EQ(dataOf(source_, "b"), "2");
    }
}

TEST_F(ZipShapes, BytesInFrontStayWhereEntriesAreAdded)
{
    for (const bool counted : {false, true}) {
        ZipBuilder().lead("#!/bin/sh\n", counted).add("a", "1").writeTo(copy_);
        ZipBuilder().add("b", "2").writeTo(source_);
        EXPECT_TRUE(copyAll(source_, copy_));
        EXPECT_TRUE(test::readFile(copy_).starts_with("#!/bin/sh\nPK"));
        EXPECT_EQ(dataOf(copy_, "a"), "1");
        EXPECT_EQ(dataOf(copy_, "b"), "2");
    }
}

TEST_F(ZipShapes, Comments)
{
    for (const std::string& comment :
         {std::string("c"), std::string(65'535, 'x'), std::string(test::zip::signature::end)}) {
        ZipBuilder().add("a", "1").comment(comment).writeTo(source_);
        EXPECT_EQ(namesOf(source_), "a") << comment.size();
    }
}

TEST_F(ZipShapes, EmptyArchives)
{
    ZipBuilder().writeTo(source_);
    EXPECT_EQ(ZipUtils::getSizeOfArchive(source_), 0u);
    EXPECT_TRUE(ZipUtils::canAddToArchive(source_));
    ZipBuilder().wideEnd().comment("c").writeTo(copy_);
    EXPECT_TRUE(ZipUtils::canAddToArchive(copy_));
    ZipBuilder().add("a", "1").writeTo(source_);
    EXPECT_TRUE(copyAll(source_, copy_));
    EXPECT_EQ(namesOf(copy_), "a");
}

TEST_F(ZipShapes, Zip64RecordsThatNobodyNeeds)
{
    ZipItem wide;
    wide.name = "a";
    wide.data = "1";
    wide.wide = true;
    ZipBuilder().add(wide).wideEnd().writeTo(source_);
    EXPECT_EQ(namesOf(source_), "a");
    EXPECT_TRUE(copyAll(source_, copy_));
    EXPECT_EQ(dataOf(copy_, "a"), "1");
    EXPECT_TRUE(test::readFile(copy_) == ZipBuilder().add(wide).bytes());
}

TEST_F(ZipShapes, MoreEntriesThanSixteenBitsCount)
{
    for (const int count : {65'534, 65'535}) {
        ZipBuilder builder;
        for (int i = 0; i < count; ++i)
            builder.add(std::to_string(i), "");
        builder.writeTo(source_);
        EXPECT_EQ(ZipUtils::getSizeOfArchive(source_), static_cast<unsigned long long>(count));
        FileUtils::removePath(copy_, FileUtils::noFlags);
        EXPECT_TRUE(copyAll(source_, copy_));
        EXPECT_TRUE(test::readFile(copy_) == test::readFile(source_)) << count;
    }
}

// Some writers let the count of their end record wrap around.
TEST_F(ZipShapes, ACountThatWrapped)
{
    ZipBuilder builder;
    for (int i = 0; i < 65'537; ++i)
        builder.add(std::to_string(i), "");
    std::string bytes = builder.bytes();
    const std::string end = bytes.substr(bytes.size() - 22);
    const std::string wide = bytes.substr(bytes.size() - 98, 56);
    bytes.resize(bytes.size() - 98);
    bytes += end.substr(0, 8) + std::string("\x01\x00\x01\x00", 4) + wide.substr(40, 4) + wide.substr(48, 4) +
             end.substr(20);
    test::writeFile(source_, bytes);
    EXPECT_EQ(ZipUtils::getSizeOfArchive(source_), 65'537u);
}

TEST_F(ZipShapes, AnEntryUnderAnotherName)
{
    ZipItem item;
    item.name = "old name";
    item.data = test::noise(100'000);
    item.deflated = true;
    item.descriptor = ZipDescriptor::signedNarrow;
    item.comment = "c";
    ZipBuilder().add(item).add("b", "2").writeTo(source_);
    const std::string name =
        "K\xC3\xBC"
        "che.calib";
    walk(source_, [&](const fileString& own, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_TRUE(
            ZipUtils::writeFileToArchiveRaw(copy_, own.utf8() == "b" ? own : fileString(name), handle, true, entry));
    });
    item.name = name;
    item.flags = test::zip::utf8Names;
    EXPECT_TRUE(test::readFile(copy_) == ZipBuilder().add(item).add("b", "2").bytes());
}

TEST_F(ZipShapes, ANameThatIsTooLongIsRefused)
{
    ZipBuilder().add("a", "1").writeTo(source_);
    walk(source_, [&](const fileString&, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        EXPECT_FALSE(ZipUtils::writeFileToArchiveRaw(copy_, std::string(65'536, 'n'), handle, true, entry));
        EXPECT_TRUE(ZipUtils::writeFileToArchiveRaw(copy_, std::string(65'535, 'n'), handle, true, entry));
    });
    EXPECT_EQ(dataOf(copy_, std::string(65'535, 'n')), "1");
}

// Larger than the most that is copied at once, with entries left out in between.
TEST_F(ZipShapes, ManyAndLargeEntries)
{
    ZipBuilder all;
    ZipBuilder half;
    for (unsigned i = 0; i < 60; ++i) {
        ZipItem item;
        item.name = "entry " + std::to_string(i);
        item.data = test::noise(i % 7 == 0 ? 3'000'000 : 1000 * i, i);
        all.add(item);
        if (i % 4 != 0)
            half.add(item);
    }
    all.writeTo(source_);
    unsigned index = 0;
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        if (index++ % 4 != 0) {
            EXPECT_TRUE(ZipUtils::writeFileToArchiveRaw(copy_, name, handle, true, entry));
        }
    });
    EXPECT_TRUE(test::readFile(copy_) == half.bytes());
}

}  // namespace
