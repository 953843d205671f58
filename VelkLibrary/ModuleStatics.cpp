#include <VelkLibrary/detail/ModuleStatics.h>

#include <VelkCommon/Text/xl8.h>

namespace Library::detail {

// Set up from top to bottom, destroyed from bottom to top: the error log's mutex comes first, because what is
// destroyed after it cannot log any more.
std::mutex errorLogMutex;
const std::u32string catalogHashFileName = xl8(U"catalog_hash.txt");
std::mutex catalogUpdateMutex;
const std::u32string defaultMarker = U"default";
std::mutex manufacturerManagerMutex;
const std::u32string manufacturerDataFileName = xl8(U"manufacturer_data.json");
const std::u32string manufacturerDataTemporaryFileName = xl8(U"manufacturer_data_temp.json");
std::mutex chooserMutex;

}  // namespace Library::detail
