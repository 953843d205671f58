#include <VelkLibrary/Search/Info.h>

#include <VelkCommon/Text/StringConvert.h>

#include <utility>

namespace Library::Search {

Info::Info(std::set<libType> types) : libTypes(std::move(types)) {}

bool Info::empty() const
{
    return parseTree.groups.empty() && libTypes.empty() && restrictionSet1.empty() && restrictionSet2.empty() &&
           uniqueId.empty();
}

void Info::setupLegacySearch(const std::vector<std::string>& words, std::set<libType> types)
{
    uniqueId.clear();
    parseTree.groups.clear();
    parseTree.groups.emplace_back().terms = StringConvert::toUnicode(words, StringConvert::Utf8);
    libTypes = std::move(types);
    legacySearch = true;
    textSearch = true;
    expressionSearch = false;
    presetSearch = true;
}

void Info::setupUniqueIdSearch(std::string id)
{
    uniqueId = std::move(id);
    legacySearch = false;
    textSearch = false;
    expressionSearch = false;
    presetSearch = true;
    parseTree.groups.clear();
}

void copyRestrictions(Info& target, const Info& source)
{
    if (&target == &source)
        return;
    if (!source.restrictionSet1.empty())
        target.restrictionSet1 = source.restrictionSet1;
    if (!source.libTypes.empty())
        target.libTypes = source.libTypes;
    if (!source.restrictionSet2.empty())
        target.restrictionSet2 = source.restrictionSet2;
}

}  // namespace Library::Search
