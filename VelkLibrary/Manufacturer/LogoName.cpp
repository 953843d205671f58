#include <VelkLibrary/Manufacturer/LogoName.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/Manufacturer/detail/LogoFolders.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace Library {
namespace {

constexpr std::string_view separators = "/\\";

bool isOwnFile(std::string_view piece)
{
    const std::array<fileString, 5> ownFiles{
        detail::manufacturerDataFileName, detail::manufacturerDataTemporaryFileName, detail::catalogHashFileName,
        std::u32string(detail::filterFileName), ErrorLog::file().stemWithExtension()};
    const auto lowered = StringUtils::toLowerUtf8(std::string(piece));
    const auto isName = [&](const fileString& own) { return StringUtils::toLowerUtf8(own.utf8()) == lowered; };
    return std::any_of(ownFiles.begin(), ownFiles.end(), isName);
}

}  // namespace

bool isSafeLogoName(const fileString& name)
{
    const std::string_view text = name.utf8();
    if (text.size() > longestLogoName)
        return false;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find_first_of(separators, begin), text.size());
        const std::string_view piece = text.substr(begin, end - begin);
        if (!isPlainFileName(piece) || isOwnFile(piece))
            return false;
        begin = end + 1;
    }
    return true;
}

bool detail::logoFoldersHoldLink(const fileString& folder, const fileString& name)
{
    const std::string& text = name.utf8();
    for (std::size_t at = text.find_first_of(separators); at != std::string::npos;
         at = text.find_first_of(separators, at + 1))
        if (FileUtils::isLink(folder / fileString(text.substr(0, at))))
            return true;
    return false;
}

bool logoIsBehindLink(const fileString& folder, const fileString& name)
{
    return detail::logoFoldersHoldLink(folder, name) || FileUtils::isLink(folder / name);
}

}  // namespace Library
