// A database for which there is not memory enough at once. The program's `operator new` fails for it, so
// this stands alone.
#include "LibraryImportFixture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

namespace {

// Larger requests fail.
std::atomic<std::size_t> largestRequest = SIZE_MAX;
std::atomic<int> refusals = 0;

}  // namespace

void* operator new(std::size_t size)
{
    if (size > largestRequest) {
        ++refusals;
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using test::ZipBuilder;
using test::ZipItem;
using testing::ElementsAre;

class NoMemory : public test::ImportTest
{
protected:
    ~NoMemory() override { largestRequest = SIZE_MAX; }

    void pack(const std::string& database)
    {
        ZipItem item;
        item.name = "library.calib";
        item.data = database;
        item.deflated = true;
        ZipBuilder().add("a", "1").add(item).writeTo(archive_);
        refusals = 0;
    }

    fileString archive_ = at(U"work.calibz");
};

TEST_F(NoMemory, TheBlockReaderTakesOver)
{
    const std::string database(60'000'000, 'x');
    pack(database);
    largestRequest = 2'000'000;
    const auto [first, second] = LibraryImport::unpack(archive_, false, nullptr);
    largestRequest = SIZE_MAX;
    EXPECT_EQ(refusals, 1);
    ASSERT_TRUE(first);
    EXPECT_TRUE(second);
    EXPECT_TRUE(test::readFile(*first) == database);
}

TEST_F(NoMemory, NotEvenForABlock)
{
    pack(std::string(60'000'000, 'x'));
    largestRequest = 500'000;
    EXPECT_THROW(LibraryImport::unpack(archive_, false, nullptr), std::bad_alloc);
    largestRequest = SIZE_MAX;
    EXPECT_EQ(refusals, 2);
    EXPECT_FALSE(at(U"work.calib").pathExists());
    EXPECT_FALSE(at(U"work.zip").pathExists());
}

}  // namespace
