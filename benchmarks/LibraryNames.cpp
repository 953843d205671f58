#include "LibraryNames.h"

#include <VelkCommon/Text/StringConvert.h>

#include <zip.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string_view>
#include <tuple>

namespace fs = std::filesystem;

namespace bench {
namespace {

std::string readFile(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// Properties are Latin-1 with "\uXXXX" for everything else.
std::string decodeProperty(std::string_view value)
{
    std::u32string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\r')
            continue;
        unsigned code = static_cast<unsigned char>(value[i]);
        if (value.substr(i, 2) == "\\u" && i + 6 <= value.size()) {
            std::from_chars(value.data() + i + 2, value.data() + i + 6, code, 16);
            i += 5;
        }
        text += static_cast<char32_t>(code);
    }
    return StringConvert::toStdUtf8String(text);
}

void readProperties(std::string_view text, std::vector<Entry>& entries)
{
    std::map<std::string, std::map<std::string, std::string>> byNumber;
    for (const std::string_view line : linesOf(text)) {
        const std::size_t hash = line.find('#');
        const std::size_t equals = line.find('=');
        if (hash == 0 || hash == std::string_view::npos || equals == std::string_view::npos || hash > equals)
            continue;
        const std::string number(line.substr(hash + 1, equals - hash - 1));
        byNumber[number][std::string(line.substr(0, hash))] = decodeProperty(line.substr(equals + 1));
    }
    for (auto& [number, values] : byNumber) {
        const std::string& tags = values["tags"];
        if (!values["name"].empty())
            entries.push_back({values["name"], tags.empty() ? values["category"] : tags + "," + values["category"],
                               values["creator"]});
    }
}

void readFurniture(const fs::path& path, std::vector<Entry>& entries)
{
    zip_t* const archive = zip_open(path.c_str(), ZIP_RDONLY, nullptr);
    if (archive == nullptr)
        return;
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t stat;
        if (zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &stat) != 0)
            continue;
        const std::string_view name(stat.name);
        if (!name.starts_with("PluginFurnitureCatalog") || !name.ends_with(".properties"))
            continue;
        std::string text(stat.size, '\0');
        zip_file_t* const file = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
        if (file != nullptr && zip_fread(file, text.data(), text.size()) == static_cast<zip_int64_t>(text.size()))
            readProperties(text, entries);
        if (file != nullptr)
            zip_fclose(file);
    }
    zip_discard(archive);
}

// The text in the second pair of quotes of a property's line, the first of a symbol's.
std::string quoted(std::string_view line, int which)
{
    std::size_t begin = 0;
    for (int i = 0; i < 2 * which + 1; ++i)
        begin = line.find('"', begin) + 1;
    return std::string(line.substr(begin, line.find('"', begin) - begin));
}

void readSymbols(const fs::path& path, std::vector<Entry>& entries)
{
    const std::string text = readFile(path);
    for (const std::string_view line : linesOf(text)) {
        if (line.starts_with("  (symbol \""))
            entries.push_back({quoted(line, 0), ""});
        else if (line.starts_with("    (property \"ki_keywords\"") ||
                 line.starts_with("    (property \"ki_description\""))
            entries.back().keywords += (entries.back().keywords.empty() ? "" : ", ") + quoted(line, 1);
    }
}

std::vector<fs::path> filesIn(const std::vector<std::string>& folders)
{
    std::vector<fs::path> files;
    for (const std::string& folder : folders) {
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(folder, ignored))
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> wordsOf(const std::string& text)
{
    std::vector<std::string> words(1);
    for (const char byte : text) {
        if (byte != ' ' && byte != ',')
            words.back() += byte;
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty())
        words.pop_back();
    return words;
}

}  // namespace

std::vector<Entry> readLibraries(const std::vector<std::string>& folders)
{
    static const std::vector<std::string> systemFolders = {"/usr/share/sweethome3d/furniture",
                                                           "/usr/share/kicad/symbols"};
    std::vector<Entry> all;
    for (const fs::path& file : filesIn(folders.empty() ? systemFolders : folders)) {
        if (file.extension() == ".sh3f")
            readFurniture(file, all);
        else if (file.extension() == ".kicad_sym")
            readSymbols(file, all);
    }
    std::set<std::pair<std::string, std::string>> known;
    std::vector<Entry> distinct;
    for (Entry& entry : all) {
        if (known.emplace(entry.name, entry.keywords).second)
            distinct.push_back(std::move(entry));
    }
    return distinct;
}

std::vector<Entry> combined(const std::vector<Entry>& entries, std::size_t count)
{
    std::mt19937 random(1);
    const auto any = [&]() -> const Entry& { return entries[random() % entries.size()]; };
    std::vector<Entry> result;
    result.reserve(count);
    while (result.size() < count) {
        const std::vector<std::string> words = wordsOf(any().name);
        const std::string& last = any().name;
        result.push_back({words.empty() ? last : words.front() + " " + last, any().keywords});
    }
    return result;
}

std::vector<Entry> sample(const std::vector<Entry>& entries, std::size_t count)
{
    std::vector<Entry> result;
    for (std::size_t i = 0; i < count && !entries.empty(); ++i)
        result.push_back(entries[i * entries.size() / count]);
    return result;
}

}  // namespace bench
