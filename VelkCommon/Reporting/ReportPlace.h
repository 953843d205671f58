#pragma once

#include <cstddef>

namespace Velk {

/// Where a report comes from, as hosts get it: the name of a source and a line.
struct ReportPlace
{
    const char* source = "";  ///< who reports
    std::size_t line = 0;     ///< the line there
};

}  // namespace Velk
