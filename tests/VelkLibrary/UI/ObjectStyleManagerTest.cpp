#include <VelkLibrary/UI/ObjectStyleManager.h>

#include <VelkCommon/HostServices.h>

#include "support/Numbers.h"
#include "support/Threads.h"

#include <gmock/gmock.h>

#include <limits>
#include <mutex>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace {

using test::textNumber::firstStyle;
using test::textNumber::lastStyle;

// The names are loaded once in a process: before all tests, on several threads at once.
class ObjectStyles : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        Velk::HostServices host;
        host.resourceString = [](unsigned int id) -> std::optional<std::u32string> {
            static std::mutex mutex;
            const std::lock_guard lock(mutex);
            loaded_.push_back(id);
            const std::string digits = std::to_string(id);
            return U"style " + std::u32string(digits.begin(), digits.end());
        };
        Velk::installHost(std::move(host));
        test::onThreads(managers_.size(),
                        [](std::size_t i) { managers_[i] = &ObjectStyleManager::getObjectStyleManager(); });
        Velk::installHost({});
    }

    inline static std::vector<unsigned int> loaded_;
    inline static std::vector<ObjectStyleManager*> managers_ = std::vector<ObjectStyleManager*>(4);
};

TEST_F(ObjectStyles, AreLoadedOnceInAscendingOrder)
{
    std::vector<unsigned int> numbers(lastStyle - firstStyle + 1);
    std::iota(numbers.begin(), numbers.end(), firstStyle);
    EXPECT_EQ(loaded_, numbers);
    static_cast<void>(ObjectStyleManager::getObjectStyleManager());
    EXPECT_THAT(loaded_, testing::SizeIs(15));
}

TEST_F(ObjectStyles, BelongToOneObject)
{
    EXPECT_THAT(managers_, testing::Each(&ObjectStyleManager::getObjectStyleManager()));
}

TEST_F(ObjectStyles, HaveTheHostsNames)
{
    const ObjectStyleManager& styles = ObjectStyleManager::getObjectStyleManager();
    EXPECT_EQ(styles.getStyleName(firstStyle), U"style 10000");
    EXPECT_EQ(styles.getStyleName(firstStyle + 7), U"style 10007");
    EXPECT_EQ(styles.getStyleName(lastStyle), U"style 10014");
    EXPECT_EQ(&styles.getStyleName(firstStyle + 3), &styles.getStyleName(firstStyle + 3));
}

TEST_F(ObjectStyles, AnUnknownNumberHasTheEmptyName)
{
    const ObjectStyleManager& styles = ObjectStyleManager::getObjectStyleManager();
    constexpr long lowest = std::numeric_limits<long>::min();
    constexpr long highest = std::numeric_limits<long>::max();
    constexpr long below = static_cast<long>(firstStyle) - 1;
    constexpr long above = static_cast<long>(lastStyle) + 1;
    for (const long number : {below, above, 0L, -1L, -10000L, lowest, highest})
        EXPECT_EQ(styles.getStyleName(number), U"") << number;
    if constexpr (sizeof(long) > 4) {  // not cut off to 32 bits
        EXPECT_EQ(styles.getStyleName(static_cast<long>(4294967296LL + firstStyle)), U"");
    }
    EXPECT_EQ(&styles.getStyleName(firstStyle - 1), &styles.getStyleName(lastStyle + 1));
}

}  // namespace
