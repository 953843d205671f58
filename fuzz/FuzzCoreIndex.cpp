// Reads any bytes as a core content index, and as the header of an answer. Whatever they are, each name that is
// taken stays in its folder, and each tag fits into a line of the hash file.
#include <VelkLibrary/CatalogDownloadProtocol.h>
#include <VelkLibrary/Data/PlainFileName.h>
#include <VelkLibrary/Update/detail/CatalogTexts.h>

#include "Check.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace LibraryCatalogUpdate;
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const fileString& name : detail::parseCoreIndex(text)) {
        fuzz::check(Library::isPlainFileName(name.utf8()), "the name is plain");
        fuzz::check(isSupportedCatalogFile(name), "the file is of a kind that updates know");
    }
    CatalogRecord record;
    applyHeaderResponse(record, text, 200);
    fuzz::check(!Library::holdsControlCharacter(record.remoteHash), "the tag fits into a line");
    return 0;
}
