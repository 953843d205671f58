#include <VelkCommon/Files/SHA1.h>

#include "support/TestHost.h"
#include "support/Threads.h"

#include <algorithm>

namespace {

struct Digest
{
    const char* name;
    std::string bytes;
    const char* hex;
};

class SHA1Digest : public testing::TestWithParam<Digest>
{
protected:
    test::TemporaryFolder root_;
};

TEST_P(SHA1Digest, IsThatOfTheBytes)
{
    test::writeFile(root_ / U"file", GetParam().bytes);
    EXPECT_EQ(SHA1::fileContentsToSHA1Hex(root_ / U"file"), GetParam().hex);
    EXPECT_EQ(SHA1::bytesToSHA1Hex(GetParam().bytes), GetParam().hex);
}

// The first four are the examples of FIPS 180 and the empty message.
INSTANTIATE_TEST_SUITE_P(
    Files, SHA1Digest,
    testing::Values(Digest{"Empty", "", "da39a3ee5e6b4b0d3255bfef95601890afd80709"},
                    Digest{"Abc", "abc", "a9993e364706816aba3e25717850c26c9cd0d89d"},
                    Digest{"TwoBlocks", "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
                           "84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
                    Digest{"Million", std::string(1'000'000, 'a'), "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
                    Digest{"OneReadBlock", std::string(262144, '\0'), "2e000fa7e85759c7f4c254d4d9c33ef481e459a7"},
                    Digest{"LineEndsAsTheyAre", "a\r\nb\x1A", "6e91c6a4e88e94842c511afa6be81507575880f7"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SHA1Test, IsEmptyForWhatCannotBeRead)
{
    const test::TemporaryFolder root;
    EXPECT_EQ(SHA1::fileContentsToSHA1Hex(root / U"missing"), "");
    EXPECT_EQ(SHA1::fileContentsToSHA1Hex(root.path()), "");
    EXPECT_EQ(SHA1::fileContentsToSHA1Hex({}), "");
}

#ifdef __linux__
TEST(SHA1Test, IsEmptyOnAReadFault)
{
    // This file can be opened but not read from its beginning, because no memory is mapped there.
    EXPECT_EQ(SHA1::fileContentsToSHA1Hex(std::string("/proc/self/mem")), "");
}
#endif

TEST(SHA1Test, ThreadsGetTheSameDigest)
{
    const test::TemporaryFolder root;
    test::writeFile(root / U"file", std::string(1'000'000, 'a'));
    std::vector<std::string> digests(8);
    test::onThreads(digests.size(), [&](std::size_t i) { digests[i] = SHA1::fileContentsToSHA1Hex(root / U"file"); });
    EXPECT_EQ(std::count(digests.begin(), digests.end(), "34aa973cd4c4daa4f61eeb2bdbad27316534016f"), 8);
}

}  // namespace
