// A catalog file that does not fit into memory at once. This is a program by itself because its `operator new`
// fails for such a file.
#include "LibraryImportFixture.h"
#include "support/CountedMemory.h"

#include <gmock/gmock.h>

#include <new>
#include <string>

namespace {

using test::ZipBuilder;
using test::ZipItem;
using testing::ElementsAre;

class NoMemory : public test::ImportTest
{
protected:
    ~NoMemory() override { test::largestAllocation = SIZE_MAX; }

    void pack(const std::string& database)
    {
        ZipItem item;
        item.name = "library.calib";
        item.data = database;
        item.deflated = true;
        ZipBuilder().add("a", "1").add(item).writeTo(archive_);
        test::refusedAllocations = 0;
    }

    fileString archive_ = at(U"work.calibz");
};

TEST_F(NoMemory, TheBlockReaderTakesOver)
{
    const std::string database(60'000'000, 'x');
    pack(database);
    test::largestAllocation = 2'000'000;
    const auto [first, second] = LibraryImport::unpack(archive_, false, nullptr);
    test::largestAllocation = SIZE_MAX;
    EXPECT_EQ(test::refusedAllocations, 1U);
    ASSERT_TRUE(first);
    EXPECT_TRUE(second);
    EXPECT_TRUE(test::readFile(*first) == database);
}

TEST_F(NoMemory, NotEvenForABlock)
{
    pack(std::string(60'000'000, 'x'));
    test::largestAllocation = 100'000;
    EXPECT_THROW(LibraryImport::unpack(archive_, false, nullptr), std::bad_alloc);
    test::largestAllocation = SIZE_MAX;
    EXPECT_EQ(test::refusedAllocations, 2U);
    EXPECT_FALSE(at(U"work.calib").pathExists());
    EXPECT_FALSE(at(U"work.zip").pathExists());
}

}  // namespace
