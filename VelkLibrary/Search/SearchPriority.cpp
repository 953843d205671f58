#include <VelkLibrary/SearchPriority.h>

#include <algorithm>
#include <map>

bool SearchPriorityUtils::IsFolder(SearchPriority priority) noexcept
{
    constexpr unsigned folders = 1U << FolderExactName | 1U << FolderBeginsWithWord | 1U << FolderContainsWord |
                                 1U << FolderBeginsWithSequence | 1U << FolderWordBeginsWithSequence |
                                 1U << FolderContainsSequence;
    if (priority < Invalid || priority > FolderContainsSequence)
        return false;
    return (folders >> priority & 1U) != 0;
}

SearchPriority SearchPriorityUtils::higher(SearchPriority a, SearchPriority b) noexcept
{
    if (a == Invalid)
        return b;
    if (b == Invalid)
        return a;
    return std::min(a, b);
}

std::string SearchPriorityUtils::to_string(SearchPriority priority)
{
    static std::map<SearchPriority, std::string> texts;
    if (texts.empty()) {
        texts = {{Invalid, "Invalid"},
                 {ItemExactName, "ItemExactName"},
                 {FolderExactName, "FolderExactName"},
                 {ItemBeginsWithWord, "ItemBeginsWithWord"},
                 {FolderBeginsWithWord, "FolderBeginsWithWord"},
                 {ItemContainsWord, "ItemContainsWord"},
                 {FolderContainsWord, "FolderContainsWord"},
                 {ItemBeginsWithSequence, "ItemBeginsWithSequence"},
                 {FolderBeginsWithSequence, "FolderBeginsWithSequence"},
                 {KeywordsContainWord, "KeywordsContainWord"},
                 {FolderWordBeginsWithSequence, "FolderWordBeginsWithSequence"},
                 {ItemContainsSequence, "ItemContainsSequence"},
                 {FolderContainsSequence, "FolderContainsSequence"},
                 {KeywordsContainSequence, "KeywordsContainSequence"}};
    }
    return texts[priority];
}
