#include "ZipWalk.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using test::ZipBuilder;
using test::ZipHandle;
using test::ZipItem;

class ZipThreads : public test::ArchiveTest
{};

TEST_F(ZipThreads, ReadOneArchiveEach)
{
    constexpr std::size_t readers = 4;
    std::vector<int> right(readers, 0);
    test::onThreads(readers, [&](std::size_t reader) {
        const fileString path = at(U"own") + fileString(std::to_string(reader));
        ZipItem item;
        item.name = "entry";
        item.data = test::noise(50'000, static_cast<unsigned>(reader));
        item.deflated = true;
        ZipBuilder().add(item).writeTo(path);
        for (int round = 0; round < 20; ++round)
            walk(path, [&](const fileString& name, const ZipHandle&, ZipUtils::ZipRawDataInfo*) {
                right[reader] += dataOf(path, name.utf8()) == item.data ? 1 : 0;
            });
    });
    EXPECT_THAT(right, testing::Each(20));
}

}  // namespace
