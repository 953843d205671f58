#include "host/browser/jobs/LibraryJob.h"

#include <utility>

namespace VelkHost {

LibraryJob::~LibraryJob() = default;

void LibraryJob::post(std::function<void()> call)
{
    QMetaObject::invokeMethod(this, std::move(call), Qt::QueuedConnection);
}

}  // namespace VelkHost
