#pragma once

#include <string>
#include <vector>

namespace VelkHost {

/// The names under which clients ask for the core index, one per edition of the product.
std::vector<std::string> coreIndexNames();

}  // namespace VelkHost
