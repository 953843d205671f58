#include "host/service/Publisher.h"

#include "host/service/CoreIndex.h"
#include "host/service/Digest.h"
#include "host/service/PublishFolder.h"
#include "host/service/PublishedName.h"
#include "host/service/SiteAnswer.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/WholeFile.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Text/TimeText.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace VelkHost {
namespace {

/// ".calibz" of a library, ".png" of a logo; ".bin" for types that the service does not know.
std::string storedExtension(const fileString& path)
{
    std::string extension = lookupKey(path.extension().utf8());
    for (const auto& [known, type] : contentTypes)
        if (std::string_view(extension).substr(std::min<std::size_t>(extension.size(), 1)) == known)
            return extension;
    return ".bin";
}

class Publication
{
public:
    Publication(const fileString& folder, fileString site) : content_(readPublishFolder(folder)), site_(std::move(site))
    {
        makeFolder(site_ / U"files");
        lock_.emplace(site_ / U"publish.lock", LockingFStream::out | LockingFStream::binary);
        if (!lock_->isOpen())
            throw FileError(site_, "cannot be locked; is another process publishing to it?");
        WorkFolder::removeLeftovers(site_);
        WorkFolder::removeLeftovers(site_ / U"files");
        oldName_ = currentTable(site_);
        if (!oldName_.empty())
            old_ = readTable(site_, oldName_);
        new_.companions = old_.companions;
    }

    PublishReport run()
    {
        checkTags();
        storeAll();
        PublishReport report = compare();
        if (!oldName_.empty() && new_.sameContent(old_)) {
            report.edition = old_.edition;
            if (const std::optional<SiteTable> earlier = edition(old_.previous))
                report.left = removeUnused({oldName_, old_.previous}, {&*earlier, &old_});
            return report;
        }
        report.changed = true;
        report.edition = new_.edition = old_.edition + 1;
        new_.published = Library::getTimeNowString();
        new_.previous = oldName_;
        const std::string text = tableText(new_);
        const std::string name = digestOf(text) + ".json";
        writeWhole(storedFile(site_, name), text);
        writeWhole(site_ / U"current", name + "\n");
        report.left = removeUnused({name, oldName_}, {&old_, &new_});
        return report;
    }

private:
    /// An entity tag stands for the same content for ever.
    void checkTags()
    {
        std::vector<PublishProblem> problems;
        for (const auto& [name, source] : content_.libraries) {
            if (source.companions.empty())
                continue;
            const auto [known, fresh] = new_.companions[name].emplace(source.tag, source.companions);
            if (!fresh && known->second != source.companions)
                problems.push_back({source.path,
                                    "has other textures or files than an earlier edition, but the same catalog, so "
                                    "installations would not see the change; build and pack the catalog again"});
        }
        if (!problems.empty())
            throw PublishError(std::move(problems));
    }

    void storeAll()
    {
        for (const auto& [name, source] : content_.libraries)
            new_.libraries.emplace(name, storeLibrary(name, source));
        for (const std::string& name : coreIndexNames())
            new_.libraries.emplace(name, storeIndex());
        for (const auto& [name, source] : content_.logos)
            new_.logos.emplace(name, store(source));
        if (content_.manufacturers)
            new_.manufacturers = store(*content_.manufacturers);
        new_.withdrawn = content_.withdrawn;
    }

    /// Packing again gives other bytes for the same content; then the earlier packing stays, so that one tag
    /// never stands for two sequences of bytes in caches.
    SiteFile storeLibrary(const std::string& name, const PublishSource& source)
    {
        const auto before = old_.libraries.find(name);
        if (before != old_.libraries.end() && before->second.tag == source.tag && isWhole(before->second))
            return before->second;
        return store(source);
    }

    bool isWhole(const SiteFile& file) const
    {
        return FileUtils::fileSize(storedFile(site_, file.stored)) == static_cast<long long>(file.size);
    }

    SiteFile store(const PublishSource& source)
    {
        SiteFile file{source.contentHash + storedExtension(source.path), source.tag, source.size};
        const fileString target = storedFile(site_, file.stored);
        if (isWhole(file))
            return file;
        if (!FileUtils::copyFile(source.path, target, true))
            throw FileError(source.path, "cannot be copied to " + target.humanReadableString() + "; is the disk full?");
        if (SHA1::fileContentsToSHA1Hex(target) != source.contentHash) {
            FileUtils::removePath(target, FileUtils::overrideReadOnly);
            throw FileError(source.path, "changed while it was being published");
        }
        return file;
    }

    SiteFile storeIndex()
    {
        std::string text;
        for (const std::string& name : content_.coreNames)
            text += name + "\n";
        const std::string digest = digestOf(text);
        SiteFile file{digest + ".txt", digest, text.size()};
        if (!isWhole(file))
            writeWhole(storedFile(site_, file.stored), text);
        return file;
    }

    PublishReport compare() const
    {
        using State = PublishedLibrary::State;
        PublishReport report;
        for (const auto& [name, source] : content_.libraries) {
            const auto before = old_.libraries.find(name);
            const SiteFile& now = new_.libraries.at(name);
            const State state = before == old_.libraries.end() ? State::Added
                                : before->second == now        ? State::Unchanged
                                                               : State::Changed;
            report.libraries.push_back({name, state, now.size, source.format});
        }
        for (const auto& [name, file] : old_.libraries)
            if (!new_.libraries.contains(name))
                report.libraries.push_back({name, State::Removed, file.size, std::nullopt});
        report.logos = new_.logos.size();
        report.manufacturers = new_.manufacturers.has_value();
        return report;
    }

    /// That of a table which is not in force any more: an empty one before the first, nothing where it cannot be known.
    std::optional<SiteTable> edition(const std::string& table) const
    {
        if (old_.edition <= 1)
            return SiteTable();
        try {
            return isStoredName(table) ? std::optional(readTable(site_, table)) : std::nullopt;
        } catch (const FileError&) {
            return std::nullopt;
        }
    }

    /// Clients may still read files of the previous edition. What cannot be removed now, or was left by a publication
    /// that was killed, is removed next time. Returns how many files are left.
    std::size_t removeUnused(std::set<std::string> kept, const std::vector<const SiteTable*>& tables) const
    {
        for (const SiteTable* table : tables) {
            for (const auto& [name, file] : table->libraries)
                kept.insert(file.stored);
            for (const auto& [name, file] : table->logos)
                kept.insert(file.stored);
            if (table->manufacturers)
                kept.insert(table->manufacturers->stored);
        }
        std::size_t left = 0;
        for (const FolderEntry& entry : folderEntries(site_ / U"files"))
            if (!kept.contains(entry.name.utf8()) &&
                !FileUtils::removePath(site_ / U"files" / entry.name, FileUtils::overrideReadOnly))
                ++left;
        return left;
    }

    PublishContent content_;
    fileString site_;
    std::optional<LockingFStream> lock_;
    std::string oldName_;
    SiteTable old_;
    SiteTable new_;
};

}  // namespace

PublishReport publish(const fileString& folder, const fileString& site)
{
    return Publication(folder, site).run();
}

}  // namespace VelkHost
