#pragma once

#include "host/support/ExitCode.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

namespace VelkHost {

class Output;

/// Why a command on filters or manufacturers did nothing, and what to do about it.
class DataError : public std::runtime_error
{
public:
    explicit DataError(const std::string& reason, std::string advice = {})
        : std::runtime_error(reason), advice_(std::move(advice))
    {}

    /// Lines of our own; may be empty.
    const std::string& advice() const noexcept { return advice_; }

private:
    std::string advice_;
};

/// Does the work of a command on filters or manufacturers and returns its exit code. Tells what a DataError
/// or a CatalogError says, and returns DataFailed then. Other exceptions pass through.
ExitCode runOnData(Output& output, const std::function<ExitCode()>& work);

}  // namespace VelkHost
