#include "host/installation/ReplaceTogether.h"

#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/SystemPath.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/WorkFolder.h>

#include <fstream>
#include <memory>
#include <new>

namespace VelkHost {
namespace {

/// One file on its way to its place. Until keepNew() the old one comes back.
class Placing
{
public:
    explicit Placing(const FilePlacement& placement)
        : target_(absolutePath(placement.target)), folder_(target_.parentPath())
    {
        if (isFolder(target_))
            throw FileError(target_, "is a folder, not a file");
        new_ = folder_.path() / U"new";
        old_ = folder_.path() / U"old";
        hadOld_ = target_.pathExists();
        // In the target's folder first, so that what may fail for lack of room has happened before anything is
        // replaced.
        if (folder_.path().empty() || !FileUtils::moveFile(placement.file, new_, false) || !keepOld())
            throw FileError(target_, "cannot be written");
    }

    ~Placing()
    {
        if (!placed_)
            return;
        if (hadOld_)
            putOldBack();
        else
            FileUtils::removePath(target_, FileUtils::overrideReadOnly);
    }

    Placing(const Placing&) = delete;
    Placing& operator=(const Placing&) = delete;

    void place()
    {
        placed_ = FileUtils::moveFile(new_, target_, true);
        if (!placed_)
            throw FileError(target_, "cannot be written");
    }

    void keepNew() noexcept { placed_ = false; }

private:
    void putOldBack() const noexcept
    try {
        // Without memory only the mere renaming is left.
        if (!FileUtils::moveFile(old_, target_, true) && !FileUtils::renameFile(old_, target_))
            overwriteWithOld();
    } catch (const std::bad_alloc&) {
        // The new file stays, whole, until the whole is done again.
    }

    /// What failed may have been the renaming itself, and then no other one works either. What is left is to write the
    /// old bytes into the new file.
    void overwriteWithOld() const
    {
        std::ifstream old(streamPath(old_), std::ios::binary);
        if (!old)
            return;
        std::ofstream target(streamPath(target_), std::ios::binary | std::ios::trunc);
        if (old.peek() != std::ifstream::traits_type::eof())  // a stream that inserts no bytes counts as failed
            target << old.rdbuf();
    }

    bool keepOld() const
    {
        return !hadOld_ || FileUtils::linkFile(target_, old_) || FileUtils::copyFile(target_, old_, false);
    }

    fileString target_;
    WorkFolder folder_;
    fileString new_;
    fileString old_;
    bool hadOld_ = false;
    bool placed_ = false;
};

}  // namespace

void replaceTogether(const std::vector<FilePlacement>& placements)
{
    std::vector<std::unique_ptr<Placing>> placings;
    placings.reserve(placements.size());
    for (const FilePlacement& placement : placements)
        placings.push_back(std::make_unique<Placing>(placement));
    for (const auto& placing : placings)
        placing->place();
    for (const auto& placing : placings)
        placing->keepNew();
}

}  // namespace VelkHost
