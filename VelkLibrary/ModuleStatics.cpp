#include <VelkLibrary/detail/ModuleStatics.h>

namespace Library::detail {

// Set up from top to bottom, destroyed from bottom to top: the error log comes first, because whatever
// is destroyed after it could not log any more.
std::mutex errorLogMutex;

}  // namespace Library::detail
