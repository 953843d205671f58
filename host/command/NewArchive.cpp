#include "host/command/NewArchive.h"

#include "host/catalog/ArchiveReader.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"
#include "host/support/System.h"

#include <VelkCommon/Files/FileUtils.h>

#include <algorithm>
#include <utility>

namespace VelkHost {

NewArchive::NewArchive(const fileString& target)
    : target_(absolutePath(target)),
      folder_(target_.parentPath()),
      made_(folder_.path() / U"new.zip"),
      archive_(folder_.path().empty() ? nullptr
                                      : zip_open(pathForLibraries(made_).c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr))
{
    WorkFolder::removeLeftovers(target_.parentPath());
    if (archive_ == nullptr)
        throw FileError(target_, "cannot be written");
}

NewArchive::~NewArchive()
{
    if (archive_ != nullptr)
        zip_discard(archive_);
}

void NewArchive::addFile(const std::string& name, const fileString& path)
{
    zip_source_t* const source = zip_source_file(archive_, pathForLibraries(path).c_str(), 0, -1);
    if (source == nullptr)
        throw FileError(path, std::string("cannot be read (") + zip_strerror(archive_) + ")");
    sizes_[name] = static_cast<std::uint64_t>(std::max(FileUtils::fileSize(path), 0LL));
    add(name, source);
}

void NewArchive::addBytes(const std::string& name, std::string_view bytes)
{
    sizes_[name] = bytes.size();
    add(name, zip_source_buffer(archive_, bytes.data(), bytes.size(), 0));
}

void NewArchive::add(const std::string& name, zip_source_t* source)
{
    if (source != nullptr && zip_file_add(archive_, name.c_str(), source, ZIP_FL_ENC_UTF_8) >= 0)
        return;
    const std::string reason = zip_strerror(archive_);
    zip_source_free(source);
    throw FileError(target_, "cannot include \"" + name + "\" (" + reason + ")");
}

void NewArchive::watch(std::function<void(double)> show, std::function<bool()> cancelled)
{
    constexpr double precision = 0.005;  // of the whole, between two looks
    show_ = std::move(show);
    cancelled_ = std::move(cancelled);
    const auto tell = [](zip_t*, double share, void* self) { static_cast<NewArchive*>(self)->show_(share); };
    const auto ask = [](zip_t*, void* self) { return static_cast<NewArchive*>(self)->cancelled_() ? 1 : 0; };
    zip_register_progress_callback_with_state(archive_, precision, tell, nullptr, this);
    zip_register_cancel_callback_with_state(archive_, ask, nullptr, this);
}

bool NewArchive::close()
{
    if (zip_close(archive_) == 0) {
        archive_ = nullptr;
        requireComplete();
        if (!FileUtils::moveFile(made_, target_, true))
            throw FileError(target_, "cannot be written");
        return true;
    }
    if (zip_error_code_zip(zip_get_error(archive_)) == ZIP_ER_CANCELLED)
        return false;
    throw FileError(target_, std::string("cannot be packed (") + zip_strerror(archive_) + ")");
}

/// A file that could not be read to its end would be packed as a shorter one.
void NewArchive::requireComplete() const
{
    const ArchiveReader written(made_, ArchiveReader::Directory::readable);
    bool complete = written.entries().size() == sizes_.size();
    for (const ArchiveReader::Entry& entry : written.entries()) {
        const auto found = sizes_.find(entry.name);
        complete = complete && found != sizes_.end() && found->second == entry.size;
    }
    if (!complete)
        throw FileError(target_, "cannot be packed: a file could not be read to its end, or changed meanwhile");
}

}  // namespace VelkHost
