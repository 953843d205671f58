#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include "ManufacturerTest.h"
#include "support/ScriptedServer.h"
#include "support/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <vector>

namespace {

constexpr int rounds = 300;

class ManufacturerThreads : public test::ManufacturerTest
{
protected:
    static std::string data(const std::string& time)
    {
        std::string text = R"({"Version": "42", "Last_Modified": ")" + time + "\"";
        for (int id = 1; id <= 20; ++id)
            text +=
                ", \"Manufacturer_" + std::to_string(id) + "\": {\"Id\": " + std::to_string(id) + ", \"Name\": \"N\"}";
        return text + "}";
    }

    static void run(const std::vector<std::function<void()>>& works)
    {
        test::onThreads(works.size(), [&](std::size_t i) { works[i](); });
    }
};

// A lookup sees all cards or, between a cleanup and the next use, none.
void lookUp(const ManufacturerManager& manager)
{
    const auto names = manager.getIdNameMap();
    EXPECT_TRUE(names.empty() || names.size() == 20U);
    manager.manufacturerExists(7);
    manager.getManufacturer(7);
    EXPECT_FALSE(manager.manufacturerExists(21));
}

TEST_F(ManufacturerThreads, LookUpWhileOthersCleanUpAndMakeAnew)
{
    managerOf(data("20260101T000000"));
    const auto lookups = [] {
        for (int i = 0; i < rounds; ++i)
            lookUp(manager());
    };
    const auto cleanups = [] {
        for (int i = 0; i < rounds; ++i)
            ManufacturerManager::cleanup();
    };
    const auto uses = [] {
        for (int i = 0; i < rounds; ++i)
            manager();
    };
    run({lookups, lookups, cleanups, uses});
    EXPECT_EQ(manager().getIdNameMap().size(), 20U);
}

TEST_F(ManufacturerThreads, MakeOneInstance)
{
    std::vector<ManufacturerManager*> seen(8);
    std::vector<std::function<void()>> works;
    for (auto& one : seen)
        works.emplace_back([&one] { one = &manager(); });
    run(works);
    for (const ManufacturerManager* const one : seen)
        EXPECT_EQ(one, &manager());
}

TEST_F(ManufacturerThreads, LookUpWhileAnUpdateRuns)
{
    managerOf(data("20260101T000000"));
    test::ScriptedServer server;
    server.on("/data", test::Reply{.body = data("20260201T000000")});
    const std::u32string url = StringConvert::toUnicodeFromUtf8(server.url("/data"));
    std::atomic<bool> done{false};
    const auto lookups = [&] {
        while (!done)
            lookUp(manager());
    };
    const auto updates = [&] {
        manager().checkForManufacturerUpdates(url, url);
        done = true;
    };
    run({lookups, lookups, updates});
    EXPECT_EQ(server.requests("/data").size(), 1U);
}

}  // namespace
