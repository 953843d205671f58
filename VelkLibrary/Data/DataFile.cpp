#include <VelkLibrary/Data/detail/DataFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/LockingFStream.h>
#include <VelkCommon/Reporting/MessagingSystem.h>

#include <algorithm>
#include <ios>
#include <string_view>
#include <vector>

namespace Library::detail {
namespace {

constexpr long unwritableMessage = 272032391;
constexpr std::size_t blockSize = std::size_t{1} << 16;
// Twenty thousand manufacturers have 7 MB; the tree of a document has some ten times its size.
constexpr long long largestDataFile = 128LL << 20;

std::string readWhole(const fileString& path)
{
    LockingFStream file(path, LockingFStream::in);
    if (!file.isOpen())
        throw std::ios_base::failure("A data file cannot be opened.");
    file.exceptions(std::ios_base::badbit);
    std::string text;
    text.reserve(static_cast<std::size_t>(std::clamp(FileUtils::fileSize(path), 0LL, largestDataFile)) + blockSize);
    std::vector<char> block(blockSize);
    while (file) {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        text.append(block.data(), static_cast<std::size_t>(file.gcount()));
        if (text.size() > static_cast<std::size_t>(largestDataFile))
            throw std::ios_base::failure("A data file is too large.");
    }
    return text;
}

}  // namespace

JsonNode readJsonFile(const fileString& path)
{
    return json::read(readWhole(path));
}

bool isWritableOrReport(const fileString& path, const char* sourceFile, std::size_t line)
{
    if (!FileUtils::pathExists(path) || FileUtils::canReplaceFile(path))
        return true;
    reportUnwritable(path, sourceFile, line);
    return false;
}

void reportUnwritable(const fileString& path, const char* sourceFile, std::size_t line)
{
    error::MessagingSystem::control().notify(sourceFile, line, error::ErrorMinimalTrait(), unwritableMessage,
                                             path.unicodeString(), std::u32string(), std::u32string());
}

}  // namespace Library::detail
