#include <VelkCommon/Archive/ZipUtils.h>

std::u32string ZipUtils::getExtension()
{
    return U".zip";
}

std::u32string ZipUtils::getDelimiter()
{
    return std::u32string(1, U'\0');
}

// Reading and copying entries is not there yet: every archive counts as unreadable.
unsigned long long ZipUtils::getSizeOfArchive(const fileString&)
{
    return 0;
}

std::vector<fileString> ZipUtils::getFilenamesInArchive(const fileString&)
{
    return {};
}

std::vector<fileString> ZipUtils::getFilesDataInArchive(
    const fileString&, std::function<bool(const std::u32string&, const ZipHandles::unzArchiveHandle&, ZipRawDataInfo*)>,
    const std::function<bool()>&)
{
    return {};
}

bool ZipUtils::canAddToArchive(const fileString&)
{
    return false;
}

bool ZipUtils::writeFileToArchiveRaw(const fileString&, const fileString&, const ZipHandles::unzArchiveHandle&, bool,
                                     ZipRawDataInfo*)
{
    return false;
}

void ZipUtils::writeFileDataFromArchive(const fileString&, std::function<void(std::vector<unsigned char>&)>) {}

struct ZipUtils::ZipInputStream::Source
{};

ZipUtils::ZipInputStream::ZipInputStream(const fileString&) {}

ZipUtils::ZipInputStream::~ZipInputStream() = default;

bool ZipUtils::ZipInputStream::isFileOpen() const
{
    return false;
}

std::vector<unsigned char> ZipUtils::ZipInputStream::readArchivedFile(int)
{
    return {};
}

bool ZipUtils::ZipInputStream::reachedEOF() const
{
    return true;
}

bool ZipUtils::ZipInputStream::isWhole() const
{
    return false;
}
