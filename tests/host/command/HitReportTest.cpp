#include "host/command/HitReport.h"
#include "host/installation/SearchText.h"

#include "host/fixtures/Fixtures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <regex>

using namespace VelkHost;

namespace {

class HitReport : public test::TestHost
{
protected:
    HitReport()
    {
        Catalog catalog = test::smallCatalog();
        catalog.name = "Library";
        libraries_.loaded.push_back({fileString(std::string("a.calib")), std::make_shared<const Catalog>(catalog)});
    }

    std::string table(const std::string& text, const ReportStyle& style = {})
    {
        request_.text = text;
        const Library::Search::Info info = searchInfo(request_);
        return hitTable(libraries_, runSearch(libraries_, request_, info), info, style);
    }

    QJsonObject json(const std::string& text, std::size_t limit = 0)
    {
        request_.text = text;
        const SearchResult result = runSearch(libraries_, request_, searchInfo(request_));
        const std::string document = hitJson(libraries_, result, request_, limit);
        QJsonParseError error{};
        const QJsonDocument parsed = QJsonDocument::fromJson(QByteArray::fromStdString(document), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << document;
        return parsed.object();
    }

    void renameItem(const std::string& name)
    {
        Catalog changed = *libraries_.loaded[0].catalog;
        changed.items[0].name = name;
        libraries_.loaded[0].catalog = std::make_shared<const Catalog>(std::move(changed));
    }

    /// Each item gets the same size and properties.
    void giveSizes()
    {
        Catalog changed = *libraries_.loaded[0].catalog;
        changed.sizes.assign(changed.items.size(), {505, 584, 850});
        changed.properties.assign(changed.items.size(), {"Absfrm", "CC0", "129.90", "EUR", {{"finish", "oiled"}}});
        libraries_.loaded[0].catalog = std::make_shared<const Catalog>(std::move(changed));
    }

    LibrarySet libraries_;
    SearchRequest request_;
};

std::string lines(const std::string& text, std::size_t count)
{
    std::size_t end = 0;
    for (std::size_t i = 0; i < count; ++i)
        end = text.find('\n', end) + 1;
    return text.substr(0, end);
}

TEST_F(HitReport, AlignsItsColumns)
{
    EXPECT_EQ(
        lines(table("chair"), 5),
        "#  Match                     Name          Where                                   Keywords\n"
        "1  ItemExactName             Chair         Library \u203A Furniture \u203A Seating \u203A Chairs  seat, oak\n"
        "2  ItemContainsWord          Office chair  Library \u203A Furniture \u203A Seating \u203A Chairs  seat, desk\n"
        "3  FolderBeginsWithSequence  Chairs        Library \u203A Furniture \u203A Seating\n"
        "4  ItemContainsSequence      Armchair      Library \u203A Furniture \u203A Seating           red, seat\n");
}

TEST_F(HitReport, HasFigures)
{
    const std::string found = table("chair");
    EXPECT_TRUE(
        std::regex_search(found, std::regex("\n\n4 hits\\. Rated 4 items and 4 folders of 1 library in [0-9.,]+ ms "
                                            "\\([0-9.,]+ \u00B5s each\\); loading took [0-9.,]+ ms\\.\n$")))
        << found;
    EXPECT_THAT(table("nothing"), testing::StartsWith("0 hits. Rated 4 items and 4 folders of 1 library in "));
}

TEST_F(HitReport, ShowsAsManyAsAskedFor)
{
    EXPECT_THAT(table("chair", {2, 0, false}), testing::HasSubstr("\n... and 2 more (--limit 0 shows all)\n"));
    EXPECT_THAT(table("chair", {2, 0, false}), testing::Not(testing::HasSubstr("Armchair")));
    EXPECT_THAT(table("chair", {4, 0, false}), testing::Not(testing::HasSubstr("more")));
}

TEST_F(HitReport, FitsTheTerminal)
{
    const std::string narrow = table("chair", {0, 60, false});
    std::size_t start = 0;
    for (int line = 0; line < 5; ++line) {
        const std::size_t end = narrow.find('\n', start);
        EXPECT_LE(narrow.substr(start, end - start).size(), 60U + 8U) << "at most four characters have three bytes";
        start = end + 1;
    }
    EXPECT_THAT(narrow, testing::HasSubstr("\u2026"));
    EXPECT_THAT(narrow, testing::HasSubstr("Armchair"));
}

TEST_F(HitReport, KeepsColumnsWithStylesAndWideCharacters)
{
    renameItem("\u6905\u5B50 chair");
    const std::string styled = table("chair", {0, 0, true});
    EXPECT_THAT(styled, testing::HasSubstr("  \u6905\u5B50 \x1b[1mchair\x1b[0m    Library \u203A Furniture"));
    EXPECT_THAT(styled, testing::HasSubstr("  Office \x1b[1mchair\x1b[0m  Library \u203A Furniture"));
    EXPECT_THAT(table("chair"), testing::Not(testing::HasSubstr("\x1b")));
}

TEST_F(HitReport, LetsNoNameSteerTheTerminal)
{
    renameItem(std::string("chair\0\x1B[2J\x07\x9B", 12));
    EXPECT_THAT(table("chair"), testing::HasSubstr("chair\uFFFD\uFFFD[2J\uFFFD\uFFFD"));
}

TEST_F(HitReport, NamesEveryMatch)
{
    EXPECT_EQ(matchName(ItemExactName), "ItemExactName");
    EXPECT_EQ(matchName(ItemWordBeginsWithSequence), "ItemWordBeginsWithSequence");
    EXPECT_EQ(matchName(KeywordsContainSequence), "KeywordsContainSequence");
    EXPECT_EQ(matchName(Invalid), "Id");
}

TEST_F(HitReport, WritesJson)
{
    libraries_.broken.push_back({fileString(std::string("b.calib")), "is empty"});
    const QJsonObject document = json("chair", 1);
    EXPECT_EQ(document[QLatin1String("search")].toString(), QStringLiteral("expression"));
    EXPECT_EQ(document[QLatin1String("text")].toString(), QStringLiteral("chair"));
    EXPECT_EQ(document[QLatin1String("found")].toInt(), 4);
    EXPECT_EQ(document[QLatin1String("ratedItems")].toInt(), 4);
    EXPECT_EQ(document[QLatin1String("ratedFolders")].toInt(), 4);
    const QJsonArray files = document[QLatin1String("libraries")].toArray();
    ASSERT_EQ(files.size(), 2);
    EXPECT_EQ(files[0].toObject()[QLatin1String("type")].toString(), QStringLiteral("bonus"));
    EXPECT_EQ(files[1].toObject()[QLatin1String("error")].toString(), QStringLiteral("is empty"));
    const QJsonArray hits = document[QLatin1String("hits")].toArray();
    ASSERT_EQ(hits.size(), 1);
    const QJsonObject expected{
        {QStringLiteral("priority"), 1},
        {QStringLiteral("match"), QStringLiteral("ItemExactName")},
        {QStringLiteral("kind"), QStringLiteral("item")},
        {QStringLiteral("name"), QStringLiteral("Chair")},
        {QStringLiteral("library"), QStringLiteral("Library")},
        {QStringLiteral("id"), QStringLiteral("id#1")},
        {QStringLiteral("keywords"), QStringLiteral("seat, oak")},
        {QStringLiteral("path"),
         QJsonArray{QStringLiteral("Furniture"), QStringLiteral("Seating"), QStringLiteral("Chairs")}}};
    EXPECT_EQ(hits[0].toObject(), expected);
}

TEST_F(HitReport, WritesValidJsonForAnyBytes)
{
    request_.uniqueId = "id#1";
    for (int byte = 0; byte < 256; ++byte) {
        renameItem(std::string("chair ") + static_cast<char>(byte) + "\"\\");
        const QJsonArray hits = json("")[QLatin1String("hits")].toArray();
        const QString name = hits[0].toObject()[QLatin1String("name")].toString();
        const QString odd = byte < 0x80 ? QString(QChar(byte)) : QString(QChar(0xFFFD));
        EXPECT_EQ(name, QStringLiteral("chair ") + odd + QStringLiteral("\"\\")) << byte;
    }
}

TEST_F(HitReport, ExplainsASearch)
{
    request_.text = "(chair OR \"dining table\") oak -red";
    EXPECT_EQ(explainText(searchInfo(request_)),
              "An entry is found when it matches one of these 2 alternatives:\n"
              "\n1. all of:  \"chair\", \"oak\"\n   none of: \"red\"\n"
              "\n2. all of:  \"dining table\", \"oak\"\n   none of: \"red\"\n");
    request_.text = "chair";
    EXPECT_EQ(explainText(searchInfo(request_)), "An entry is found when it matches this:\n\n1. all of:  \"chair\"\n");
    request_.text = "-red";
    EXPECT_EQ(explainText(searchInfo(request_)), "Nothing to search for: there is no term that an entry must have.\n");
    request_.text = "chair -red";
    EXPECT_EQ(
        QJsonDocument::fromJson(QByteArray::fromStdString(explainJson(searchInfo(request_))))
            .toJson(QJsonDocument::Compact),
        QByteArray("{\"groups\":[{\"excludedTerms\":[\"red\"],\"terms\":[\"chair\"]}],\"wholeWordsOnly\":false}"));
}

TEST_F(HitReport, ShowsSizesWhereThereAreAny)
{
    EXPECT_EQ(table("chair").find("Size in mm"), std::string::npos);
    giveSizes();
    EXPECT_THAT(table("chair"), testing::HasSubstr("Size in mm"));
    EXPECT_THAT(table("chair"), testing::HasSubstr("505 \u00D7 584 \u00D7 850"));
}

TEST_F(HitReport, TellsWhatDoesNotFit)
{
    giveSizes();
    request_.room = {1, 1, 1};
    request_.folders = false;
    EXPECT_THAT(table(""), testing::StartsWith("0 hits. "));
    const std::string text = table("a");
    EXPECT_THAT(text, testing::HasSubstr("more item"));
    EXPECT_THAT(text, testing::HasSubstr(" not fit."));
    const QJsonObject object = json("a");
    const QJsonObject room{{QStringLiteral("width"), 1}, {QStringLiteral("depth"), 1}, {QStringLiteral("height"), 1}};
    EXPECT_EQ(object.value(QStringLiteral("fits")).toObject(), room);
    EXPECT_GT(object.value(QStringLiteral("tooLarge")).toInt() + object.value(QStringLiteral("withoutSize")).toInt(),
              0);
}

TEST_F(HitReport, TellsWhatIsKnownInJson)
{
    giveSizes();
    const QJsonObject hit = json("chair").value(QStringLiteral("hits")).toArray().at(0).toObject();
    const QJsonObject size{
        {QStringLiteral("width"), 505}, {QStringLiteral("depth"), 584}, {QStringLiteral("height"), 850}};
    EXPECT_EQ(hit.value(QStringLiteral("size")).toObject(), size);
    EXPECT_EQ(hit.value(QStringLiteral("creator")).toString(), QStringLiteral("Absfrm"));
    EXPECT_EQ(hit.value(QStringLiteral("licence")).toString(), QStringLiteral("CC0"));
    EXPECT_EQ(hit.value(QStringLiteral("price")).toString(), QStringLiteral("129.90"));
    EXPECT_EQ(hit.value(QStringLiteral("currency")).toString(), QStringLiteral("EUR"));
    EXPECT_EQ(hit.value(QStringLiteral("details")).toObject(),
              (QJsonObject{{QStringLiteral("finish"), QStringLiteral("oiled")}}));
}

}  // namespace
