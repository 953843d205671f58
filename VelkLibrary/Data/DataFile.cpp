#include <VelkLibrary/Data/detail/DataFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Files/Overwriting.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Platform/FreedMemory.h>
#include <VelkCommon/Platform/Process.h>
#include <VelkCommon/Reporting/MessagingSystem.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TextNumbers.h>

#include <algorithm>
#include <ios>
#include <new>
#include <stdexcept>

namespace Library::detail {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 16;
// Twenty thousand manufacturers take 7 MB, and the tree of a document takes some ten times the size of its
// text.
constexpr long long largestDataFile = 128LL << 20;

// After a file could not be looked at: what is neither missing nor damaged must not be taken for it, as it would be
// replaced by what is held instead.
void throwIfMemoryRanOut()
{
    if (Velk::Platform::lastErrorIsLackOfMemory())
        throw std::bad_alloc();
}

std::string readWhole(const fileString& path)
{
    LockingFStream file(path, LockingFStream::in);
    if (!file.isOpen()) {
        throwIfMemoryRanOut();
        throw std::ios_base::failure("A data file cannot be opened.");
    }
    file.exceptions(std::ios_base::badbit);
    std::string text;
    // A byte more than there are, which is what tells the end.
    auto room = static_cast<std::size_t>(std::clamp(FileUtils::fileSize(path), 0LL, largestDataFile)) + 1;
    for (; file; room = blockSize) {
        const std::size_t end = text.size();
        text.resize(end + room);
        file.read(text.data() + end, static_cast<std::streamsize>(room));
        text.resize(end + static_cast<std::size_t>(file.gcount()));
        if (text.size() > static_cast<std::size_t>(largestDataFile))
            throw std::ios_base::failure("A data file is too large.");
    }
    return text;
}

// What was in a file that is written although it cannot be replaced. In this user's own folder, for nobody else has to
// do with it.
fileString backupOf(const fileString& path)
{
    return Velk::backupOf(path, PathUtils::getObject().getUserDatabasePath());
}

// The file is in place by now. Where the system refuses these rights, other users cannot change the file, but
// it was written all the same.
void giveEveryoneAccess(const fileString& path)
{
    try {
        FileUtils::makeFileWritable(path);
        FileUtils::setFilePermEveryoneFullAccess(path);
    } catch (const std::exception&) {
    }
}

}  // namespace

std::string MemberPlace::text() const
{
    std::string text = parent.empty() ? std::string() : '"' + std::string(parent) + "\".";
    return text + '"' + std::string(key) + '"';
}

void PartsRead::free(JsonNode& part)
{
    constexpr std::size_t together = 16;
    part.reset();
    if (++freed_ % together == 0)
        Velk::Platform::joinFreedMemory();
}

DataFileResult readDataFile(const fileString& path, const std::function<void(JsonObject& root)>& readRoot)
{
    if (!path.pathExists()) {
        throwIfMemoryRanOut();
        return {DataFileFault::Missing, {}, {}};
    }
    Velk::recoverOverwritten(path, backupOf(path));
    try {
        const JsonNode document = json::read(readWhole(path));
        auto* const root = boost::any_cast<JsonObject>(document.get());
        if (root == nullptr)
            return {DataFileFault::NotAnObject, {}, {}};
        readRoot(*root);
        return {};
    } catch (const std::ios_base::failure&) {
        return {DataFileFault::Unreadable, {}, {}};
    } catch (const WrongMember& wrong) {
        return {DataFileFault::WrongMember, wrong.member, wrong.expected};
    }
}

DataFileResult writeDataFile(const fileString& path, const std::function<json_writer::Object()>& document)
{
    try {
        const json_writer::Object root = document();
        const bool exists = FileUtils::pathExists(path);
        if (exists && !FileUtils::canWriteFile(path))
            return {DataFileFault::MayNotBeWritten, {}, {}};
        if (!exists || FileUtils::canReplaceFile(path))
            json_writer::write_file(StringConvert::toStdUtf8String(path), root);
        else if (!Velk::overwriteFile(path, json_writer::to_text(root), backupOf(path)))
            return {DataFileFault::NotWritten, {}, {}};
    } catch (const std::out_of_range&) {
        return {DataFileFault::NotRepresentable, {}, {}};
    } catch (const std::runtime_error&) {
        return {DataFileFault::NotWritten, {}, {}};
    }
    giveEveryoneAccess(path);
    return {};
}

void reportUnwritable(const fileString& path, const Velk::ReportPlace& place)
{
    error::MessagingSystem::control().notify(place.source, place.line, error::ErrorMinimalTrait(),
                                             Velk::textNumbers::unwritableFile, path.unicodeString(), std::u32string(),
                                             std::u32string());
}

}  // namespace Library::detail
