#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VelkHost {

/// A body that is read while it is sent. It is destroyed when all is sent, or the connection has ended.
class BodySource
{
public:
    BodySource() = default;
    virtual ~BodySource() = default;
    BodySource(const BodySource&) = delete;
    BodySource& operator=(const BodySource&) = delete;

    /// The next bytes, at most `most`; empty when they cannot be read, which ends the connection.
    virtual std::string next(std::size_t most) = 0;
};

struct HttpAnswer
{
    int status = 200;
    std::vector<std::pair<std::string, std::string>> fields;  ///< beside those about length and connection
    std::string text;                                         ///< the body, unless there is a source
    std::unique_ptr<BodySource> source;                       ///< gives `length` bytes
    std::uint64_t length = 0;
};

}  // namespace VelkHost
