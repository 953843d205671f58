#include "host/installation/SearchText.h"

#include "host/support/DisplayText.h"

#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>

namespace VelkHost {
std::string matchName(SearchPriority priority)
{
    if (priority == Invalid)
        return "Id";
    // The module has no text for this one priority.
    return priority == ItemWordBeginsWithSequence ? "ItemWordBeginsWithSequence"
                                                  : SearchPriorityUtils::to_string(priority);
}

std::vector<std::u32string> lowerTerms(const Library::Search::Info& info)
{
    std::vector<std::u32string> terms;
    for (const Library::Search::ORGroup& group : info.parseTree.groups)
        for (const std::u32string& term : group.terms)
            terms.push_back(StringUtils::toLower(term));
    return terms;
}

std::string quotedTerms(const std::vector<std::u32string>& terms)
{
    std::string text;
    for (const std::u32string& term : terms)
        text += (text.empty() ? "\"" : ", \"") + printableUtf8(StringConvert::toStdUtf8String(term)) + "\"";
    return text;
}

std::string explainText(const Library::Search::Info& info)
{
    const std::vector<Library::Search::ORGroup>& groups = info.parseTree.groups;
    if (groups.empty())
        return "Nothing to search for: there is no term that an entry must have.\n";
    std::string text = groups.size() == 1 ? "An entry is found when it matches this:\n"
                                          : "An entry is found when it matches one of these " +
                                                std::to_string(groups.size()) + " alternatives:\n";
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const std::string ordinal = std::to_string(i + 1);
        text.append("\n").append(ordinal).append(". all of:  ").append(quotedTerms(groups[i].terms)).append("\n");
        if (!groups[i].excludedTerms.empty())
            text.append(ordinal.size() + 2, ' ')
                .append("none of: ")
                .append(quotedTerms(groups[i].excludedTerms))
                .append("\n");
    }
    return text;
}

}  // namespace VelkHost
