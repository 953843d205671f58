#include <VelkCommon/detail/NeverDestroyed.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using Velk::detail::NeverDestroyed;

int made = 0;
int destroyed = 0;

struct alignas(64) Counted
{
    Counted() { ++made; }
    ~Counted() { ++destroyed; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    int value = 7;
};

class OnlyByItself
{
public:
    static OnlyByItself& get()
    {
        static NeverDestroyed<OnlyByItself> object([] { return OnlyByItself(); });
        return *object;
    }

private:
    OnlyByItself() = default;
};

TEST(NeverDestroyedTest, IsMadeOnceAndNeverDestroyed)
{
    {
        NeverDestroyed<Counted> object;
        EXPECT_EQ(made, 1);
        EXPECT_EQ((*object).value, 7);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&*object) % 64, 0u);
    }
    EXPECT_EQ(made, 1);
    EXPECT_EQ(destroyed, 0);
}

TEST(NeverDestroyedTest, HoldsWhatOnlyTheClassCanMake)
{
    EXPECT_EQ(&OnlyByItself::get(), &OnlyByItself::get());
}

}  // namespace
