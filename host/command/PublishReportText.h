#pragma once

#include "host/service/Publisher.h"

#include <string>

namespace VelkHost {

/// What a publication did, for people: a line per library and one with the sum. UTF-8, safe for terminals.
std::string publishReportText(const PublishReport& report, const fileString& site);

/// "24.6 MB", "812 KB", "17 bytes".
std::string byteText(std::uint64_t bytes);

}  // namespace VelkHost
