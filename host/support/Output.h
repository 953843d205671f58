#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace VelkHost {

/// Where a command's words go: results to standard output, what went wrong to standard error. Once the
/// reader of standard output is gone, further results are dropped in silence.
class Output
{
public:
    /// Finds out what standard output is. Styles are used on a terminal, unless the environment has a
    /// NO_COLOR that is not empty, or a TERM of "dumb".
    Output();

    /// Writes UTF-8 text as it is; text of libraries passes through printable() first.
    void write(std::string_view text);
    /// Writes "velk: " and the text, made printable, as one line to standard error; below it `advice`, which
    /// is the program's own text and is written unchanged.
    void error(std::string_view text, std::string_view advice = {}) const;

    bool styles() const noexcept { return styles_; }
    /// The width to fit tables into; 0, which is no limit, when standard output is not a terminal.
    std::size_t columns() const noexcept { return columns_; }
    /// Something could not be written, though there is a reader.
    bool failed() const noexcept { return failed_; }

private:
    bool styles_ = false;
    std::size_t columns_ = 0;
    bool readerGone_ = false;
    bool failed_ = false;
};

}  // namespace VelkHost
