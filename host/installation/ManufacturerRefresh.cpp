#include "host/installation/ManufacturerRefresh.h"

#include "host/installation/DataError.h"
#include "host/installation/DataFileReason.h"
#include "host/installation/Manufacturers.h"
#include "host/support/FileError.h"

#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Network/WebUtils.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkLibrary/Manufacturer/LogoName.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <algorithm>
#include <utility>

namespace VelkHost {
namespace {

using Library::ManufacturerChange;
using Library::ManufacturerUpdate;

std::string nameOf(const Manufacturer& card)
{
    return StringConvert::toStdUtf8String(card.getManufacturerName());
}

std::vector<std::string> whatChanged(const Manufacturer& before, const Manufacturer& after, Library::LogoChange logo)
{
    using enum Library::LogoChange;
    std::vector<std::string> what = changedFields(before, after);
    if (logo == New || logo == Changed || logo == Gone)
        what.emplace_back("image");
    return what;
}

/// A manufacturer that was withdrawn needs no logo.
CardChange cardChange(const ManufacturerChange& change, const ManufacturerFile& before, const ManufacturerFile& after)
{
    if (change.card == Library::CardChange::Gone)
        return {change.id, nameOf(before.cards.at(change.id)), CardChange::Kind::Removed, {}, false};
    const Manufacturer& now = after.cards.at(change.id);
    CardChange told{change.id, nameOf(now), CardChange::Kind::Added, {}, false};
    told.logoMissing = change.logo == Library::LogoChange::Failed && !now.isDeleted();
    if (change.card != Library::CardChange::New) {
        told.kind = CardChange::Kind::Changed;
        told.what = whatChanged(before.cards.at(change.id), now, change.logo);
    }
    return told;
}

/// Cards that did not change are left out.
std::vector<CardChange> cardChanges(const ManufacturerUpdate& update, const ManufacturerFile& before)
{
    std::vector<CardChange> changes;
    for (const ManufacturerChange& change : update.changes) {
        CardChange told = cardChange(change, before, update.offered);
        if (told.kind != CardChange::Kind::Changed || !told.what.empty() || told.logoMissing)
            changes.push_back(std::move(told));
    }
    return changes;
}

/// Throws for an update that did not come to a comparison, or whose result was not saved.
void requireDone(const ManufacturerUpdate& update, const std::string& dataUrl)
{
    using enum Library::ManufacturerUpdateOutcome;
    switch (update.outcome) {
        case NotFetched:
            throw TransferError(dataUrl, update.reason);
        case NotReadable:
            throw DataError(Reason("%1: %2", {WebUtils::withoutUserInfo(dataUrl), reasonOf(update.reading)}));
        case NotWritten:
            ManufacturerManager::cleanup();  // what it holds is not what the file holds
            throw FileError(manufacturerFile(), "cannot be written; the cards are as they were");
        default:
            return;
    }
}

ManufacturerRefresh::Outcome outcomeOf(const ManufacturerUpdate& update)
{
    using Outcome = ManufacturerRefresh::Outcome;
    if (update.outcome == Library::ManufacturerUpdateOutcome::Stopped)
        return Outcome::Stopped;
    if (!update.differs)
        return Outcome::Current;
    return update.outcome == Library::ManufacturerUpdateOutcome::Taken ? Outcome::Updated : Outcome::Newer;
}

/// Whether a card's logo should be here, and is not.
bool lacksLogo(const Manufacturer& card)
{
    return !card.isDeleted() && !card.getManufacturerLogoName().empty() &&
           Library::isSafeLogoName(card.getManufacturerLogoName()) && !hasLogoFile(card);
}

/// The update fetches the logos of cards that it changes. One that could not be fetched or stored then, or was lost
/// since, is fetched here.
void fetchLostLogos(const std::string& logoUrl, std::vector<CardChange>& changes)
{
    const ManufacturerFile file = installedManufacturers();
    for (const auto& [id, card] : file.cards) {
        const bool isTold = std::any_of(changes.begin(), changes.end(),
                                        [id = id](const CardChange& change) { return change.id == id; });
        if (isTold || !lacksLogo(card) || Curl::Stoppable::isStopped())
            continue;
        const std::string reason = ManufacturerManager::fetchLogo(card, StringConvert::toUnicodeFromUtf8(logoUrl));
        CardChange told{id, nameOf(card), CardChange::Kind::Changed, {}, !reason.empty()};
        if (reason.empty())
            told.what.emplace_back("image");
        changes.push_back(std::move(told));
    }
}

}  // namespace

ManufacturerRefresh refreshManufacturers(const std::string& dataUrl, const std::string& logoUrl, std::stop_token stop)
{
    const FileLock lock = lockManufacturers(stop);
    const Curl::Stoppable stoppable(std::move(stop));
    const ManufacturerFile before = installedManufacturers();
    ManufacturerManager::cleanup();  // it may hold those of another installation
    const ManufacturerUpdate update = ManufacturerManager::getManufacturerManager().updateManufacturers(
        StringConvert::toUnicodeFromUtf8(dataUrl), StringConvert::toUnicodeFromUtf8(logoUrl));
    requireDone(update, dataUrl);

    const bool taken = update.outcome == Library::ManufacturerUpdateOutcome::Taken;
    ManufacturerRefresh refresh;
    refresh.outcome = outcomeOf(update);
    refresh.cards = taken ? update.offered.cards.size() : before.cards.size();
    refresh.changes = cardChanges(update, before);
    fetchLostLogos(logoUrl, refresh.changes);
    if (refresh.outcome == ManufacturerRefresh::Outcome::Current && !refresh.changes.empty())
        refresh.outcome = ManufacturerRefresh::Outcome::Updated;
    refresh.defaultTextChanged = update.textChanged;
    refresh.missingLogos = static_cast<std::size_t>(std::count_if(
        refresh.changes.begin(), refresh.changes.end(), [](const CardChange& change) { return change.logoMissing; }));
    return refresh;
}

}  // namespace VelkHost
