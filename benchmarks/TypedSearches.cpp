#include "TypedSearches.h"

namespace bench {
namespace {

constexpr double patientGate = 60;  // ms, for letters with an exclusion and for many terms

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " OR ") + word;
    return text;
}

std::vector<std::string> manyWords()
{
    return {"lamp",    "sofa",  "door",    "plant",   "table",  "desk",   "bed",   "window",
            "relay",   "diode", "led",     "usb",     "switch", "sensor", "motor", "filter",
            "crystal", "fuse",  "battery", "antenna", "audio",  "memory", "logic", "power",
            "shelf",   "stool", "bench",   "mirror",  "carpet", "oven",   "sink",  "tree"};
}

}  // namespace

std::vector<TypedSearch> typedSearches()
{
    std::vector<TypedSearch> searches;
    for (const std::string text : {"office chair", "chair", "usb connector", "a e"})
        for (std::size_t length = 1; length <= text.size(); ++length)
            if (text[length - 1] != ' ')
                searches.push_back({text.substr(0, length)});
    for (char letter = 'a'; letter <= 'z'; ++letter)
        searches.push_back({std::string(1, letter)});
    searches.push_back({joined({"lamp", "sofa", "resistor", "door", "plant"})});
    searches.push_back({"\"office chair\""});
    searches.push_back({"chair", true});
    searches.push_back({"e -a", false, patientGate});
    searches.push_back({joined(manyWords()), false, patientGate});
    return searches;
}

}  // namespace bench
