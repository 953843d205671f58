#pragma once

#include "host/support/Reason.h"

#include <QString>

#include <exception>

namespace VelkHost {

/// A reason in the window's language, as far as it is known there; the rest as it is. Any thread.
QString translated(const Reason& reason);

/// Why an operation threw, as translated(); with the path of a FileError or the address of a ServiceError in front.
QString failureText(const std::exception& error);

}  // namespace VelkHost
