#include "host/installation/ManufacturerRefresh.h"

#include "host/catalog/ManufacturerData.h"
#include "host/installation/DataError.h"
#include "host/installation/Manufacturers.h"
#include "host/support/FileError.h"
#include "host/support/Folders.h"

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/SHA1.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <algorithm>
#include <map>
#include <utility>

namespace VelkHost {
namespace {

/// A folder for a moment.
class PassingFolder
{
public:
    PassingFolder()
    {
        path_.generateAsTempName({});
        makeFolder(path_);
    }
    ~PassingFolder() { FileUtils::removeDirectoryAndFiles(path_, FileUtils::overrideReadOnly); }
    PassingFolder(const PassingFolder&) = delete;
    PassingFolder& operator=(const PassingFolder&) = delete;

    const fileString& path() const { return path_; }

private:
    fileString path_;
};

/// What is here of the manufacturers at a moment.
struct Holdings : HeldCards
{
    std::map<std::string, std::string> logos;  ///< SHA-1 by name, of those that are there
};

Holdings holdings(const ManufacturerManager& manager)
{
    Holdings held{heldCards(manager), {}};
    for (const auto& [id, card] : held.cards)
        if (hasLogoFile(card))
            held.logos.emplace(card.getManufacturerLogoName().utf8(),
                               SHA1::fileContentsToSHA1Hex(card.getManufacturerFullLogoName()));
    return held;
}

bool sameCards(const ManufacturerCards& left, const ManufacturerCards& right)
{
    const auto same = [](const auto& one, const auto& other) {
        return one.first == other.first && one.second == other.second &&
               changedFields(one.second, other.second).empty();
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), same);
}

/// The service's data, which the library itself would only take in silence or leave in silence.
HeldCards offered(const std::string& dataUrl)
{
    const PassingFolder folder;
    const fileString file = folder.path() / U"manufacturer_data.json";
    std::string reason;
    if (!Curl::get().download_to_location(dataUrl, file, reason))
        throw TransferError(dataUrl, reason);
    ManufacturerManager& manager = ManufacturerManager::getManufacturerManager();
    if (manager.changeManufacturerDataPath(folder.path()))
        return heldCards(manager);
    try {
        readManufacturerLogos(file);
    } catch (const FileError& error) {
        throw DataError(Reason("%1: %2", {dataUrl, error.why()}));
    }
    throw DataError(Reason("%1: has no manufacturers' data", {dataUrl}));
}

std::string logoDigest(const Holdings& held, const Manufacturer& card)
{
    const auto found = held.logos.find(card.getManufacturerLogoName().utf8());
    return found == held.logos.end() ? std::string() : found->second;
}

std::string nameOf(const Manufacturer& card)
{
    return StringConvert::toStdUtf8String(card.getManufacturerName());
}

/// What is to be told of a card that is here now.
CardChange compareCard(long id, const Holdings& before, const Holdings& after)
{
    const Manufacturer& now = after.cards.at(id);
    CardChange change{id, nameOf(now), CardChange::Kind::Added, {}, false};
    bool fetched = true;
    if (const auto old = before.cards.find(id); old != before.cards.end()) {
        fetched = old->second.getLastModified() < now.getLastModified();
        change.kind = CardChange::Kind::Changed;
        change.what = changedFields(old->second, now);
        if (logoDigest(before, old->second) != logoDigest(after, now))
            change.what.emplace_back("image");
    }
    change.logoMissing =
        fetched && !now.isDeleted() && !now.getManufacturerLogoName().empty() && logoDigest(after, now).empty();
    return change;
}

std::vector<CardChange> compareCards(const Holdings& before, const Holdings& after)
{
    std::map<long, CardChange> changes;
    for (const auto& [id, card] : before.cards)
        if (!after.cards.contains(id))
            changes.emplace(id, CardChange{id, nameOf(card), CardChange::Kind::Removed, {}, false});
    for (const auto& [id, card] : after.cards) {
        CardChange change = compareCard(id, before, after);
        const bool toTell = change.kind != CardChange::Kind::Changed || !change.what.empty() || change.logoMissing;
        if (toTell)
            changes.emplace(id, std::move(change));
    }
    std::vector<CardChange> list;
    list.reserve(changes.size());
    for (auto& [id, change] : changes)
        list.push_back(std::move(change));
    return list;
}

}  // namespace

ManufacturerRefresh refreshManufacturers(const std::string& dataUrl, const std::string& logoUrl, std::stop_token stop)
{
    const Curl::Stoppable stoppable(std::move(stop));
    const Holdings before = holdings(installedManufacturers());
    const HeldCards service = offered(dataUrl);
    ManufacturerManager& manager = installedManufacturers();
    manager.checkForManufacturerUpdates(StringConvert::toUnicodeFromUtf8(dataUrl),
                                        StringConvert::toUnicodeFromUtf8(logoUrl));
    const Holdings after = holdings(manager);
    requireWritten(after);

    ManufacturerRefresh refresh;
    refresh.cards = after.cards.size();
    refresh.changes = compareCards(before, after);
    refresh.defaultTextChanged = before.defaultText != after.defaultText;
    refresh.missingLogos = static_cast<std::size_t>(std::count_if(
        refresh.changes.begin(), refresh.changes.end(), [](const CardChange& change) { return change.logoMissing; }));
    if (!sameCards(after.cards, service.cards) || after.defaultText != service.defaultText)
        refresh.outcome = ManufacturerRefresh::Outcome::Newer;
    else if (!sameCards(before.cards, after.cards) || refresh.defaultTextChanged)
        refresh.outcome = ManufacturerRefresh::Outcome::Updated;
    return refresh;
}

}  // namespace VelkHost
