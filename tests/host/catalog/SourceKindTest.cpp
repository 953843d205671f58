#include "host/catalog/SourceKind.h"

#include "host/fixtures/Fixtures.h"

using namespace VelkHost;
using testing::StartsWith;

namespace {

class SourceKindOf : public test::TestHost
{
protected:
    SourceKind kindOf(const std::string& bytes, const char32_t* name = U"file") const
    {
        test::writeFile(folder() / name, bytes);
        return sourceKind(folder() / name);
    }

    std::string refusal(const std::string& bytes) const
    {
        return test::reasonOf([&] { kindOf(bytes); });
    }
};

TEST_F(SourceKindOf, AFileIsSeenFromItsBeginning)
{
    EXPECT_EQ(kindOf("name\nChair\n"), SourceKind::Csv);
    EXPECT_EQ(kindOf("BMX,name\n"), SourceKind::Csv) << "an image begins like that, but holds zero bytes";
    EXPECT_EQ(kindOf(""), SourceKind::Csv);
    EXPECT_EQ(kindOf("no zip", U"a.SH3F"), SourceKind::Furniture) << "its reader says what is wrong";
    test::writeZip(folder() / U"a.csv", {{"a.txt", "text"}});
    EXPECT_EQ(sourceKind(folder() / U"a.csv"), SourceKind::Furniture);
}

TEST_F(SourceKindOf, OtherFilesAreRefused)
{
    constexpr const char* sources = "; a source is a furniture library (.sh3f) or a CSV file";
    using namespace std::string_literals;
    for (const std::string& image : {"\x89PNG\r\n"s, "\xFF\xD8\xFF\xE0"s, "GIF89a"s, "BM\0\0"s, "II*\0"s, "MM\0*"s})
        EXPECT_EQ(refusal(image), std::string("is an image") + sources);
    EXPECT_EQ(refusal("SQLite format 3\0..."s), std::string("is a catalog file, which needs no building") + sources);
    EXPECT_EQ(refusal("a\0\0b"s), std::string("is not text") + sources);
    EXPECT_EQ(refusal("name,category,keywords\n\0"s), std::string("is not text") + sources);
    test::writeZip(folder() / U"a.sh3f", {{"a.calib", "text"}});
    EXPECT_EQ(test::reasonOf([&] { sourceKind(folder() / U"a.sh3f"); }),
              std::string("is a packed library, which \"velk unpack\" takes apart") + sources);
    EXPECT_THAT(refusal("PK no zip"), StartsWith("is not a sound zip archive"));
    EXPECT_EQ(test::reasonOf([&] { sourceKind(folder()); }),
              "is a folder, not a file; give a furniture library (.sh3f) or a CSV file");
    EXPECT_EQ(test::reasonOf([&] { sourceKind(folder() / U"none"); }), "does not exist");
}

TEST_F(SourceKindOf, TextInUtf16IsNamed)
{
    using namespace std::string_literals;
    for (const std::string& text : {"n\0a\0"s, "\0n\0a"s, "\xFF\xFEn\0"s, "\xFE\xFF\0n"s, "\xFF\xFE\x41\x69"s})
        EXPECT_EQ(refusal(text), "is text in UTF-16; save it as UTF-8");
}

}  // namespace
