#include "ZipWalk.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using test::ZipBuilder;
using test::ZipHandle;
using test::ZipItem;

class ZipThreads : public test::ArchiveTest
{};

TEST_F(ZipThreads, ReadOneArchiveEach)
{
    constexpr int threads = 4;
    std::vector<std::thread> readers;
    std::vector<int> right(threads, 0);
    for (int i = 0; i < threads; ++i) {
        const fileString path = at(U"own") + fileString(std::to_string(i));
        ZipItem item;
        item.name = "entry";
        item.data = test::noise(50'000, static_cast<unsigned>(i));
        item.deflated = true;
        ZipBuilder().add(item).writeTo(path);
        readers.emplace_back([path, i, &right] {
            for (int round = 0; round < 20; ++round) {
                bool same = false;
                walk(path, [&](const fileString& name, const ZipHandle&, ZipUtils::ZipRawDataInfo*) {
                    same = dataOf(path, name.utf8()) == test::noise(50'000, static_cast<unsigned>(i));
                });
                right[static_cast<std::size_t>(i)] += same ? 1 : 0;
            }
        });
    }
    for (std::thread& reader : readers)
        reader.join();
    EXPECT_THAT(right, testing::Each(20));
}

}  // namespace
