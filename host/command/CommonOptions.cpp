#include "host/command/CommonOptions.h"

#include "host/command/CommandLine.h"
#include "host/support/InstallHost.h"
#include "host/support/ParserArguments.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <optional>
#include <utility>

namespace VelkHost {
namespace {

/// The number that a text stands for, in decimal digits and nothing else.
std::optional<std::int64_t> wholeNumber(const std::string& text)
{
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace

void addFormatOption(CLI::App& command, std::string& format)
{
    format = "table";
    command.add_option("--format", format, "table or json")
        ->check(CLI::IsMember({"table", "json"}))
        ->type_name("FORMAT");
}

void addHomeOption(CLI::App& command, std::string& home)
{
    command.add_option("--home", home, "The installation's folder (default: VELK_HOME, or the user's)")
        ->type_name("DIR");
}

CLI::Option& addNumberOption(CLI::App& command, const std::string& name, const std::string& description,
                             std::int64_t least, std::int64_t most, std::function<void(std::int64_t)> take)
{
    // As a text: the parser reads "010" as eight, takes what is too large for the largest number, and an empty
    // text for any number at all.
    CLI::Option* const option = command.add_option_function<std::string>(
        name, [take = std::move(take)](const std::string& text) { take(wholeNumber(fromParser(text)).value()); },
        description);
    option->check([least, most](const std::string& text) {
        const std::optional<std::int64_t> number = wholeNumber(text);
        return number && *number >= least && *number <= most
                   ? std::string()
                   : "\"" + fromParser(text) + "\" is not a whole number from " + std::to_string(least) + " to " +
                         std::to_string(most);
    });
    return *option->type_name("N");
}

void addLimitOption(CLI::App& command, std::size_t& limit, const std::string& what)
{
    constexpr std::int64_t most = 1'000'000'000;
    addNumberOption(command, "--limit",
                    "Show at most this many " + what + ", 0 for all (default: " + std::to_string(limit) + ")", 0, most,
                    [&limit](std::int64_t number) { limit = static_cast<std::size_t>(number); });
}

void requireText(CLI::Option& option)
{
    option.check([](const std::string& text) { return text.empty() ? "must not be empty" : std::string(); });
}

void useHome(const std::string& home)
{
    if (!home.empty())
        installHost(fileString(fromParser(home)));
}

}  // namespace VelkHost
