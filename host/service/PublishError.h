#pragma once

#include <VelkCommon/Files/fileString.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace VelkHost {

/// Why something in a publisher's folder cannot be published: a sentence without its subject, the path.
struct PublishProblem
{
    fileString path;
    std::string reason;
};

/// A folder that cannot be published, with everything that is wrong with it.
class PublishError : public std::runtime_error
{
public:
    explicit PublishError(std::vector<PublishProblem> problems)
        : std::runtime_error("the folder cannot be published"), problems_(std::move(problems))
    {}

    /// In the order of the folder; at least one.
    const std::vector<PublishProblem>& problems() const noexcept { return problems_; }

private:
    std::vector<PublishProblem> problems_;
};

}  // namespace VelkHost
