// Writes documents of any bytes: our reader and another one accept them, and whatever is valid text reads back equal.
#include "VelkLibrary/Data/JsonOracle.h"

#include <VelkCommon/Json/json_writer.h>
#include <VelkCommon/Text/StringConvert.h>

#include "Check.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

json_writer::Object makeObject(FuzzedDataProvider& input, int levels);

json_writer::Array makeArray(FuzzedDataProvider& input, int levels)
{
    json_writer::Array array;
    for (int count = input.ConsumeIntegralInRange(0, 3); count > 0; --count)
        if (levels > 0 && input.ConsumeBool())
            array.add_element(makeObject(input, levels - 1));
        else
            array.add_element(input.ConsumeRandomLengthString());
    return array;
}

json_writer::Object makeObject(FuzzedDataProvider& input, int levels)
{
    json_writer::Object object;
    for (int count = input.ConsumeIntegralInRange(0, 4); count > 0; --count) {
        const std::string key = input.ConsumeRandomLengthString();
        const int kind = input.ConsumeIntegralInRange(0, levels > 0 ? 5 : 3);
        if (kind == 0)
            object.add_element(key, input.ConsumeBool());
        else if (kind == 1)
            object.add_element(key, input.ConsumeIntegral<int>());
        else if (kind == 2) {
            const double number = input.ConsumeFloatingPoint<double>();
            object.add_element(key, std::isfinite(number) ? number : 0.0);
        } else if (kind == 3)
            object.add_element(key, input.ConsumeRandomLengthString());
        else if (kind == 4)
            object.add_element(key, makeArray(input, levels - 1));
        else
            object.add_element(key, makeObject(input, levels - 1));
    }
    return object;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const std::string text = json_writer::to_text(makeObject(input, 4));
    fuzz::check(!json::read(text)->empty(), "we read it");
    fuzz::check(test::readByOther(text).is_object(), "others read it");
    fuzz::check(test::disagreement(text, false).empty(), "both read the same");

    const std::string all(reinterpret_cast<const char*>(data), size);
    json_writer::Object document;
    document.add_element("all", all);
    const auto root = json::read(json_writer::to_text(document));
    const auto& member = *boost::any_cast<const test::JsonObject&>(*root).begin();
    bool isText = false;
    StringConvert::toUnicodeFromUtf8(all, &isText);
    fuzz::check(!isText || boost::any_cast<const std::string&>(*member.second) == all, "text reads back equal");
    return 0;
}
