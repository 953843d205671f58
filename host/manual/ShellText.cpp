#include "host/manual/ShellText.h"

#include <algorithm>

namespace VelkHost {
namespace {

void collect(const CommandDescription& command, const std::string& words, std::vector<NestedCommand>& all)
{
    all.push_back({words, &command});
    for (const CommandDescription& part : command.commands)
        collect(part, joined(words, part.name), all);
}

}  // namespace

std::vector<NestedCommand> allCommands(const CommandDescription& program)
{
    std::vector<NestedCommand> all;
    collect(program, {}, all);
    return all;
}

std::string joined(const std::string& left, const std::string& right)
{
    return left.empty() || right.empty() ? left + right : left + " " + right;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text = joined(text, word);
    return text;
}

std::vector<std::string> optionNames(const CommandDescription& command)
{
    std::vector<std::string> names;
    for (const ArgumentDescription& option : command.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::vector<std::string> commandNames(const CommandDescription& command)
{
    std::vector<std::string> names;
    for (const CommandDescription& part : command.commands)
        names.push_back(part.name);
    return names;
}

std::string shellFunction(const std::string& words)
{
    std::string name = "_" + words;
    std::replace_if(
        name.begin(), name.end(), [](char character) { return character == '-' || character == ' '; }, '_');
    return name;
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace VelkHost
