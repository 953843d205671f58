#pragma once

#include <VelkLibrary/Export.h>

#include <cstdint>
#include <map>
#include <string>

/// The names of the object styles, which are the host's texts 10000 to 10014.
class VELKLIBRARY_EXPORT ObjectStyleManager
{
public:
    /// The instance, which lives as long as the process. The first call loads the names, in the language
    /// of that moment. Any thread.
    static ObjectStyleManager& getObjectStyleManager();

    ObjectStyleManager(const ObjectStyleManager&) = delete;
    ObjectStyleManager& operator=(const ObjectStyleManager&) = delete;

    /// The name of a style; empty when there is no style of that number. The reference stays valid. Any
    /// thread.
    const std::u32string& getStyleName(long style) const;

private:
    ObjectStyleManager();
    ~ObjectStyleManager();

    std::map<std::int32_t, std::u32string> names_;
};
