#include <VelkLibrary/Manufacturer/detail/ServiceUpdate.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Manufacturer/LogoName.h>
#include <VelkLibrary/Manufacturer/detail/LogoFolders.h>

namespace Library::detail {
namespace {

constexpr const char32_t* logoPathParameter = U"&logo-path=";

// The service expects addresses in Windows-1252.
bool fetch(const fileString& url, const fileString& target, std::string& reason)
{
    return Curl::get().download_to_location(StringConvert::toWin1252(url.unicodeString()), target, reason);
}

fileString dataFolder()
{
    return PathUtils::getObject().getManufacturerDataPath();
}

// A logo without a folder of its own stands beside the data file.
bool makeFolderOf(const fileString& name)
{
    const fileString folder = name.parentPath();
    return folder.empty() || FileUtils::createDirectoriesWithPerm(dataFolder() / folder);
}

// Empty when there is no such file.
std::string logoDigest(const Manufacturer& card)
{
    if (!isSafeLogoName(card.getManufacturerLogoName()) ||
        logoIsBehindLink(dataFolder(), card.getManufacturerLogoName()))
        return {};
    const fileString path = card.getManufacturerFullLogoName();
    return FileUtils::fileSize(path) > 0 ? SHA1::fileContentsToSHA1Hex(path) : std::string();
}

// A link in the logo's own place is removed itself.
void removeLogo(const Manufacturer& card)
{
    if (isSafeLogoName(card.getManufacturerLogoName()) &&
        !logoFoldersHoldLink(dataFolder(), card.getManufacturerLogoName()))
        FileUtils::removePath(card.getManufacturerFullLogoName(), FileUtils::overrideReadOnly);
}

LogoChange compareLogos(const std::string& before, const std::string& after)
{
    if (before == after)
        return LogoChange::Unchanged;
    if (before.empty())
        return LogoChange::New;
    return after.empty() ? LogoChange::Gone : LogoChange::Changed;
}

// `held` is null for a new card.
void replaceLogo(const Manufacturer* held, const Manufacturer& offered, const std::u32string& logoUrl,
                 ManufacturerChange& change)
{
    const std::string before = held != nullptr ? logoDigest(*held) : std::string();
    if (held != nullptr)
        removeLogo(*held);
    if (!offered.getManufacturerLogoName().empty())
        change.logoReason = fetchLogo(offered, logoUrl);
    change.logo = change.logoReason.empty() ? compareLogos(before, logoDigest(offered)) : LogoChange::Failed;
}

CardChange compareCard(const Manufacturer& held, const Manufacturer& offered)
{
    const bool same =
        held == offered && held.getManufacturerFaxNumber(false) == offered.getManufacturerFaxNumber(false);
    return same ? CardChange::Unchanged : CardChange::Changed;
}

}  // namespace

std::string fetchLogo(const Manufacturer& card, const std::u32string& logoUrl)
{
    const fileString name = card.getManufacturerLogoName();
    const fileString path = card.getManufacturerFullLogoName();
    if (!isSafeLogoName(name))
        return "its name is not safe";
    if (logoIsBehindLink(dataFolder(), name))
        return "a link stands in its place or on the way there";
    if (!makeFolderOf(name))
        return "its folder cannot be made";
    std::string reason;
    if (!fetch(fileString(logoUrl) + fileString(std::u32string(logoPathParameter)) + name, path, reason))
        return reason;
    return FileUtils::fileSize(path) > 0 ? std::string() : "it is empty";
}

bool fetchServiceFile(const std::u32string& dataUrl, const fileString& file, ManufacturerUpdate& update)
{
    using enum ManufacturerUpdateOutcome;
    if (FileUtils::pathExists(file))
        FileUtils::removePath(file, FileUtils::overrideReadOnly);
    if (!fetch(fileString(dataUrl), file, update.reason)) {
        update.outcome = Curl::Stoppable::isStopped() ? Stopped : NotFetched;
        return false;
    }
    update.reading = update.offered.read(file);
    if (!update.reading)
        update.outcome = NotReadable;
    return static_cast<bool>(update.reading);
}

std::vector<ManufacturerChange> compareCards(const ManufacturerFile::Cards& held,
                                             const ManufacturerFile::Cards& offered)
{
    std::vector<ManufacturerChange> changes;
    auto old = held.begin();
    for (const auto& [id, card] : offered) {
        for (; old != held.end() && old->first < id; ++old)
            changes.push_back({old->first, CardChange::Gone, {}, {}});
        const bool isHeld = old != held.end() && old->first == id;
        changes.push_back({id, isHeld ? compareCard(old->second, card) : CardChange::New, {}, {}});
        if (isHeld)
            ++old;
    }
    for (; old != held.end(); ++old)
        changes.push_back({old->first, CardChange::Gone, {}, {}});
    return changes;
}

void fetchLogos(const ManufacturerFile::Cards& held, const ManufacturerFile::Cards& offered,
                const std::u32string& logoUrl, std::vector<ManufacturerChange>& changes)
{
    for (ManufacturerChange& change : changes) {
        const auto card = offered.find(change.id);
        if (card == offered.end())
            continue;
        const auto old = held.find(change.id);
        const bool isHeld = old != held.end();
        if (!isHeld || old->second.getLastModified() < card->second.getLastModified())
            replaceLogo(isHeld ? &old->second : nullptr, card->second, logoUrl, change);
    }
}

}  // namespace Library::detail
