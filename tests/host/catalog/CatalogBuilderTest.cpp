#include "host/catalog/CatalogBuilder.h"

#include "host/fixtures/Fixtures.h"

using namespace VelkHost;
using testing::ElementsAre;

namespace {

const fileString source(std::string("source"));

Catalog header(const std::string& id, const std::string& name = "")
{
    Catalog catalog;
    catalog.id = id;
    catalog.name = name;
    return catalog;
}

Item item(const std::string& id, const std::string& name)
{
    Item made;
    made.uniqueId = id;
    made.name = name;
    return made;
}

TEST(CatalogBuilder, NeedsAnIdOfTheLibrary)
{
    EXPECT_EQ(test::reasonOf([] { CatalogBuilder(source, header(" \n")); }),
              "has no library id; give it one with --id");
    EXPECT_EQ(CatalogBuilder(source, header(" a\tb ")).finish().name, "a b");
    EXPECT_EQ(CatalogBuilder(source, header("a", "Name")).finish().name, "Name");
}

TEST(CatalogBuilder, NeedsIdsOfItems)
{
    CatalogBuilder builder(source, header("a"));
    const std::size_t room = builder.folder({"Room"});
    EXPECT_EQ(room, 0U);
    EXPECT_EQ(test::reasonOf([&] { builder.add(item(" ", "Chair")); }), "has an item without an id");
    builder.add(item("x", "\n"));
    EXPECT_TRUE(builder.has("x"));
    EXPECT_EQ(test::reasonOf([&] { builder.add(item("x", "Desk")); }), "the id \"x\" occurs twice; ids must differ");
    const Catalog catalog = builder.finish();
    ASSERT_EQ(catalog.items.size(), 1U);
    EXPECT_EQ(catalog.items[0].name, "x") << "an item without a name is called by its id";
}

TEST(CatalogBuilder, MakesEachFolderOnce)
{
    CatalogBuilder builder(source, header("a"));
    const std::size_t chairs = builder.folder({"Room", "", "Chairs"});
    EXPECT_EQ(builder.folder({"Room", "Chairs", " "}), chairs);
    EXPECT_NE(builder.folder({"Chairs"}), chairs);
    EXPECT_EQ(builder.folder({"", " "}), builder.folder({}));
    const Catalog catalog = builder.finish();
    EXPECT_THAT(catalog.folderPath(chairs), ElementsAre("Room", "Chairs"));
    EXPECT_EQ(catalog.folders.size(), 4U);
}

TEST(CatalogBuilder, BoundsFolders)
{
    CatalogBuilder builder(source, header("a"));
    EXPECT_NO_THROW(builder.folder(std::vector<std::string>(limits::folderDepth, "f")));
    EXPECT_EQ(test::reasonOf([&] { builder.folder(std::vector<std::string>(limits::folderDepth + 1, "f")); }),
              "folders are nested more than 32 deep");
    for (std::size_t i = limits::folderDepth; i < limits::folders; ++i)
        builder.folder({std::to_string(i)});
    EXPECT_EQ(test::reasonOf([&] { builder.folder({"one more"}); }), "has more than 100000 folders");
    EXPECT_EQ(builder.folder({"99999"}), limits::folders - 1) << "the others are there";
}

}  // namespace
