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
    bool rates = true;  ///< false: does less than a rating, so its results are none
};

/// The library's own categorizer; std::regex, PCRE2 with JIT, RE2 and Boost.Regex with the five
/// patterns per term; Hyperscan for the literals with borders looked at by hand; and the floor, which
/// lower-cases and looks for each term once. In this order. All use the library's lower-casing.
std::vector<Peer> peers();

}  // namespace bench
