#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace VelkHost {

/// What stands in the place of an argument's value.
enum class ValueKind {
    None,    ///< nothing: the argument is a flag
    File,    ///< a file that may be there already
    Folder,  ///< a folder
    Text     ///< anything else
};

/// An option, a flag, or an argument that is known by its place.
struct ArgumentDescription
{
    std::vector<std::string> names;       ///< as they are typed, "-l" and "--library"; empty when the place counts
    std::string value;                    ///< what the help calls the value; empty for a flag
    std::string help;                     ///< a line
    std::vector<std::string> choices;     ///< all values that there are; empty when there are too many
    std::vector<std::string> extensions;  ///< of the files to offer, without the dot; empty for all files
    ValueKind kind = ValueKind::None;
    int values = 0;         ///< how many words follow the name
    bool required = false;  ///< the command does nothing without it
    bool repeated = false;  ///< there may be several
};

/// A program, or one of its commands.
struct CommandDescription
{
    std::string name;     ///< a word
    std::string summary;  ///< what it does, in a line
    std::string notes;    ///< examples and whatever else is told, in paragraphs; lines of examples are indented
    std::vector<ArgumentDescription> options;
    std::vector<ArgumentDescription> places;
    std::vector<CommandDescription> commands;
};

/// What a parser understands and says about it. The kind of a value is seen from what the help calls it; one that is
/// called by an unknown word is a std::logic_error, so that a new word is not forgotten. The extensions of a file are
/// those that the help of the argument names, or else the summary of its command or of the command around it.
CommandDescription describe(const CLI::App& app);

}  // namespace VelkHost
