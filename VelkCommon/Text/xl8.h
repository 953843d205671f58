#pragma once

#include <VelkCommon/Export.h>

#include <string>

/// `text` in the user's language, by the host's translation; `text` itself where there is none.
/// Every literal that a user sees passes through here. So do the names of the module's files, which a
/// host must therefore leave as they are. Any thread.
VELKCOMMON_EXPORT std::u32string xl8(const char32_t* text);

/// The same for narrow (UTF-8) text.
VELKCOMMON_EXPORT std::string xl8(const char* text);
