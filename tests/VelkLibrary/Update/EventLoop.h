#pragma once

#include "support/QtThreads.h"

namespace test {

/// Makes the process's QCoreApplication, once.
void ensureApplication();

/// Delivers what is waiting on this thread.
void deliverEvents();

}  // namespace test
