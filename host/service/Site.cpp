#include "host/service/Site.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/QtText.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Text/Hexadecimal.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <new>
#include <optional>
#include <tuple>

namespace VelkHost {
namespace {

constexpr std::size_t digestDigits = 40;
constexpr std::size_t extensionLetters = 10;
constexpr std::size_t switchBytes = 200;
constexpr std::size_t tableBytes = std::size_t{256} << 20;

QJsonObject toJson(const SiteFile& file)
{
    return {{QStringLiteral("file"), qtText(file.stored)},
            {QStringLiteral("tag"), qtText(file.tag)},
            {QStringLiteral("size"), static_cast<double>(file.size)}};
}

QJsonObject toJson(const std::map<std::string, SiteFile>& files)
{
    QJsonObject object;
    for (const auto& [name, file] : files)
        object.insert(qtText(name), toJson(file));
    return object;
}

QJsonObject toJson(const std::map<std::string, std::string>& texts)
{
    QJsonObject object;
    for (const auto& [name, text] : texts)
        object.insert(qtText(name), qtText(text));
    return object;
}

bool isDigest(std::string_view text)
{
    return text.size() == digestDigits &&
           text.find_first_not_of(Velk::Hexadecimal::smallDigits) == std::string_view::npos;
}

/// Reads a table's JSON, trusting nothing.
class TableReader
{
public:
    explicit TableReader(fileString path) : path_(std::move(path)) {}

    SiteTable read() const
    {
        const std::string text = readWhole(path_, tableBytes);
        const std::optional<SiteTable> table = parse(text);
        // Qt leaves out what it has no memory for, and says nothing.
        if (table != parse(text))
            throw std::bad_alloc();
        if (!table)
            fail();
        return *table;
    }

    /// Empty for a text that is no table.
    std::optional<SiteTable> parse(const std::string& text) const
    {
        try {
            return tableIn(text);
        } catch (const FileError&) {
            return std::nullopt;
        }
    }

private:
    SiteTable tableIn(const std::string& text) const
    {
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
        if (!document.isObject())
            fail();
        const QJsonObject root = document.object();
        SiteTable table;
        table.edition = number(root[QStringLiteral("edition")]);
        table.published = root[QStringLiteral("published")].toString().toStdString();
        table.previous = root[QStringLiteral("previous")].toString().toStdString();
        table.libraries = files(root[QStringLiteral("libraries")]);
        table.logos = files(root[QStringLiteral("logos")]);
        if (root.contains(QStringLiteral("manufacturers")))
            table.manufacturers = file(root[QStringLiteral("manufacturers")]);
        table.withdrawn = texts(root[QStringLiteral("withdrawn")]);
        const QJsonObject companions = root[QStringLiteral("companions")].toObject();
        for (auto entry = companions.begin(); entry != companions.end(); ++entry)
            table.companions.emplace(entry.key().toStdString(), texts(entry.value()));
        return table;
    }

    [[noreturn]] void fail() const { throw FileError(path_, "is not a table of a site, or is damaged"); }

    std::uint64_t number(const QJsonValue& value) const
    {
        constexpr double exactUpTo = 9'007'199'254'740'992;  // whole numbers that a JSON number holds
        const double number = value.toDouble(-1);
        if (!(number >= 0 && number <= exactUpTo))
            fail();
        return static_cast<std::uint64_t>(number);
    }

    SiteFile file(const QJsonValue& value) const
    {
        SiteFile file{value[QStringLiteral("file")].toString().toStdString(),
                      value[QStringLiteral("tag")].toString().toStdString(), number(value[QStringLiteral("size")])};
        if (!isStoredName(file.stored) || !isDigest(file.tag))
            fail();
        return file;
    }

    std::map<std::string, SiteFile> files(const QJsonValue& value) const
    {
        if (!value.isObject())
            fail();
        const QJsonObject object = value.toObject();
        std::map<std::string, SiteFile> files;
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            files.emplace(entry.key().toStdString(), file(entry.value()));
        return files;
    }

    static std::map<std::string, std::string> texts(const QJsonValue& value)
    {
        const QJsonObject object = value.toObject();
        std::map<std::string, std::string> texts;
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            texts.emplace(entry.key().toStdString(), entry.value().toString().toStdString());
        return texts;
    }

    fileString path_;
};

/// What a folder hides from this user must not be taken for a folder in which nothing is.
void requireReadable(const fileString& site)
{
    if (!isFolder(site))
        return;
    const Reason hidden = "cannot be read; this user needs the right to list and to search it";
    try {
        for (const FolderEntry& entry : folderEntries(site))
            if (entry.name.utf8() == "current")
                throw FileError(site, hidden);
    } catch (const FileError&) {
        throw FileError(site, hidden);
    }
}

std::string jsonText(const SiteTable& table)
{
    QJsonObject root{{QStringLiteral("edition"), static_cast<double>(table.edition)},
                     {QStringLiteral("published"), qtText(table.published)},
                     {QStringLiteral("libraries"), toJson(table.libraries)},
                     {QStringLiteral("logos"), toJson(table.logos)},
                     {QStringLiteral("withdrawn"), toJson(table.withdrawn)}};
    if (!table.previous.empty())
        root.insert(QStringLiteral("previous"), qtText(table.previous));
    if (table.manufacturers)
        root.insert(QStringLiteral("manufacturers"), toJson(*table.manufacturers));
    QJsonObject companions;
    for (const auto& [name, digests] : table.companions)
        companions.insert(qtText(name), toJson(digests));
    root.insert(QStringLiteral("companions"), companions);
    return QJsonDocument(root).toJson(QJsonDocument::Indented).toStdString();
}

}  // namespace

bool SiteTable::sameContent(const SiteTable& other) const
{
    return std::tie(libraries, logos, manufacturers, withdrawn) ==
           std::tie(other.libraries, other.logos, other.manufacturers, other.withdrawn);
}

fileString storedFile(const fileString& site, const std::string& name)
{
    return site / U"files" / fileString(name);
}

bool isStoredName(std::string_view name)
{
    if (name.size() < digestDigits + 2 || name.size() > digestDigits + 1 + extensionLetters)
        return false;
    const std::string_view extension = name.substr(digestDigits + 1);
    return isDigest(name.substr(0, digestDigits)) && name[digestDigits] == '.' &&
           std::all_of(extension.begin(), extension.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

std::string currentTable(const fileString& site)
{
    const fileString path = site / U"current";
    if (!path.pathExists()) {
        requireReadable(site);
        return {};
    }
    std::string name = readWhole(path, switchBytes);
    while (!name.empty() && (name.back() == '\n' || name.back() == '\r'))
        name.pop_back();
    if (!isStoredName(name))
        throw FileError(path, "does not name a table; publish into a fresh folder");
    return name;
}

SiteTable readTable(const fileString& site, const std::string& name)
{
    return TableReader(storedFile(site, name)).read();
}

std::string tableText(const SiteTable& table)
{
    std::string text = jsonText(table);
    if (text != jsonText(table))  // Qt has left out what it had no memory for
        throw std::bad_alloc();
    return text;
}

}  // namespace VelkHost
