#include "host/browser/opening/OpenMessage.h"

#include "support/RuntimeFolder.h"

#include <gmock/gmock.h>

#include <VelkCommon/Files/FileState.h>

using testing::Optional;
using VelkHost::filesInMessage;
using VelkHost::headSize;
using VelkHost::lengthInHead;
using VelkHost::openMessage;

namespace {

std::string absolute(const std::string& name)
{
    return Velk::absolutePath(fileString(name)).utf8();
}

std::string withEnds(const std::vector<std::string>& paths)
{
    std::string text;
    for (const std::string& path : paths)
        text += path + '\0';
    return text;
}

TEST(OpenMessage, BringsTheFilesAlong)
{
    const QStringList files{QString::fromStdString(absolute("K\u00FCche \u6905.calibz")),
                            QString::fromStdString(absolute("b.calib"))};
    const std::optional<std::string> message = openMessage(files);
    ASSERT_TRUE(message);
    ASSERT_THAT(lengthInHead(message->substr(0, headSize)), Optional(message->size() - headSize));
    EXPECT_EQ(filesInMessage(message->substr(headSize)), files);
}

TEST(OpenMessage, MayBeAboutNoFile)
{
    EXPECT_EQ(openMessage({}), "velk1 00000000\n");
    EXPECT_EQ(filesInMessage(""), QStringList());
}

TEST(OpenMessage, IsNotMadeForTooManyFiles)
{
    QStringList files;
    for (std::size_t i = 0; i < VelkHost::mostOpenedFiles; ++i)
        files.append(QStringLiteral("/x"));
    EXPECT_TRUE(openMessage(files));
    files.append(QStringLiteral("/x"));
    EXPECT_FALSE(openMessage(files));
    EXPECT_FALSE(openMessage({QString(5'000'000, u'x')}));
}

struct BadText
{
    const char* name;
    std::string text;
};

std::string nameOf(const testing::TestParamInfo<BadText>& info)
{
    return info.param.name;
}

class BadHead : public testing::TestWithParam<BadText>
{};

TEST_P(BadHead, IsRefused)
{
    EXPECT_FALSE(lengthInHead(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(OpenMessage, BadHead,
                         testing::Values(BadText{"Empty", ""}, BadText{"Short", "velk1 0000000\n"},
                                         BadText{"Long", "velk1 000000000\n"}, BadText{"Word", "VELK1 00000000\n"},
                                         BadText{"Sign", "velk1 -0000001\n"}, BadText{"Prefix", "velk1 0x000001\n"},
                                         BadText{"Blank", "velk1  0000001\n"}, BadText{"End", "velk1 00000001 "},
                                         BadText{"Large", "velk1 00400001\n"}, BadText{"Largest", "velk1 ffffffff\n"}),
                         nameOf);

class BadFiles : public testing::TestWithParam<BadText>
{};

TEST_P(BadFiles, AreRefused)
{
    EXPECT_FALSE(filesInMessage(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(OpenMessage, BadFiles,
                         testing::Values(BadText{"WithoutEnd", absolute("a.calib")},
                                         BadText{"Relative", withEnds({"a.calib"})},
                                         BadText{"NoPath", withEnds({absolute("a.calib"), ""})},
                                         BadText{"OddBytes", withEnds({absolute("\xFF.calib")})},
                                         BadText{"HalfACharacter", withEnds({absolute("\xC3")})},
                                         BadText{"Surrogate", withEnds({absolute("\xED\xA0\x80.calib")})},
                                         BadText{"TooLongForAPath", withEnds({absolute(std::string(70'000, 'x'))})},
                                         BadText{"TooMany", std::string(VelkHost::mostOpenedFiles + 1, '\0')}),
                         nameOf);

}  // namespace
