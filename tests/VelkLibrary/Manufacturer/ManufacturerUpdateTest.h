#pragma once

/// @file
/// Updates of the manufacturers from a service that the test scripts.

#include "ManufacturerTest.h"
#include "support/ScriptedServer.h"

#include <string>
#include <vector>

namespace test::manufacturerUpdate {

struct ServiceCard
{
    long id;
    std::string name;
    std::string time;
    std::string logo;
};

// The service's data file.
inline std::string dataText(const std::string& time, const std::vector<ServiceCard>& cards,
                            const std::string& defaultText = "service text")
{
    std::string text =
        R"({"Version": "42", "Last_Modified": ")" + time + R"(", "Default_Text": ")" + defaultText + "\"";
    for (const ServiceCard& card : cards)
        text += ", \"Manufacturer_" + std::to_string(card.id) + "\": {\"Id\": " + std::to_string(card.id) +
                ", \"Last_Modified\": \"" + card.time + "\", \"Name\": \"" + card.name + "\", \"Logo\": \"" +
                card.logo + "\"}";
    return text + "}";
}

inline constexpr const char* early = "20260101T000000";
inline constexpr const char* late = "20260201T000000";
inline constexpr const char* never = "99990101T000000";  // newer than any change made here

class Update : public ManufacturerTest
{
protected:
    Update()
    {
        server_.on("/logo", [](const SeenRequest& request) {
            return Reply{.body = "picture " + request.parameter("logo-path")};
        });
    }

    void publish(const std::string& text) { server_.on("/data", Reply{.body = text}); }

    void update()
    {
        manager().checkForManufacturerUpdates(wide(server_.url("/data")), wide(server_.url("/logo?v=1")));
        EXPECT_FALSE(temporaryFile().pathExists());
    }

    static std::u32string wide(const std::string& text) { return StringConvert::toUnicodeFromUtf8(text); }

    static fileString logo(const std::u32string& name) { return dataFolder() / name; }
    static fileString temporaryFile()
    {
        return dataFolder() + fileString(std::u32string(U"manufacturer_data_temp.json"));
    }

    std::vector<std::string> askedLogos() const
    {
        std::vector<std::string> names;
        for (const SeenRequest& request : server_.requests("/logo"))
            names.push_back(request.parameter("logo-path"));
        return names;
    }

    // The manager of a file with this time.
    static void hold(const std::string& time, const std::vector<ServiceCard>& cards)
    {
        managerOf(dataText(time, cards, "own text"));
    }

    ScriptedServer server_;
};

}  // namespace test::manufacturerUpdate
