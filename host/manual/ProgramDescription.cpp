#include "host/manual/ProgramDescription.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <map>
#include <stdexcept>

namespace VelkHost {
namespace {

ValueKind kindOf(const std::string& value)
{
    static const std::map<std::string, ValueKind> kinds = {
        {"CERT KEY", ValueKind::File}, {"CODE", ValueKind::Text},      {"DEST", ValueKind::File},
        {"DIR", ValueKind::Folder},    {"FILE", ValueKind::File},      {"FOLDER", ValueKind::Folder},
        {"FORMAT", ValueKind::Text},   {"ID", ValueKind::Text},        {"IP", ValueKind::Text},
        {"KIND", ValueKind::Text},     {"KINDS", ValueKind::Text},     {"N", ValueKind::Text},
        {"NAME", ValueKind::Text},     {"NUMBER", ValueKind::Text},    {"P", ValueKind::Text},
        {"PATH", ValueKind::File},     {"SITE", ValueKind::Folder},    {"SOURCE", ValueKind::File},
        {"TEXT", ValueKind::Text},     {"URL", ValueKind::Text},       {"V", ValueKind::Text},
        {"WORD", ValueKind::Text},     {"WORKDIR", ValueKind::Folder}, {"WxDxH", ValueKind::Text},
        {"YES|NO", ValueKind::Text},
    };
    const auto known = kinds.find(value);
    if (known == kinds.end())
        throw std::logic_error("what is a \"" + value + "\"? Its kind is missing in " __FILE__);
    return known->second;
}

std::string oneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

bool isLetterOrDigit(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
}

/// "calib" for "A .calib file": words that begin with a dot.
std::vector<std::string> extensionsIn(const std::string& text)
{
    std::vector<std::string> extensions;
    for (std::size_t dot = text.find('.'); dot != std::string::npos; dot = text.find('.', dot + 1)) {
        const auto begin = text.begin() + static_cast<std::ptrdiff_t>(dot) + 1;
        const auto end = std::find_if_not(begin, text.end(), isLetterOrDigit);
        if (begin != end && (dot == 0 || text[dot - 1] == ' ' || text[dot - 1] == '('))
            extensions.emplace_back(begin, end);
    }
    return extensions;
}

/// "table" and "json" in "FORMAT:{table,json}".
std::vector<std::string> choicesIn(const std::string& typeName)
{
    std::vector<std::string> choices;
    const std::size_t begin = typeName.find(":{");
    const std::size_t end = typeName.find('}');
    if (begin == std::string::npos || end == std::string::npos)
        return choices;
    std::size_t word = begin + 2;
    while (word < end) {
        const std::size_t comma = std::min(typeName.find(',', word), end);
        choices.push_back(typeName.substr(word, comma - word));
        word = comma + 1;
    }
    return choices;
}

std::vector<std::string> namesOf(const CLI::Option& option)
{
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    return names;
}

ArgumentDescription describe(const CLI::Option& option, const std::vector<std::string>& usualExtensions)
{
    ArgumentDescription argument;
    argument.names = namesOf(option);
    argument.help = oneLine(option.get_description());
    argument.required = option.get_required();
    argument.values = argument.names.empty() ? 0 : option.get_items_expected_min();
    argument.repeated = option.get_items_expected_max() > option.get_items_expected_min() && option.get_type_size() > 0;
    if (!argument.names.empty() && argument.values == 0)
        return argument;
    const std::string typeName = option.get_type_name();
    argument.value = argument.names.empty() ? option.get_name(true) : typeName.substr(0, typeName.find(':'));
    argument.choices = choicesIn(typeName);
    argument.kind = kindOf(argument.value);
    if (argument.kind == ValueKind::File) {
        argument.extensions = extensionsIn(argument.help);
        if (argument.extensions.empty())
            argument.extensions = usualExtensions;
    }
    return argument;
}

/// `extensions` are those that the summary of the command around this one names.
CommandDescription describe(const CLI::App& app, std::vector<std::string> extensions)
{
    CommandDescription command;
    command.name = app.get_name();
    command.summary = oneLine(app.get_description());
    command.notes = app.get_footer();
    if (std::vector<std::string> named = extensionsIn(command.summary); !named.empty())
        extensions = std::move(named);
    for (const CLI::Option* const option : app.get_options()) {
        ArgumentDescription argument = describe(*option, extensions);
        (argument.names.empty() ? command.places : command.options).push_back(std::move(argument));
    }
    for (const CLI::App* const part : app.get_subcommands({}))
        command.commands.push_back(describe(*part, extensions));
    return command;
}

}  // namespace

CommandDescription describe(const CLI::App& app)
{
    return describe(app, {});
}

}  // namespace VelkHost
