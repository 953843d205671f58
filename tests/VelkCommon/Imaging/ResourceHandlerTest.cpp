#include <VelkCommon/Imaging/ResourceHandler.h>

#include "Pictures.h"

#include <VelkCommon/HostServices.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

class Resources : public testing::Test
{
protected:
    ~Resources() override { Velk::installHost({}); }

    static void install(std::function<QImage(std::string_view)> loadImage)
    {
        Velk::HostServices services;
        services.loadImage = std::move(loadImage);
        Velk::installHost(std::move(services));
    }
};

TEST_F(Resources, HaveOneHandler)
{
    EXPECT_EQ(&ResourceHandler::getHandler(), &ResourceHandler::getHandler());
}

TEST_F(Resources, AreTheHosts)
{
    std::string asked;
    install([&asked](std::string_view name) {
        asked = name;
        return plainPicture(3, 2, Qt::red);
    });
    const ImageObj image = ResourceHandler::getHandler().getImage("folder \xC3\xBC");
    EXPECT_EQ(asked, "folder \xC3\xBC");
    ASSERT_TRUE(image.valid());
    EXPECT_EQ(image.getSize(), QSize(3, 2));
    EXPECT_EQ(image.image().pixelColor(2, 1), QColor(Qt::red));
}

TEST_F(Resources, AreAskedForEachTime)
{
    int asked = 0;
    install([&asked](std::string_view) {
        ++asked;
        return QImage();
    });
    EXPECT_FALSE(ResourceHandler::getHandler().getImage("a").valid());
    EXPECT_FALSE(ResourceHandler::getHandler().getImage("a").valid());
    EXPECT_EQ(asked, 2);
}

TEST_F(Resources, AreNoneWithoutAHost)
{
    EXPECT_FALSE(ResourceHandler::getHandler().getImage("a").valid());
}

TEST_F(Resources, AreNoneWhenTheHostThrows)
{
    install([](std::string_view) -> QImage { throw std::runtime_error("no pictures"); });
    EXPECT_FALSE(ResourceHandler::getHandler().getImage("a").valid());
}

}  // namespace
