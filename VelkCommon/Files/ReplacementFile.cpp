#include <VelkCommon/Files/ReplacementFile.h>

#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Files/detail/Leftovers.h>
#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Platform/FileSystem.h>
#include <VelkCommon/Platform/Process.h>

#include <string>
#include <utility>

namespace Platform = Velk::Platform;

namespace {

// Whoever removes leftovers may take a new file for one before it is locked; then another name is tried.
constexpr int creationAttempts = 10;

}  // namespace

ReplacementFile::ReplacementFile(const fileString& target, Existing existing) noexcept : existing_(existing)
{
    try {
        // A path that ends with a separator names a folder.
        if (target.stemWithExtension().empty())
            return;
        target_ = target;
        file_ = std::make_unique<Platform::File>();
        fileString sibling;
        for (int attempt = 0; attempt < creationAttempts && !isOpen(); ++attempt) {
            sibling = target.parentPath() / Velk::detail::temporaryName();
            *file_ = Platform::File::open(sibling.utf8(), Platform::File::Mode::create);
        }
        if (!noted(isOpen()))
            return;
        path_ = std::move(sibling);
        static_cast<void>(file_->copyPermissionsFrom(target.utf8()));
    } catch (...) {
        discard();
    }
}

ReplacementFile::~ReplacementFile()
{
    discard();
}

bool ReplacementFile::isOpen() const noexcept
{
    return file_ && file_->isOpen();
}

bool ReplacementFile::write(std::string_view bytes) noexcept
{
    if (!isOpen() || failed_)
        return false;
    failed_ = !noted(file_->write(bytes.data(), bytes.size()));
    return !failed_;
}

bool ReplacementFile::copyFrom(Platform::File& source) noexcept
{
    if (!isOpen() || failed_)
        return false;
    try {
        failed_ = !noted(file_->copyFrom(source));
    } catch (...) {
        failed_ = true;
    }
    return !failed_;
}

bool ReplacementFile::copyRange(Platform::File& source, long long offset, long long size) noexcept
{
    if (!isOpen() || failed_)
        return false;
    try {
        failed_ = !noted(file_->copyRange(source, offset, size));
    } catch (...) {
        failed_ = true;
    }
    return !failed_;
}

bool ReplacementFile::copyPermissionsFrom(const fileString& source) noexcept
{
    return isOpen() && file_->copyPermissionsFrom(source.utf8());
}

bool ReplacementFile::commit() noexcept
{
    if (!isOpen())
        return false;
    try {
        if (finish())
            return true;
    } catch (...) {
        // A failure like any other.
    }
    discard();
    return false;
}

bool ReplacementFile::finish()
{
    const bool synced = !failed_ && noted(file_->sync());
    const Platform::File lock = file_->duplicate();  // until the file has its name, it must not look like a leftover
    const bool complete = noted(file_->close()) && synced;
    const bool replace = existing_ == Existing::replace;
    const std::string folder = Velk::detail::folderOf(target_);  // before the move: afterwards nothing may fail
    if (!complete || !noted(Platform::move(path_.utf8(), target_.utf8(), replace) == Platform::MoveResult::moved))
        return false;
    path_ = {};
    Platform::syncFolder(folder);
    return true;
}

// Passes on whether a call of the system succeeded. Right behind the call: the next one may have another reason.
bool ReplacementFile::noted(bool success) noexcept
{
    if (!success && failure_.empty()) {
        try {
            failure_ = Platform::lastErrorText();
        } catch (...) {
            // Without memory the failure itself must do.
        }
    }
    return success;
}

void ReplacementFile::discard() noexcept
{
    if (isOpen())
        file_->close();
    if (!path_.empty())
        Platform::removeFile(path_.utf8(), true);
    path_ = {};
}
