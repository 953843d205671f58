// What other programs say of our archives: Info-ZIP, 7-Zip and Python's zipfile.
#include "ZipWalk.h"
#include "support/ZipJudges.h"

#include <VelkCommon/Files/FileUtils.h>

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace {

using test::ZipBuilder;
using test::ZipDescriptor;
using test::ZipHandle;
using test::ZipItem;

class ZipJudges : public test::ArchiveTest
{
protected:
    static void expectSound(const fileString& archive)
    {
        for (const char* const judge : {"unzip -tqq", "7z t -bso0", "python3 -m zipfile -t"}) {
            const test::Verdict run = test::ask(std::string(judge) + " '" + archive.utf8() + "'");
            EXPECT_EQ(run.status, 0) << judge << ": " << run.output;
            EXPECT_EQ(run.output.find("WARN"), std::string::npos) << judge << ": " << run.output;
        }
    }

    // Everything that Info-ZIP reports about each entry, except its position.
    static std::string described(const fileString& archive)
    {
        std::string text = test::ask("unzip -Zv '" + archive.utf8() + "'").output;
        text.erase(0, text.find("Central directory entry #1"));
        return std::regex_replace(text, std::regex("  offset of local header[^\n]*\n[^\n]*\n"), "");
    }

    static ZipBuilder allKinds()
    {
        ZipBuilder builder;
        const auto add = [&](const std::string& name, auto change) {
            ZipItem item;
            item.name = name;
            item.data = "content of " + name + test::noise(2000);
            change(item);
            builder.add(item);
        };
        add("stored", [](ZipItem&) {});
        add("deflated", [](ZipItem& item) { item.deflated = true; });
        add("folder/", [](ZipItem& item) {
            item.data.clear();
            item.externalAttributes = test::zip::folder;
        });
        add("folder/commented", [](ZipItem& item) { item.comment = "a comment"; });
        add("K\xC3\xBC"
            "che",
            [](ZipItem& item) { item.flags = test::zip::utf8Names; });
        add("extra", [](ZipItem& item) {
            item.localExtra = item.centralExtra = std::string("UT\x05\x00\x03\x12\x34\x56\x60", 9);
        });
        add("descriptor", [](ZipItem& item) {
            item.deflated = true;
            item.descriptor = ZipDescriptor::signedNarrow;
        });
        add("wide", [](ZipItem& item) { item.wide = true; });
        return builder;
    }

    fileString source_ = at(U"source.zip");
    fileString copy_ = at(U"copy.zip");
};

TEST_F(ZipJudges, AFullCopy)
{
    allKinds().writeTo(source_);
    expectSound(source_);
    ASSERT_TRUE(copyAll(source_, copy_));
    expectSound(copy_);
    EXPECT_EQ(described(copy_), described(source_));
    EXPECT_EQ(test::describeZip(copy_), test::describeZip(source_));
    EXPECT_NE(described(copy_).find("a comment"), std::string::npos) << "there is something to compare";
}

TEST_F(ZipJudges, APartOfAnArchive)
{
    allKinds().writeTo(source_);
    walk(source_, [&](const fileString& name, const ZipHandle& handle, ZipUtils::ZipRawDataInfo* entry) {
        if (name.utf8() != "deflated" && name.utf8() != "wide") {
            EXPECT_TRUE(ZipUtils::writeFileToArchiveRaw(copy_, name, handle, true, entry));
        }
    });
    expectSound(copy_);
    const std::string all = test::describeZip(source_);
    const std::string part = test::describeZip(copy_);
    EXPECT_EQ(std::count(part.begin(), part.end(), '\n'), 6);
    for (std::size_t begin = 0; begin < part.size();) {
        const std::size_t end = part.find('\n', begin) + 1;
        EXPECT_NE(all.find(part.substr(begin, end - begin)), std::string::npos) << part.substr(begin, end - begin);
        begin = end;
    }
}

TEST_F(ZipJudges, AnArchiveThatWasAddedTo)
{
    ZipBuilder()
        .add("stored", "old")
        .add("other", test::noise(5000))
        .lead("#!/bin/sh\n", true)
        .comment("c")
        .writeTo(copy_);
    allKinds().writeTo(source_);
    ASSERT_TRUE(copyAll(source_, copy_));
    expectSound(copy_);
    EXPECT_EQ(namesOf(copy_).substr(0, 22), "stored other deflated ");
    const std::string all = test::describeZip(copy_);
    const std::string added = test::describeZip(source_);
    EXPECT_NE(all.find(added.substr(0, added.find('\n'))), std::string::npos);
}

TEST_F(ZipJudges, EncryptedEntriesAndUnknownMethods)
{
    ZipItem encrypted;
    encrypted.name = "secret";
    encrypted.data = test::noise(3000);
    encrypted.flags = test::zip::encrypted;
    ZipItem unknown;
    unknown.name = "unknown";
    unknown.data = test::noise(3000);
    unknown.method = test::zip::unknownMethod;
    ZipBuilder().add("a", "1").add(encrypted).add(unknown).writeTo(source_);
    ASSERT_TRUE(copyAll(source_, copy_));
    EXPECT_EQ(described(copy_), described(source_));
    EXPECT_EQ(test::describeZip(copy_), test::describeZip(source_));
}

// Archives that other programs made.
TEST_F(ZipJudges, ArchivesOfOtherPrograms)
{
    const std::string folder = at(U"files").utf8();
    FileUtils::createDirectoriesWithPerm(at(U"files/sub"));
    test::writeFile(at(U"files/a.txt"), std::string(10'000, 'a'));
    test::writeFile(at(U"files/sub/K\u00FCche \u6905.bin"), test::noise(50'000));
    const std::string writers[] = {
        "7z a -bso0 -tzip '" + source_.utf8() + "' a.txt sub",
        "7z a -bso0 -tzip -pgeheim '" + source_.utf8() + "' a.txt sub",
        "7z a -bso0 -tzip -mm=LZMA '" + source_.utf8() + "' a.txt sub",
        "python3 -m zipfile -c '" + source_.utf8() + "' a.txt sub",
        "python3 -c 'import sys,zipfile; z = zipfile.ZipFile(sys.stdout.buffer, \"w\", zipfile.ZIP_DEFLATED); "
        "z.write(\"a.txt\"); z.write(\"sub/K\u00FCche \u6905.bin\")' | cat > '" +
            source_.utf8() + "'",
    };
    for (const std::string& writer : writers) {
        FileUtils::removePath(source_, FileUtils::noFlags);
        FileUtils::removePath(copy_, FileUtils::noFlags);
        const test::Verdict run = test::ask("cd '" + folder + "' && " + writer);
        ASSERT_EQ(run.status, 0) << run.output;
        ASSERT_TRUE(copyAll(source_, copy_)) << writer;
        EXPECT_EQ(described(copy_), described(source_)) << writer;
        EXPECT_EQ(test::describeZip(copy_), test::describeZip(source_)) << writer;
        EXPECT_TRUE(test::readFile(copy_) == test::readFile(source_)) << writer;
    }
    EXPECT_TRUE(dataOf(source_,
                       "sub/K\xC3\xBC"
                       "che \xE6\xA4\x85.bin") == test::noise(50'000));
    EXPECT_EQ(streamOf(source_, "a.txt"), std::string(10'000, 'a'));
}

TEST_F(ZipJudges, ManyEntries)
{
    ZipBuilder builder;
    for (int i = 0; i < 66'000; ++i)
        builder.add("f/" + std::to_string(i), "x");
    builder.writeTo(source_);
    ZipBuilder().add("old", "o").writeTo(copy_);
    ASSERT_TRUE(copyAll(source_, copy_));
    EXPECT_EQ(ZipUtils::getSizeOfArchive(copy_), 66'001u);
    expectSound(copy_);
}

}  // namespace
