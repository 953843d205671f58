#pragma once

#include <VelkLibrary/Search/ParseTree.h>

#include <VelkCommon/Text/StringConvert.h>

#include <string>

namespace test {

/// "<office> <chair> -<arm> ; <table>": the alternatives, each with its terms and excluded terms.
inline std::string describe(const Library::Search::ParseTree& tree)
{
    std::string text;
    for (const Library::Search::ORGroup& group : tree.groups) {
        text += text.empty() ? "" : " ; ";
        std::string terms;
        for (const std::u32string& term : group.terms)
            terms += " <" + StringConvert::toStdUtf8String(term) + ">";
        for (const std::u32string& term : group.excludedTerms)
            terms += " -<" + StringConvert::toStdUtf8String(term) + ">";
        text += terms.empty() ? "nothing" : terms.substr(1);
    }
    return text;
}

}  // namespace test
