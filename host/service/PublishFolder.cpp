#include "host/service/PublishFolder.h"

#include "host/catalog/CatalogFile.h"
#include "host/service/ManufacturerData.h"
#include "host/service/PackedCatalog.h"
#include "host/service/PublishedName.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Text/Ascii.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Data/FileExtensions.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string_view>

namespace VelkHost {
namespace {

constexpr std::size_t withdrawnBytes = std::size_t{16} << 20;
constexpr std::size_t messageBytes = 1'000;
constexpr std::string_view topNames[] = {
    "core", "referenced", "bonus", "manufacturer", "logos", "manufacturer_data.json", "withdrawn.txt"};

/// One of the folders with libraries.
struct Room
{
    const char32_t* folder;
    const char* extension;
    bool packed;         ///< asked for by the stem with ".calibz"
    const char* advice;  ///< for a file with another extension
};

constexpr Room rooms[] = {
    {U"core", Library::extensions::database, false, "this folder is for catalog files (.calib)"},
    {U"referenced", Library::extensions::referencedFiles, false,
     "this folder is for archives of referenced files (.zip)"},
    {U"bonus", Library::extensions::packed, true,
     "this folder is for packed libraries (.calibz); see \"velk catalog pack\""},
    {U"manufacturer", Library::extensions::packed, true,
     "this folder is for packed libraries (.calibz); see \"velk catalog pack\""},
};

bool isText(const std::string& text)
{
    return StringConvert::isUtf8(text) && std::none_of(text.begin(), text.end(), Velk::Ascii::isControl<char>);
}

class FolderReader
{
public:
    explicit FolderReader(fileString folder) : folder_(std::move(folder)) {}

    PublishContent read()
    {
        if (!isFolder(folder_))
            throw PublishError({{folder_, "is not a folder"}});
        checkTop();
        for (const Room& room : rooms)
            readRoom(room);
        readLogos();
        readManufacturers();
        readWithdrawn();
        if (problems_.empty() && content_.libraries.empty() && !content_.manufacturers)
            refuse(folder_, "holds nothing to publish; it needs a folder core, bonus or manufacturer with libraries");
        if (!problems_.empty())
            throw PublishError(std::move(problems_));
        std::sort(content_.coreNames.begin(), content_.coreNames.end());
        return std::move(content_);
    }

private:
    void refuse(const fileString& path, const std::string& reason) { problems_.push_back({path, reason}); }

    /// Runs `work`, and keeps what it throws as a problem of the file.
    void attempt(const fileString& path, const std::function<void()>& work)
    {
        try {
            work();
        } catch (const FileError& error) {
            refuse(path, error.reason());
        }
    }

    std::vector<FolderEntry> entriesOf(const fileString& folder)
    {
        std::vector<FolderEntry> entries;
        if (isFolder(folder))
            attempt(folder, [&] { entries = folderEntries(folder); });
        const auto hidden = [](const FolderEntry& entry) { return entry.name.utf8().starts_with('.'); };
        entries.erase(std::remove_if(entries.begin(), entries.end(), hidden), entries.end());
        return entries;
    }

    /// A missing folder is fine.
    void requireFolder(const fileString& folder)
    {
        if (folder.pathExists() && !isFolder(folder))
            refuse(folder, "is not a folder");
    }

    void checkTop()
    {
        for (const FolderEntry& entry : entriesOf(folder_))
            if (std::find(std::begin(topNames), std::end(topNames), entry.name.utf8()) == std::end(topNames))
                refuse(folder_ / entry.name,
                       "has no meaning here; the folder has core, referenced, bonus, manufacturer, logos, "
                       "manufacturer_data.json and withdrawn.txt");
    }

    void readRoom(const Room& room)
    {
        const fileString folder = folder_ / fileString(std::u32string(room.folder));
        requireFolder(folder);
        for (const FolderEntry& entry : entriesOf(folder)) {
            const fileString path = folder / entry.name;
            if (entry.isFolder)
                refuse(path, "is a folder; libraries stand side by side");
            else if (!entry.name.hasExtension(room.extension))
                refuse(path, "has another extension; " + std::string(room.advice));
            else if (const std::string reason = whyNoLibraryName(entry.name); !reason.empty())
                refuse(path, reason);
            else if (claim(room, entry.name, path))
                attempt(path, [&] { addLibrary(room, entry.name.utf8(), path); });
        }
    }

    /// Clients keep one record per installed file name and one archive of referenced files per stem,
    /// wherever a library comes from; and a disk may ignore letter case.
    bool claim(const Room& room, const fileString& name, const fileString& path)
    {
        std::vector<std::string> installed = {room.packed ? name.stem().utf8() + Library::extensions::database
                                                          : name.utf8()};
        if (room.packed)
            installed.push_back(name.stem().utf8() + Library::extensions::referencedFiles);
        for (const std::string& file : installed) {
            const auto [other, fresh] = claimed_.emplace(caseless(file), path);
            if (!fresh) {
                refuse(path, "would be installed under the same name as \"" + shortPath(other->second) + "\" (\"" +
                                 file + "\"; letter case does not count)");
                return false;
            }
        }
        return true;
    }

    std::string shortPath(const fileString& path) const { return path.utf8().substr(folder_.utf8().size() + 1); }

    static PublishSource sourceOf(const fileString& path)
    {
        PublishSource source;
        source.path = path;
        source.contentHash = SHA1::fileContentsToSHA1Hex(path);
        if (source.contentHash.empty())
            throw FileError(path, "cannot be read");
        source.tag = source.contentHash;
        source.size = static_cast<std::uint64_t>(std::max(FileUtils::fileSize(path), 0LL));
        return source;
    }

    void addLibrary(const Room& room, const std::string& name, const fileString& path)
    {
        PublishSource source = sourceOf(path);
        if (room.packed) {
            PackedCatalog packed = inspectPackedCatalog(path);
            source.tag = std::move(packed.catalogHash);
            source.companions = std::move(packed.companions);
            source.format = packed.format;
        } else if (room.extension == std::string_view(Library::extensions::referencedFiles)) {
            checkArchive(path);
        } else {
            static_cast<void>(readCatalog(path, CatalogContent::Names));
            source.format = catalogFormat(path);
        }
        if (!room.packed)
            content_.coreNames.push_back(name);
        content_.libraries.emplace(name, std::move(source));
    }

    /// Logos may stand in folders, whose names are part of theirs.
    void readLogos()
    {
        const fileString top = folder_ / U"logos";
        requireFolder(top);
        for (std::vector<std::string> open{""}; !open.empty();) {
            const std::string below = std::move(open.back());
            open.pop_back();
            for (const FolderEntry& entry : entriesOf(top / fileString(below))) {
                const std::string name = below + entry.name.utf8();
                const fileString path = top / fileString(name);
                if (!isLogoName(name, path, entry.isFolder))
                    continue;
                if (entry.isFolder)
                    open.push_back(name + "/");
                else
                    attempt(path, [&] { content_.logos.emplace(name, sourceOf(path)); });
            }
        }
    }

    /// Whether a logo may have this name, or a folder of logos. A disk may ignore letter case, so that a folder and a
    /// logo, or two logos, would be one.
    bool isLogoName(const std::string& name, const fileString& path, bool ofFolder)
    {
        const std::u32string key = caseless(name);
        if (const std::string reason = whyNoLogoName(name); !reason.empty())
            refuse(path, reason);
        else if (ofFolder && FileUtils::isLink(path))
            refuse(path, "is a link to a folder; logos stand in real ones");
        else if (logos_.contains(key) || logoFolders_.contains(key))
            refuse(path, "differs from another logo, or a folder of logos, in letter case only");
        else
            return (ofFolder ? logoFolders_ : logos_).insert(key).second;
        return false;
    }

    void readManufacturers()
    {
        const fileString path = folder_ / U"manufacturer_data.json";
        if (!path.pathExists())
            return;
        attempt(path, [&] {
            for (const ManufacturerLogo& logo : readManufacturerLogos(path))
                checkLogo(path, logo);
            content_.manufacturers = sourceOf(path);
        });
    }

    void checkLogo(const fileString& path, const ManufacturerLogo& logo)
    {
        const std::string subject = "names the logo \"" + logo.name + "\" (" + logo.card + ")";
        if (const std::string reason = whyNoLogoName(logo.name); !reason.empty())
            refuse(path, subject + ", which " + reason);
        else if (!logos_.contains(caseless(logo.name)))
            refuse(path, subject + ", which is not in logos");
        else if (!content_.logos.contains(logo.name))
            refuse(path, subject + ", but its letter case differs in logos");
    }

    void readWithdrawn()
    {
        const fileString path = folder_ / U"withdrawn.txt";
        if (!path.pathExists())
            return;
        attempt(path, [&] {
            const std::string text = readWhole(path, withdrawnBytes);
            std::size_t number = 0;
            for (std::size_t start = 0; start < text.size();) {
                const std::size_t end = std::min(text.find('\n', start), text.size());
                std::string line = text.substr(start, end - start);
                if (line.ends_with('\r'))
                    line.pop_back();
                readWithdrawnLine(path, ++number, line);
                start = end + 1;
            }
        });
    }

    void readWithdrawnLine(const fileString& path, std::size_t number, const std::string& line)
    {
        if (line.empty())
            return;
        const std::string where = "line " + std::to_string(number) + ": ";
        const std::size_t colon = line.find(": ");
        const std::string name = line.substr(0, colon);
        const std::string message = colon == std::string::npos ? std::string() : line.substr(colon + 2);
        if (message.empty() || message.size() > messageBytes || !isText(message))
            refuse(path, where + "is not \"NAME: MESSAGE\" with a message of at most 1000 bytes of UTF-8");
        else if (const std::string reason = whyNoLibraryName(fileString(name)); !reason.empty())
            refuse(path, where + "\"" + name + "\" " + reason);
        else if (isPublished(name))
            refuse(path, where + "\"" + name + "\" is in the folder; a library is published or withdrawn");
        else if (!withdrawn_.insert(caseless(name)).second)
            refuse(path, where + "\"" + name + "\" occurs twice");
        else
            content_.withdrawn.emplace(name, message);
    }

    bool isPublished(const std::string& name) const
    {
        const auto same = [&](const auto& library) { return caseless(library.first) == caseless(name); };
        return std::any_of(content_.libraries.begin(), content_.libraries.end(), same);
    }

    fileString folder_;
    PublishContent content_;
    std::vector<PublishProblem> problems_;
    std::map<std::u32string, fileString> claimed_;
    std::set<std::u32string> logos_;
    std::set<std::u32string> logoFolders_;
    std::set<std::u32string> withdrawn_;
};

}  // namespace

PublishContent readPublishFolder(const fileString& folder)
{
    fileString path = folder;
    while (path.utf8().size() > 1 && path.utf8().ends_with('/'))
        path = fileString(path.utf8().substr(0, path.utf8().size() - 1));
    return FolderReader(path).read();
}

}  // namespace VelkHost
