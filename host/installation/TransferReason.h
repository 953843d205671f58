#pragma once

#include "host/support/Reason.h"

#include <VelkCommon/Files/fileString.h>

#include <string>

namespace VelkHost {

/// Why a transfer failed, for people: from the transfer's code and reason (see Curl), and from the disk that `folder`
/// is on, where there is one to be full.
Reason transferReason(unsigned int code, const std::string& reason, const fileString& folder = {});

}  // namespace VelkHost
