#include <VelkLibrary/Manufacturer/LogoName.h>

#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/ErrorLog.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <algorithm>
#include <array>

bool Library::isSafeLogoName(const fileString& name)
{
    const std::array<fileString, 5> ownFiles{
        detail::manufacturerDataFileName, detail::manufacturerDataTemporaryFileName, detail::catalogHashFileName,
        std::u32string(detail::filterFileName), ErrorLog::file().stemWithExtension()};
    const auto lowered = StringUtils::toLowerUtf8(name.utf8());
    const auto isName = [&](const fileString& own) { return StringUtils::toLowerUtf8(own.utf8()) == lowered; };
    return isPlainFileName(name.utf8()) && std::none_of(ownFiles.begin(), ownFiles.end(), isName);
}
