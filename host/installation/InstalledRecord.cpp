#include "host/installation/InstalledRecord.h"

#include "host/support/FileError.h"
#include "host/support/SystemPath.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkLibrary/Data/PlainFileName.h>

#include <charconv>
#include <fstream>
#include <vector>

namespace VelkHost {
namespace {

constexpr const char32_t* recordName = U"installed.record";
constexpr std::string_view firstLine = "velk installed libraries 1";
constexpr char separator = '\t';
constexpr std::size_t fieldsOfLine = 9;
constexpr std::string_view toldGone = "gone";
constexpr std::size_t spareLines = 1'000;  // beyond two for each library; then the file is written anew

std::string textOf(const std::optional<InstalledFile>& file)
{
    if (!file)
        return std::string(2, separator);
    return std::to_string(file->size) + separator + std::to_string(file->modified) + separator + file->sha1;
}

std::string lineOf(const InstalledRecord::Key& key, const InstalledLibrary& library)
{
    std::string line = std::to_string(key.first) + separator + key.second + separator + library.tag + separator +
                       textOf(library.database) + separator + textOf(library.referenced);
    if (library.toldGone)
        line += separator + std::string(toldGone);
    return line + separator + ".";  // the last character: a line without it was cut off
}

template <typename Number>
bool parseNumber(std::string_view text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

/// False for fields that are neither a file nor empty.
bool parseFile(const std::vector<std::string>& fields, std::size_t begin, std::optional<InstalledFile>& file)
{
    file.reset();
    if (fields[begin].empty())
        return fields[begin + 1].empty() && fields[begin + 2].empty();
    InstalledFile parsed;
    if (!parseNumber(fields[begin], parsed.size) || !parseNumber(fields[begin + 1], parsed.modified))
        return false;
    parsed.sha1 = fields[begin + 2];
    file = std::move(parsed);
    return true;
}

bool isWorthKeeping(const InstalledLibrary& library)
{
    return !library.tag.empty() || library.database || library.referenced || library.toldGone;
}

}  // namespace

std::optional<InstalledFile> stateOf(const fileString& path, const std::optional<InstalledFile>& before)
{
    const Velk::FileState found = Velk::fileState(path);
    if (found.kind != Velk::FileState::Kind::file)
        return std::nullopt;
    InstalledFile state;
    state.size = found.size;
    state.modified = found.modified;
    if (before && before->size == state.size && before->modified == state.modified)
        return before;
    state.sha1 = SHA1::fileContentsToSHA1Hex(path);
    if (state.sha1.empty())
        return std::nullopt;
    return state;
}

fileString InstalledRecord::path()
{
    return PathUtils::getObject().getUserDatabasePath() / recordName;
}

InstalledRecord::InstalledRecord()
{
    std::ifstream file(streamPath(path()), std::ios::binary);
    std::string line;
    if (!std::getline(file, line) || line != firstLine)
        return;
    for (; std::getline(file, line); ++lines_)
        take(line);
}

InstalledLibrary InstalledRecord::find(const Key& key) const
{
    const auto found = libraries_.find(key);
    return found == libraries_.end() ? InstalledLibrary() : found->second;
}

// Each line stands between line ends of its own, so that it is whole even behind one that was cut off.
void InstalledRecord::set(const Key& key, const InstalledLibrary& library)
{
    if (find(key) == library)
        return;
    if (isWorthKeeping(library))
        libraries_[key] = library;
    else
        libraries_.erase(key);
    if (lines_ == 0 || lines_ > 2 * libraries_.size() + spareLines) {
        rewrite();
        lines_ = libraries_.size();
        return;
    }
    std::ofstream file(streamPath(path()), std::ios::binary | std::ios::app);
    file << '\n' + lineOf(key, library) + '\n';
    file.close();
    if (!file)
        throw FileError(path(), "cannot be written");
    lines_ += 2;
}

void InstalledRecord::rewrite() const
{
    std::string text = std::string(firstLine) + '\n';
    for (const auto& [key, library] : libraries_)
        text += lineOf(key, library) + '\n';
    writeWhole(path(), text);
}

void InstalledRecord::take(std::string_view line)
{
    const std::vector<std::string> fields = StringUtils::tokenizeString(std::string(line), separator);
    const bool gone = fields.size() == fieldsOfLine + 2 && fields[fieldsOfLine] == toldGone;
    Key key;
    InstalledLibrary library;
    library.toldGone = gone;
    if ((!gone && fields.size() != fieldsOfLine + 1) || fields.back() != "." || !parseNumber(fields[0], key.first) ||
        !Library::isPlainFileName(fields[1]) || !parseFile(fields, 3, library.database) ||
        !parseFile(fields, 6, library.referenced))
        return;
    key.second = fields[1];
    library.tag = fields[2];
    if (isWorthKeeping(library))
        libraries_[key] = std::move(library);
    else
        libraries_.erase(key);
}

}  // namespace VelkHost
