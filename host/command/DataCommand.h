#pragma once

#include "host/command/CommandLine.h"
#include "host/command/CommonOptions.h"
#include "host/command/DataWork.h"
#include "host/support/ExitCode.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace VelkHost {

/// The subcommands of a command on an installation's data, such as "velk filter". `Arguments` holds what the
/// parser fills in, including a `home`.
template <typename Arguments>
class DataCommands
{
public:
    using Work = ExitCode (*)(const Arguments& arguments, Output& output);
    using Check = void (*)(const Arguments& arguments);

    /// `output` and `action` must live until the action has run.
    DataCommands(CLI::App& group, Output& output, Action& action) : group_(group), output_(output), action_(action) {}

    /// A subcommand, to which further options can be added, and the arguments that they fill in.
    struct Added
    {
        CLI::App& command;
        Arguments& arguments;
    };

    /// Adds a subcommand. It does `work` in the installation that it is given; before that, `check` may throw
    /// what is wrong with its arguments.
    Added add(const char* name, const char* description, Work work, Check check = nullptr)
    {
        CLI::App& command = *group_.add_subcommand(name, description);
        const auto arguments = std::make_shared<Arguments>();
        addHomeOption(command, arguments->home);
        command.callback([arguments, work, check, &output = output_, &action = action_] {
            if (check != nullptr)
                check(*arguments);
            action = [arguments, work, &output] {
                useHome(arguments->home);
                return static_cast<int>(runOnData(output, [&] { return work(*arguments, output); }));
            };
        });
        return {command, *arguments};
    }

private:
    CLI::App& group_;
    Output& output_;
    Action& action_;
};

}  // namespace VelkHost
