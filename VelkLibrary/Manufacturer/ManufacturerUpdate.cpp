#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/LogoName.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>
#include <VelkLibrary/Manufacturer/detail/ManufacturerDataFile.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <mutex>
#include <string>
#include <utility>

namespace {

constexpr const char32_t* logoPathParameter = U"&logo-path=";

// The service takes and gives Windows-1252.
bool fetch(const fileString& url, const fileString& target)
{
    std::string reason;
    return Curl::get().download_to_location(StringConvert::toWin1252(url.unicodeString()), target, reason);
}

void removeLogo(const Manufacturer& card)
{
    if (Library::isSafeLogoName(card.getManufacturerLogoName()))
        FileUtils::removePath(card.getManufacturerFullLogoName(), FileUtils::overrideReadOnly);
}

void fetchLogo(const Manufacturer& card, const fileString& logoUrl)
{
    if (Library::isSafeLogoName(card.getManufacturerLogoName()))
        fetch(logoUrl + fileString(std::u32string(logoPathParameter)) + card.getManufacturerLogoName(),
              card.getManufacturerFullLogoName());
}

}  // namespace

void ManufacturerManager::checkForManufacturerUpdates(const std::u32string& dataUrl, const std::u32string& logoUrl)
{
    try {
        const Curl::Run run;
        const fileString downloaded = PathUtils::getObject().getManufacturerDataPath() +
                                      fileString(Library::detail::manufacturerDataTemporaryFileName);
        if (FileUtils::pathExists(downloaded))
            FileUtils::removePath(downloaded, FileUtils::overrideReadOnly);
        if (!fetch(fileString(dataUrl), downloaded))
            return;
        update(downloaded, logoUrl);
        FileUtils::removePath(downloaded, FileUtils::overrideReadOnly);
    } catch (...) {
        // For want of memory. The cards are the old ones or the new ones; the next update removes the file.
    }
}

void ManufacturerManager::update(const fileString& downloadedFile, const std::u32string& logoUrl)
{
    Cards downloaded;
    Time fileTime = Library::detail::earliestTime();
    std::u32string defaultText;
    readDataFile(downloadedFile, downloaded, fileTime, defaultText);
    if (!(*lastModified_ < fileTime))
        return;
    fetchLogos(downloaded, logoUrl);
    // Logos that did not come would never be asked for again.
    if (Curl::Stoppable::isStopped())
        return;
    takeOver(std::move(downloaded), std::move(defaultText));
    *lastModified_ = Library::getTimeNow();
    writeDataFile();
}

void ManufacturerManager::fetchLogos(const Cards& downloaded, const std::u32string& logoUrl) const
{
    for (const auto& [id, card] : downloaded) {
        const auto held = manufacturers_.find(id);
        if (held != manufacturers_.end()) {
            if (!(held->second.getLastModified() < card.getLastModified()))
                continue;
            removeLogo(held->second);
        }
        fetchLogo(card, fileString(logoUrl));
    }
}

// Lookups go on while an update runs.
void ManufacturerManager::takeOver(Cards cards, std::u32string defaultText)
{
    const std::lock_guard lock(Library::detail::manufacturerManagerMutex);
    manufacturers_.swap(cards);
    defaultText_ = std::move(defaultText);
}
