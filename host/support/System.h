#pragma once

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

/// Standard output is a terminal that a person looks at.
bool outputIsTerminal();

/// The terminal's width in characters; 80 when it does not tell.
std::size_t terminalColumns();

enum class WriteResult {
    Written,
    ReaderGone,  ///< nobody reads any more, as with "| head"
    Failed       ///< for example a full disk
};

/// Writes all bytes to standard output, as they are. Any thread.
WriteResult writeToOutput(std::string_view bytes) noexcept;

/// Writes UTF-8 text to standard error, as it is; what cannot be written is lost. Any thread.
void writeToError(std::string_view text) noexcept;

/// From now on Ctrl-C does not end the program but is noticed; a second one ends it.
void watchInterrupts();
/// Ctrl-C was pressed since. Any thread.
bool interrupted() noexcept;

/// `text` in the quotes that the system's shell takes, or as it stands where it needs none.
std::string shellQuoted(const std::string& text);

/// The program as one types it in the current folder, or its name when the system does not tell. UTF-8.
std::string programPath();

/// Prepares a socket that will listen: a restarted program gets its port back at once, and no other program can
/// take it meanwhile.
void allowQuickRestart(std::intptr_t socket) noexcept;

}  // namespace VelkHost
