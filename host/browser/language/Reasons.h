#pragma once

#include "host/support/Reason.h"

#include <QString>

#include <exception>

namespace VelkHost {

/// A reason in the window's language; parts that have no translation stay as they are. Any thread.
QString translated(const Reason& reason);

/// Why an operation threw, as translated(); with the path of a FileError or the address of a ServiceError in front.
QString failureText(const std::exception& error);

/// Why an operation failed for want of memory, as translated().
QString tooLittleMemory();

}  // namespace VelkHost
