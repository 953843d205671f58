#include "host/browser/jobs/LibraryJob.h"

namespace VelkHost {

LibraryJob::~LibraryJob() = default;

}  // namespace VelkHost
