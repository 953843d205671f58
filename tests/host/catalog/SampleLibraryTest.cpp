#include "host/catalog/SampleLibrary.h"

#include "host/fixtures/Fixtures.h"

#include <QImage>

#include <set>

using VelkHost::Catalog;
using VelkHost::sampleLibrary;

namespace {

class SampleLibrary : public test::TestHost
{};

TEST_F(SampleLibrary, HasPicturesForAllItems)
{
    const Catalog catalog = sampleLibrary({});
    EXPECT_GE(catalog.items.size(), 36U);
    for (const VelkHost::Item& item : catalog.items) {
        QImage image;
        ASSERT_TRUE(image.loadFromData(reinterpret_cast<const uchar*>(item.thumbnail.data()),
                                       static_cast<int>(item.thumbnail.size()), "PNG"))
            << item.name;
        EXPECT_EQ(image.size(), QSize(96, 96));
        std::set<QRgb> colours;
        for (int i = 0; i < 96 * 96; ++i)
            colours.insert(image.pixel(i % 96, i / 96));
        EXPECT_GT(colours.size(), 2U) << item.name << " is drawn";
        EXPECT_FALSE(item.keywords.empty()) << item.name;
        EXPECT_FALSE(item.files.empty()) << item.name;
    }
}

TEST_F(SampleLibrary, HasTheSameItemsInGerman)
{
    const Catalog english = sampleLibrary({});
    const Catalog german = sampleLibrary({VelkHost::LibraryKind::Core, "de", "", ""});
    EXPECT_EQ(english.language, "en");
    EXPECT_EQ(german.language, "de");
    EXPECT_EQ(german.kind, VelkHost::LibraryKind::Core);
    ASSERT_EQ(english.items.size(), german.items.size());
    EXPECT_EQ(english.folders.size(), german.folders.size());
    for (std::size_t i = 0; i < english.items.size(); ++i) {
        EXPECT_EQ(english.items[i].uniqueId, german.items[i].uniqueId);
        EXPECT_EQ(english.items[i].folder, german.items[i].folder);
        EXPECT_NE(english.items[i].name, german.items[i].name);
    }
    EXPECT_THAT(test::reasonOf([] {
                    sampleLibrary({VelkHost::LibraryKind::Core, "fr", "", ""});
                }),
                testing::HasSubstr("it has de"));
}

}  // namespace
