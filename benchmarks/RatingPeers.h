#pragma once

#include <VelkLibrary/Search/Info.h>
#include <VelkLibrary/SearchPriority.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// A way to rate, built for one search.
class Rater
{
public:
    virtual ~Rater() = default;
    virtual SearchPriority item(const std::string& name, const std::string& keywords) = 0;
    virtual SearchPriority folder(const std::string& name) = 0;
};

struct Peer
{
    std::string name;
    std::function<std::unique_ptr<Rater>(const Library::Search::Info&)> make;
    bool rates = true;  ///< false if it does less than a rating, so that its results mean nothing
};

/// In this order: the module's own categorizer; std::regex, PCRE2 with JIT, RE2 and Boost.Regex with five patterns per
/// term; Hyperscan for the literals, with borders tested by hand; and the floor, which lower-cases and looks for each
/// term once. All use the module's lower-casing.
std::vector<Peer> peers();

}  // namespace bench
