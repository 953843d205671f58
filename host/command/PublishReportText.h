#pragma once

#include "host/service/Publisher.h"

#include <string>

namespace VelkHost {

/// What a publication did, for people: a line per library and one with the sum. UTF-8, safe for terminals.
std::string publishReportText(const PublishReport& report, const fileString& site);

}  // namespace VelkHost
