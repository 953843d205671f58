#include "host/catalog/ZipSource.h"

#include "host/fixtures/Fixtures.h"
#include "support/ZipBuilder.h"

#include <string>

using test::ZipBuilder;
using test::ZipItem;
using testing::ElementsAre;
using testing::StartsWith;
using VelkHost::ZipSource;

namespace {

class ZipSourceTest : public test::TestHost
{
protected:
    static ZipItem item(const std::string& name)
    {
        ZipItem item;
        item.name = name;
        item.data = "data";
        return item;
    }

    ZipSource open(const ZipBuilder& archive) const
    {
        archive.writeTo(path_);
        return ZipSource(path_);
    }

    std::string refusal(const ZipBuilder& archive, std::size_t maximumBytes = 1'000) const
    {
        return test::reasonOf([&] { open(archive).read("a", maximumBytes); });
    }

    fileString path_ = folder() / U"a.zip";
};

TEST_F(ZipSourceTest, HasTheNamesOfItsFiles)
{
    ZipSource source = open(ZipBuilder().add("b", "2").add("folder/", "").add("a", "1"));
    EXPECT_THAT(source.names(), ElementsAre("a", "b"));
    EXPECT_EQ(source.read("a", 1), "1");
    EXPECT_EQ(source.read("A", 1), std::nullopt);
}

TEST_F(ZipSourceTest, RefusesEntriesThatCannotBeRead)
{
    ZipItem encrypted = item("a");
    encrypted.flags = test::zip::encrypted;
    EXPECT_THAT(refusal(ZipBuilder().add(encrypted)), StartsWith("its entry \"a\" cannot be read ("));
    ZipItem unknown = item("a");
    unknown.method = test::zip::unknownMethod;
    EXPECT_THAT(refusal(ZipBuilder().add(unknown)), StartsWith("its entry \"a\" cannot be read ("));
    ZipItem damaged = item("a");
    damaged.crc = 1;
    EXPECT_THAT(refusal(ZipBuilder().add(damaged)), StartsWith("its entry \"a\" is damaged ("));
}

TEST_F(ZipSourceTest, RefusesEntriesThatAreTooLarge)
{
    const ZipBuilder archive = ZipBuilder().add("a", std::string((1 << 20) + 1, 'x'));
    EXPECT_EQ(refusal(archive, 1 << 20), "its entry \"a\" is larger than 1 MiB");
    EXPECT_EQ(open(archive).read("a", (1 << 20) + 1)->size(), (std::size_t{1} << 20) + 1);
}

TEST_F(ZipSourceTest, RefusesWhatIsNoSoundArchive)
{
    ZipItem elsewhere = item("a");
    elsewhere.offset = 100'000;
    EXPECT_THAT(refusal(ZipBuilder().add(elsewhere)), StartsWith("is not a sound zip archive ("));
    test::writeFile(path_, "text");
    EXPECT_THAT(test::reasonOf([&] { ZipSource{path_}; }), StartsWith("is not a sound zip archive ("));
}

}  // namespace
