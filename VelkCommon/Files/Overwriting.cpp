#include <VelkCommon/Files/Overwriting.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/ReplacementFile.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Files/WorkFolder.h>
#include <VelkCommon/Files/detail/Folders.h>
#include <VelkCommon/Files/detail/LockPatience.h>
#include <VelkCommon/Platform/File.h>
#include <VelkCommon/Platform/FileSystem.h>

#include <optional>
#include <string>

namespace Velk {
namespace {

using Platform::File;

constexpr char unfinished = '\0';
constexpr long long largestFile = 256LL << 20;

std::optional<std::string> contentOf(File& file)
{
    const long long size = file.size();
    if (size < 0 || size > largestFile || !file.seek(0))
        return std::nullopt;
    std::string text(static_cast<std::size_t>(size), '\0');
    if (file.read(text.data(), text.size()) != size)
        return std::nullopt;
    return text;
}

bool writeMark(File& file)
{
    return file.seek(0) && file.write(&unfinished, 1) && file.sync();
}

// The first byte comes last, since it takes away the mark.
bool writeAll(File& file, std::string_view text)
{
    if (text.empty())
        return file.truncate() && file.sync();
    const std::string_view rest = text.substr(1);
    return file.seek(1) && file.write(rest.data(), rest.size()) && file.truncate(static_cast<long long>(text.size())) &&
           file.sync() && file.seek(0) && file.write(text.data(), 1) && file.sync();
}

bool isUnfinished(const std::string& content)
{
    return !content.empty() && content.front() == unfinished;
}

// False where the old content is still to be put back.
bool recover(File& file, const fileString& backup)
{
    File kept = File::open(backup.utf8(), File::Mode::read);
    if (!kept.isOpen())
        return !Platform::nameTaken(backup.utf8());
    const std::optional<std::string> old = contentOf(kept);
    const std::optional<std::string> current = contentOf(file);
    if (!old || !current || (isUnfinished(*current) && !writeAll(file, *old)))
        return false;
    kept.close();
    return Platform::removeFile(backup.utf8(), false);
}

}  // namespace

fileString backupOf(const fileString& file, const fileString& folder)
{
    constexpr std::size_t digits = 16;
    const auto place = Platform::fileStatus(detail::folderOf(file));
    if (!place)
        return {};
    const std::string key = std::to_string(place->number) + '/' + file.stemWithExtension().utf8();
    const std::string hash = SHA1::bytesToSHA1Hex(key);
    return hash.empty() ? fileString() : folder / fileString("unfinished-" + hash.substr(0, digits) + ".backup");
}

bool overwriteFile(const fileString& file, std::string_view text, const fileString& backup)
{
    File opened;
    if (!detail::openLockedPatiently(opened, file, File::Lock::exclusive) || !recover(opened, backup))
        return false;
    const std::optional<std::string> old = contentOf(opened);
    FileUtils::createDirectoriesWithPerm(backup.parentPath());
    WorkFolder::removeLeftovers(backup.parentPath());  // of one that was killed here
    ReplacementFile copy(backup);
    if (!old || !copy.write(*old) || !copy.commit())
        return false;
    const bool written = writeMark(opened) && writeAll(opened, text);
    if (written || writeAll(opened, *old))
        static_cast<void>(Platform::removeFile(backup.utf8(), false));
    return written;
}

void recoverOverwritten(const fileString& file, const fileString& backup)
{
    if (!Platform::nameTaken(backup.utf8()))
        return;
    File opened;
    if (detail::openLockedPatiently(opened, file, File::Lock::exclusive))
        static_cast<void>(recover(opened, backup));
}

}  // namespace Velk
