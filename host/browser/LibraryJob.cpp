#include "host/browser/LibraryJob.h"

namespace VelkHost {

LibraryJob::~LibraryJob() = default;

}  // namespace VelkHost
