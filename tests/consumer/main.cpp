// What an embedding application does first: supply the host's side, parse what the user typed, rate.

#include <VelkCommon/HostServices.h>
#include <VelkLibrary/LibraryResultCategorizer.h>
#include <VelkLibrary/Search/Info.h>

#include <iostream>

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
    return found == ItemContainsWord && excluded == Invalid ? 0 : 1;
}
