#include "host/catalog/CsvSource.h"

#include "host/fixtures/Fixtures.h"

using VelkHost::BuildOptions;
using VelkHost::Catalog;
using VelkHost::FileRole;
using VelkHost::Item;
using VelkHost::readCsv;

namespace {

class CsvSource : public test::TestHost
{
protected:
    Catalog read(const std::string& text, const std::string& language = "") const
    {
        BuildOptions options;
        options.language = language;
        test::writeFile(path(), text);
        return readCsv(path(), options);
    }

    std::string refusal(const std::string& text, const std::string& language = "") const
    {
        return test::reasonOf([&] { read(text, language); });
    }

    fileString path() const { return folder() / U"products.csv"; }
};

TEST_F(CsvSource, NeedsOnlyNames)
{
    const Catalog catalog = read("name\nChair\nDesk\n");
    EXPECT_EQ(catalog.id, "products");
    EXPECT_EQ(catalog.name, "products");
    ASSERT_EQ(catalog.items.size(), 2U);
    EXPECT_EQ(catalog.items[0], (Item{"products#2", 0, "Chair", "", "", {}}));
    EXPECT_EQ(catalog.items[1].uniqueId, "products#3");
    EXPECT_EQ(catalog.folderPath(0), std::vector<std::string>{"Uncategorized"});
}

TEST_F(CsvSource, TakesAllColumnsInAnyOrderAndCase)
{
    const Catalog catalog = read(
        "Keywords,NAME,id,price,Folder,category,files\n"
        "\"oak, seat\",Chair,c1,99,Seating/Chairs,Furniture,a.png; b.png;\n"
        ",Sofa,c2,,Seating,Furniture,\n"
        ",Stool,c3\n");
    const Item chair{"c1", 2, "Chair", "oak, seat", "", {{FileRole::Other, "a.png"}, {FileRole::Other, "b.png"}}};
    EXPECT_EQ(catalog.items[0], chair);
    EXPECT_EQ(catalog.folderPath(catalog.items[0].folder),
              (std::vector<std::string>{"Furniture", "Seating", "Chairs"}));
    EXPECT_EQ(catalog.folderPath(catalog.items[1].folder), (std::vector<std::string>{"Furniture", "Seating"}));
    EXPECT_EQ(catalog.folderPath(catalog.items[2].folder), std::vector<std::string>{"Uncategorized"});
}

TEST_F(CsvSource, TakesSizesAndProperties)
{
    const Catalog catalog = read(
        "name;width;depth;height;creator;licence;price;currency;property Finish;Property warranty\n"
        "Chair;505;58,4;850.25;Absfrm;CC0;129,90;EUR;oiled oak;\n"
        "Desk;;;;;;;;;\n"
        "Stool;360;;;;;20;;;\n");
    EXPECT_EQ(catalog.sizes, (std::vector<VelkHost::ItemSize>{{505, 58.4F, 850.25F}, {}, {360, 0, 0}}));
    const VelkHost::ItemProperties chair{"Absfrm", "CC0", "129.90", "EUR", {{"finish", "oiled oak"}}};
    EXPECT_EQ(catalog.properties, (std::vector<VelkHost::ItemProperties>{chair, {}, {"", "", "20", "", {}}}));
}

TEST_F(CsvSource, NamesTheLineOfASizeOrPriceThatIsNone)
{
    EXPECT_EQ(refusal("name,width\nChair,wide\n"), "line 2: the width \"wide\" is not a number of millimetres");
    EXPECT_EQ(refusal("name,height\nChair,-5\n"), "line 2: the height \"-5\" is not a number of millimetres");
    EXPECT_EQ(refusal("name,price\nChair,much\n"), "line 2: the price \"much\" is not a number such as 129.90");
    EXPECT_EQ(refusal("name,price,currency\nChair,1,euro\n"),
              "line 2: the currency \"euro\" is not three capital letters, such as EUR");
}

TEST_F(CsvSource, TakesSemicolonsAndTabs)
{
    EXPECT_EQ(read("name;keywords\nChair;oak, seat\n").items[0].keywords, "oak, seat");
    EXPECT_EQ(read("name\tkeywords\nChair\toak, seat\n").items[0].keywords, "oak, seat");
}

TEST_F(CsvSource, TakesEncodings)
{
    EXPECT_EQ(read("\xEF\xBB\xBFname\nK\xC3\xBC"
                   "che\n")
                  .items[0]
                  .name,
              "K\xC3\xBC"
              "che");
    EXPECT_EQ(read("name\nK\xFC"
                   "che \x80\n")
                  .items[0]
                  .name,
              "K\xC3\xBC"
              "che \xE2\x82\xAC");
}

TEST_F(CsvSource, TakesTranslations)
{
    const std::string text =
        "name,name_de,name_pt_PT,category,category_de\nChair,Stuhl,Cadeira,Room,Raum\nDesk,,,Room,\n";
    EXPECT_EQ(read(text).items[0].name, "Chair");
    const Catalog german = read(text, "de");
    EXPECT_EQ(german.language, "de");
    EXPECT_EQ(german.items[0].name, "Stuhl");
    EXPECT_EQ(german.folderPath(german.items[0].folder), std::vector<std::string>{"Raum"});
    EXPECT_EQ(german.items[1].name, "Desk");
    EXPECT_EQ(read(text, "pt-PT").items[0].name, "Cadeira");
    EXPECT_EQ(refusal(text, "fr"),
              "has no names in \"fr\"; it has de, pt_PT (without --language you get the library's own names)");
}

struct BadCase
{
    const char* name;
    std::string text;
    std::string reason;
};

const BadCase badCases[] = {
    {"Empty", "", "is empty; the first line names the columns, for example: name,category,keywords"},
    {"NoName", "title\nChair\n", "line 1: there is no column \"name\"; the first line names the columns"},
    {"ColumnTwice", "name,Name\nChair\n", "line 1: the column \"name\" occurs twice"},
    {"MissingName", "id,name\na,Chair\n\nb,\n", "line 4: the name is missing"},
    {"NameOfBlanks", "name,id\n  ,b\n", "line 2: the name is missing"},
    {"ManyCells", "name\nSofa, 3-seat\n",
     "line 2: has 2 cells, more than there are columns (1); put text that holds the separator in quotes"},
    {"IdTwice", "id,name\na,Chair\na,Desk\n", "line 3: the id \"a\" occurs twice; ids must differ"},
    {"OpenQuote", "name\n\"Chair\n", "line 2: a quote is opened and not closed"},
    {"DeepFolders", "name,folder\nChair,a/b/c/d/e/f/g/h/i/j/k/l/m/n/o/p/q/r/s/t/u/v/w/x/y/z/1/2/3/4/5/6/7\n",
     "folders are nested more than 32 deep"},
};

class BadCsv : public CsvSource, public testing::WithParamInterface<BadCase>
{};

TEST_P(BadCsv, IsRefused)
{
    EXPECT_EQ(refusal(GetParam().text), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(Texts, BadCsv, testing::ValuesIn(badCases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
