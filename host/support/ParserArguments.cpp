#include "host/support/ParserArguments.h"

#include <algorithm>
#include <iterator>

namespace VelkHost {
namespace {

constexpr char disguise = '\x01';

std::string disguised(const std::string& argument)
{
    const bool needed = argument.starts_with('[') || argument.starts_with('%') || argument.starts_with(disguise);
    return needed ? disguise + argument : argument;
}

}  // namespace

std::vector<std::string> toParser(const std::vector<std::string>& arguments)
{
    std::vector<std::string> reversed;
    std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(reversed), disguised);
    return reversed;
}

std::string fromParser(const std::string& argument)
{
    return argument.starts_with(disguise) ? argument.substr(1) : argument;
}

}  // namespace VelkHost
