#pragma once

#include <VelkCommon/Files/fileString.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// What a console program asks its operating system; a source file per system stands behind it.

namespace VelkHost {

/// The program's arguments without its name, as UTF-8. On Windows they come from the system, since main()
/// gets them in a code page that loses most names.
std::vector<std::string> programArguments(int argumentCount, char** arguments);

/// Prepares standard output: UTF-8 and styles on a Windows console; elsewhere a reader that goes away
/// ends the writing with a result instead of a signal. Call it once, at the start.
void prepareConsole();

/// Lets a program with windows write to the console that it was started from, if there is one: on Windows it has no
/// output of its own unless it is given one. Call it once, at the start.
void shareParentsConsole();

/// Standard output is a terminal that a person looks at.
bool outputIsTerminal();

/// The terminal's width in characters; 80 when the terminal does not tell.
std::size_t terminalColumns();

enum class WriteResult {
    Written,
    ReaderGone,  ///< nobody reads any more, as with "| head"
    Failed       ///< for example a full disk
};

/// Writes all bytes to standard output, unchanged. Any thread.
WriteResult writeToOutput(std::string_view bytes) noexcept;

/// Writes UTF-8 text to standard error, unchanged; text that cannot be written is lost. Any thread.
void writeToError(std::string_view text) noexcept;

/// From now on the first Ctrl-C is only noticed; a second one ends the program.
void watchInterrupts();
/// Whether Ctrl-C was pressed since then. Any thread.
bool interrupted() noexcept;

/// The path for libraries that open files by names in UTF-8: on Windows in a form that may be of any length.
std::string pathForLibraries(const fileString& path);

/// `text` quoted for the system's shell; unchanged where it needs no quotes.
std::string shellQuoted(const std::string& text);

/// The program's path as one would type it in the current folder; only its name when the system does not tell
/// the path. UTF-8.
std::string programPath();

/// Prepares a socket that will listen: a restarted program gets its port back at once, and no other program can
/// take it meanwhile.
void allowQuickRestart(std::intptr_t socket) noexcept;

}  // namespace VelkHost
