#include <VelkLibrary/UI/ObjectStyleManager.h>

#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>

#include <utility>

namespace {

constexpr auto firstStyle = static_cast<std::int32_t>(Velk::textNumbers::firstStyle);
constexpr auto lastStyle = static_cast<std::int32_t>(Velk::textNumbers::lastStyle);

}  // namespace

ObjectStyleManager& ObjectStyleManager::getObjectStyleManager()
{
    static ObjectStyleManager manager;
    return manager;
}

ObjectStyleManager::ObjectStyleManager()
{
    for (std::int32_t style = firstStyle; style <= lastStyle; ++style)
        names_.insert_or_assign(style, StringUtils::loadUnicodeString(static_cast<unsigned int>(style)));
}

ObjectStyleManager::~ObjectStyleManager() = default;

const std::u32string& ObjectStyleManager::getStyleName(long style) const
{
    static const std::u32string noName;
    // Where `long` has 64 bits, most of its values do not fit the map's keys.
    if (!std::in_range<std::int32_t>(style))
        return noName;
    const auto found = names_.find(static_cast<std::int32_t>(style));
    return found == names_.end() ? noName : found->second;
}
