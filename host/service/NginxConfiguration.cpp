#include "host/service/NginxConfiguration.h"

#include "host/service/PublishedName.h"
#include "host/service/SiteAnswer.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileState.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Text/Ascii.h>

#include <algorithm>
#include <filesystem>
#include <functional>

namespace VelkHost {
namespace {

/// A text in quotes. In most places nginx has no escape for "$", so a variable stands for it.
std::string inQuotes(std::string_view text)
{
    std::string result = "\"";
    for (const char character : text) {
        if (character == '$')
            result += "${velk_dollar}";
        else if (character == '\n')
            result += "\\n";
        else if (character == '"' || character == '\\')
            result.append({'\\', character});
        else
            result += character;
    }
    return result + "\"";
}

/// A name as the left side of a map. A leading "~" would begin a regular expression; "$" stands for itself.
std::string mapKey(const std::string& wire)
{
    const std::string key = lookupKey(wire);
    return key.starts_with('~') ? "\"\\" + key + "\"" : "\"" + key + "\"";
}

using Rows = std::vector<std::pair<std::string, std::string>>;

std::string map(const std::string& source, const std::string& variable, const Rows& rows)
{
    std::string text = "map " + source + " " + variable + " {\n    default \"\";\n";
    for (const auto& [key, value] : rows)
        text.append("    ").append(key).append(" ").append(value).append(";\n");
    return text + "}\n";
}

/// A map's rows from a table of files: "file tag" in one value, so that both always belong together.
Rows fileRows(const std::map<std::string, SiteFile>& files, const std::function<std::string(const std::string&)>& wire)
{
    Rows rows;
    for (const auto& [name, file] : files)
        rows.emplace_back(mapKey(wire(name)), inQuotes(file.stored + " " + file.tag));
    return rows;
}

/// Room for the largest key and for all of them.
std::string hashSizes(const SiteTable& table)
{
    std::size_t longest = 0;
    for (const auto& [name, file] : table.libraries)
        longest = std::max(longest, libraryOnTheWire(name).size());
    for (const auto& [name, message] : table.withdrawn)
        longest = std::max(longest, libraryOnTheWire(name).size());
    for (const auto& [name, file] : table.logos)
        longest = std::max(longest, logoOnTheWire(name).size());
    constexpr std::size_t cacheLine = 64;
    constexpr std::size_t fewest = 2'048;
    const std::size_t rows = table.libraries.size() + table.withdrawn.size() + table.logos.size();
    return "map_hash_bucket_size " + std::to_string((longest + 3 * cacheLine) / cacheLine * cacheLine) +
           ";\nmap_hash_max_size " + std::to_string(std::max(fewest, 2 * rows)) + ";\n";
}

std::string maps(const SiteTable& table)
{
    const std::string manufacturers =
        table.manufacturers ? table.manufacturers->stored + " " + table.manufacturers->tag : std::string();
    Rows withdrawn;
    for (const auto& [name, message] : table.withdrawn)
        withdrawn.emplace_back(mapKey(libraryOnTheWire(name)), inQuotes(message + "\n"));
    std::string text = "# Edition " + std::to_string(table.edition) + ", made by velk publish. For the http block.\n";
    text += hashSizes(table);
    text += "geo $velk_dollar { default \"$\"; }\n";
    text += "\n# What is asked for: names as they stand in the query, letter case aside.\n";
    text += map("$arg_library", "$velk_library", fileRows(table.libraries, libraryOnTheWire));
    text += map("$arg_library", "$velk_withdrawn", withdrawn);
    text += map("$args", "$velk_logo_name", {{"\"~*(?:^|&)logo-path=(?<velk_logo_path>[^&]*)\"", "$velk_logo_path"}});
    text += map("$velk_logo_name", "$velk_logo", fileRows(table.logos, logoOnTheWire));
    text += map("$uri", "$velk_entry",
                {{inQuotes(paths::catalog), "$velk_library"},
                 {inQuotes(paths::logo), "$velk_logo"},
                 {inQuotes(paths::manufacturers), inQuotes(manufacturers)}});
    text += "\n# Its file and its entity tag, and whether the client has just that.\n";
    text += map("$velk_entry", "$velk_file", {{"\"~^(?<velk_stored>[^ ]+) \"", "$velk_stored"}});
    text += map("$velk_entry", "$velk_tag", {{"\"~ (?<velk_hash>.+)$\"", "$velk_hash"}});
    text += map("\"$http_if_none_match $velk_tag\"", "$velk_fresh",
                {{"\"~^[ \\t]*\\*[ \\t]* \"", "1"},
                 {"\"~(?:^|,)[ \\t]*(?:W/)?\\\"([0-9a-f]{40})\\\"[ \\t]*(?:,.*)? \\1$\"", "1"}});
    return text;
}

std::string reply(int status, std::string_view text)
{
    return "return " + std::to_string(status) + " " + inQuotes(text) + ";";
}

/// The location of one of the three paths that serve files.
std::string fileLocation(std::string_view path, const std::string& withoutFile)
{
    std::string text = "location = " + std::string(path) + " {\n    root $velk_site;\n    types {\n";
    for (const auto& [extension, type] : contentTypes)
        if (type.find(';') == std::string_view::npos)
            text += "        " + std::string(type) + " " + std::string(extension) + ";\n";
    text += "    }\n    default_type \"" + std::string(textType) + "\";\n";
    text +=
        "    sendfile on;\n    gzip off;\n    etag off;\n    if_modified_since off;\n    max_ranges 1;\n    "
        "log_not_found on;\n";
    text +=
        "    add_header ETag $velk_quoted_tag;\n    add_header Cache-Control " + inQuotes(cacheControl) + " always;\n";
    text += "    add_header Last-Modified \"\";\n\n";
    text += "    if ($request_method !~ ^(?:GET|HEAD)$) { " + reply(405, messages::wrongMethod) + " }\n";
    text += withoutFile;
    text += "    if ($velk_fresh) { return 304; }\n";
    return text + "    rewrite ^ /files/$velk_file break;\n}\n";
}

std::string locations(const std::string& site)
{
    std::string text = "# Made by velk publish, the same for every edition of this site. For a server block.\n";
    text += "client_max_body_size 64k;\nserver_tokens off;\nabsolute_redirect off;\n";
    text += "set $velk_site " + inQuotes(site) + ";\n";
    text += "set $velk_quoted_tag \"\";\n";
    text += "if ($velk_entry) { set $velk_quoted_tag \"\\\"$velk_tag\\\"\"; }\n";
    text += "add_header Cache-Control " + inQuotes(cacheControl) + " always;\n\n";
    const std::string plain = "    default_type \"" + std::string(textType) +
                              "\";\n    if ($request_method !~ ^(?:GET|HEAD)$) { " + reply(405, messages::wrongMethod) +
                              " }\n";
    text += "location = " + std::string(paths::service) + " {\n" + plain + "    return 302 " +
            inQuotes(paths::endpoint) + ";\n}\n";
    text += fileLocation(paths::catalog, "    if ($arg_library = \"\") { " + reply(200, messages::endpoint) + " }\n" +
                                             "    if ($velk_withdrawn) { return 403 $velk_withdrawn; }\n" +
                                             "    if ($velk_entry = \"\") { " + reply(404, messages::unknownLibrary) +
                                             " }\n");
    text += fileLocation(paths::manufacturers,
                         "    if ($velk_entry = \"\") { " + reply(404, messages::noManufacturers) + " }\n");
    text += fileLocation(paths::logo, "    if ($velk_entry = \"\") { " + reply(404, messages::unknownLogo) + " }\n");
    return text + "location / {\n" + plain + "    " + reply(404, messages::unknownPath) + "\n}\n";
}

/// A relative path would depend on the folder that nginx is started in.
std::string absolute(const fileString& site)
{
    // Its configuration has "/" on every system. This is about text; the disk is not looked at.
    const std::string path = Velk::absolutePath(site).utf8();
    const std::u8string normal =
        std::filesystem::path(std::u8string(path.begin(), path.end())).lexically_normal().generic_u8string();
    std::string result(normal.begin(), normal.end());
    if (std::any_of(result.begin(), result.end(), Velk::Ascii::isControl<char>))
        throw FileError(site, "has a path that cannot stand in a configuration");
    return result;
}

}  // namespace

NginxConfiguration nginxConfiguration(const fileString& site)
{
    const std::string name = currentTable(site);
    if (name.empty())
        throw FileError(site, "is not a published site");
    return {maps(readTable(site, name)), locations(absolute(site))};
}

void writeNginxConfiguration(const fileString& site, const fileString& folder)
{
    const NginxConfiguration configuration = nginxConfiguration(site);
    makeFolder(folder);
    WorkFolder::removeLeftovers(folder);
    writeWhole(folder / U"velk-maps.conf", configuration.maps);
    writeWhole(folder / U"velk-locations.conf", configuration.locations);
}

}  // namespace VelkHost
