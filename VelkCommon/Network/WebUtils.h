#pragma once

#include <VelkCommon/Export.h>

#include <map>
#include <string>
#include <vector>

/// Helpers for headers and addresses. Nothing throws but for memory. Any thread.
namespace WebUtils {

/// Orders header names; letter case of ASCII letters does not count, and no locale matters.
struct VELKCOMMON_EXPORT HeaderNameCompare
{
    /// `left` comes before `right`.
    bool operator()(const std::string& left, const std::string& right) const;
};

/// Follows redirects and returns the final address, whatever its HTTP status; `url` itself when there is
/// no redirect. Empty when the end cannot be reached, or a redirect leads to where Curl does not go.
/// Asks by HEAD, and by GET where that is answered by an error or not at all. At most 30 s each.
VELKCOMMON_EXPORT std::string getUrlAfterRedirects(const std::string& url);

/// Replaces `out` by the names and values of a header block. A name that occurs several times keeps all
/// its values in order. Values come without the blanks around them.
///
/// Lines may end with CRLF or LF. A line that begins with a blank or tab continues the value before it,
/// joined by one blank. Names come without the blanks around them. The status line, lines without a colon
/// and lines without a name are skipped. Takes time and memory linear in the block.
VELKCOMMON_EXPORT void parseReturnHeader(const std::string& header,
                                         std::map<std::string, std::vector<std::string>, HeaderNameCompare>& out);

}  // namespace WebUtils
