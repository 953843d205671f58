#include "host/catalog/Languages.h"

#include "host/support/FileError.h"

#include <VelkCommon/Text/Ascii.h>

#include <algorithm>

namespace VelkHost {
namespace {

std::string listed(const std::set<std::string>& languages)
{
    std::string text;
    for (const std::string& language : languages)
        text += (text.empty() ? "" : ", ") + language;
    return text.empty() ? "it has no translations" : "it has " + text;
}

}  // namespace

std::string normalisedLanguage(std::string_view language)
{
    std::string text(language);
    std::replace(text.begin(), text.end(), '-', '_');
    const std::size_t separator = std::min(text.find('_'), text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i < separator)
            text[i] = Velk::Ascii::lower(text[i]);
        else if (i > separator && text[i] >= 'a' && text[i] <= 'z')
            text[i] = static_cast<char>(text[i] - 'a' + 'A');
    }
    return text;
}

std::vector<std::string> languageChain(std::string_view wanted, const std::set<std::string>& available,
                                       const fileString& source)
{
    if (wanted.empty())
        return {};
    const std::string full = normalisedLanguage(wanted);
    std::vector<std::string> chain;
    for (const std::string& language : {full, full.substr(0, full.find('_'))})
        if (available.contains(language) && (chain.empty() || chain.back() != language))
            chain.push_back(language);
    if (chain.empty())
        throw FileError(source, "has no names in \"" + std::string(wanted) + "\"; " + listed(available) +
                                    " (without --language you get the library's own names)");
    return chain;
}

}  // namespace VelkHost
