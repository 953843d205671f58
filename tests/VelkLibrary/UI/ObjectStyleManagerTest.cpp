#include <VelkLibrary/UI/ObjectStyleManager.h>

#include <VelkCommon/HostServices.h>

#include <gmock/gmock.h>

#include <limits>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

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
        std::vector<std::thread> threads;
        for (ObjectStyleManager*& manager : managers_)
            threads.emplace_back([&manager] { manager = &ObjectStyleManager::getObjectStyleManager(); });
        for (std::thread& thread : threads)
            thread.join();
        Velk::installHost({});
    }

    inline static std::vector<unsigned int> loaded_;
    inline static std::vector<ObjectStyleManager*> managers_ = std::vector<ObjectStyleManager*>(4);
};

TEST_F(ObjectStyles, AreLoadedOnceInAscendingOrder)
{
    EXPECT_THAT(loaded_, testing::ElementsAre(10000, 10001, 10002, 10003, 10004, 10005, 10006, 10007, 10008, 10009,
                                              10010, 10011, 10012, 10013, 10014));
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
    EXPECT_EQ(styles.getStyleName(10000), U"style 10000");
    EXPECT_EQ(styles.getStyleName(10007), U"style 10007");
    EXPECT_EQ(styles.getStyleName(10014), U"style 10014");
    EXPECT_EQ(&styles.getStyleName(10003), &styles.getStyleName(10003));
}

TEST_F(ObjectStyles, AnUnknownNumberHasTheEmptyName)
{
    const ObjectStyleManager& styles = ObjectStyleManager::getObjectStyleManager();
    constexpr long lowest = std::numeric_limits<long>::min();
    constexpr long highest = std::numeric_limits<long>::max();
    for (const long number : {9999L, 10015L, 0L, -1L, -10000L, lowest, highest})
        EXPECT_EQ(styles.getStyleName(number), U"") << number;
    if constexpr (sizeof(long) > 4) {  // not cut off to 32 bits
        EXPECT_EQ(styles.getStyleName(static_cast<long>(4294967296LL + 10000)), U"");
    }
    EXPECT_EQ(&styles.getStyleName(9999), &styles.getStyleName(10015));
}

}  // namespace
