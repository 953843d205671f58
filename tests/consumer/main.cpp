// What an embedding application does first: supply the host's side, parse what the user typed, rate by name and in
// bulk, as in the guide.

#include <VelkCommon/HostServices.h>
#include <VelkLibrary/LibraryResultCategorizer.h>
#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/Search/PreparedNames.h>

#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

namespace {

struct Row
{
    std::string name;
    std::string keywords;
    bool isFolder;
};

/// The example of the guide: names in a database of the host's own.
std::vector<std::uint8_t> search(const std::vector<Row>& database, const std::u32string& typedText)
{
    Library::Search::PreparedNames names;
    for (const Row& row : database)
        row.isFolder ? names.addFolder(row.name) : names.addItem(row.name, row.keywords);
    names.close();

    Library::Search::Info search({});
    search.parseTree = Library::Search::parseSearchTerms(typedText);
    std::vector<std::uint8_t> priorities(names.size());
    LibraryResultCategorizer(search).categorize(names, 0, priorities);
    return priorities;
}

}  // namespace

int main()
{
    Velk::HostServices services;
    services.folders.userDatabase = fileString(std::u32string(U"/tmp/libraries"));
    Velk::installHost(std::move(services));

    Library::Search::Info search({});
    search.parseTree = Library::Search::parseSearchTerms(U"chair -arm");
    const LibraryResultCategorizer categorizer(search);

    const SearchPriority found = categorizer.categorizeItemResult("Office Chair Black", "seating");
    const SearchPriority excluded = categorizer.categorizeItemResult("Armchair", "seating");
    std::cout << SearchPriorityUtils::to_string(found) << ", " << SearchPriorityUtils::to_string(excluded) << '\n';
    const bool inBulk = ::search({{"Chairs", "", true}, {"Stool", "chair", false}, {"Table", "", false}}, U"chair") ==
                        std::vector<std::uint8_t>{FolderBeginsWithSequence, KeywordsContainWord, Invalid};
    return found == ItemContainsWord && excluded == Invalid && inBulk ? 0 : 1;
}
