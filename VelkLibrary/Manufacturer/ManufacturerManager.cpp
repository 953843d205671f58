#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <VelkCommon/Files/FileReaper.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Network/Curl.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/Manufacturer/ManufacturerFile.h>
#include <VelkLibrary/Manufacturer/detail/ServiceUpdate.h>
#include <VelkLibrary/detail/ModuleStatics.h>
#include <VelkLibrary/detail/ReportPlaces.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

using Library::DataFileFault;
using Library::DataFileResult;
using Library::ManufacturerUpdate;
using Library::ManufacturerUpdateOutcome;
using Library::detail::manufacturerManagerMutex;

namespace {

// Makes its folder when that is missing.
fileString dataFile()
{
    const fileString folder = PathUtils::getObject().getManufacturerDataPath();
    if (!FileUtils::pathExists(folder))
        FileUtils::createDirectoriesWithPerm(folder);
    return folder / fileString(Library::detail::manufacturerDataFileName);
}

fileString temporaryDataFile()
{
    return PathUtils::getObject().getManufacturerDataPath() +
           fileString(Library::detail::manufacturerDataTemporaryFileName);
}

bool isChange(const Library::ManufacturerChange& change)
{
    return change.card != Library::CardChange::Unchanged;
}

// Guarded by the manufacturer lock, except at the end of the process.
std::unique_ptr<ManufacturerManager>& heldInstance()
{
    static std::unique_ptr<ManufacturerManager> instance;
    return instance;
}

}  // namespace

// ---- The instance --------------------------------------------------------------------------------

ManufacturerManager& ManufacturerManager::getManufacturerManager()
{
    const std::lock_guard lock(manufacturerManagerMutex);
    std::unique_ptr<ManufacturerManager>& instance = heldInstance();
    if (!instance)
        instance.reset(new ManufacturerManager);
    return *instance;
}

void ManufacturerManager::cleanup()
{
    const std::lock_guard lock(manufacturerManagerMutex);
    heldInstance().reset();
}

// Runs under the lock: nothing here may ask for the manager, as a card's resolved text does.
ManufacturerManager::ManufacturerManager()
{
    file_.read(dataFile());
}

ManufacturerManager::~ManufacturerManager() = default;

// ---- Lookups -------------------------------------------------------------------------------------

// They ask the instance that is held, which is this one unless another thread has just cleaned it up;
// in that case no member of this one may be touched any more.

const Manufacturer& ManufacturerManager::getManufacturer(long id) const
{
    const std::lock_guard lock(manufacturerManagerMutex);
    const ManufacturerManager* const held = heldInstance().get();
    if (held == nullptr) {
        static const Manufacturer empty;
        return empty;
    }
    const auto found = held->file_.cards.find(id);
    return found != held->file_.cards.end() ? found->second : held->emptyManufacturer_;
}

bool ManufacturerManager::manufacturerExists(long id) const
{
    const std::lock_guard lock(manufacturerManagerMutex);
    const ManufacturerManager* const held = heldInstance().get();
    return held != nullptr && held->file_.cards.contains(id);
}

std::map<long, std::u32string> ManufacturerManager::getIdNameMap() const
{
    const std::lock_guard lock(manufacturerManagerMutex);
    std::map<long, std::u32string> names;
    if (const ManufacturerManager* const held = heldInstance().get())
        for (const auto& [id, card] : held->file_.cards)
            names.emplace_hint(names.end(), id, card.getManufacturerName());
    return names;
}

// ---- Changes -------------------------------------------------------------------------------------

void ManufacturerManager::saveModifiedManufacturers(std::map<long, Manufacturer>& cards,
                                                    const std::u32string& defaultText)
{
    std::u32string newText = defaultText;  // a copy, because `defaultText` may refer into a card
    ManufacturerFile::stampChanges(cards, file_.cards);
    if (&cards != &file_.cards)
        file_.cards = cards;
    file_.defaultText = std::move(newText);
    writeDataFile();
}

void ManufacturerManager::manageManufacturerData() const
{
    writeDataFile();
}

void ManufacturerManager::checkWriteDataFile()
{
    const fileString path = dataFile();
    if (!FileUtils::canWriteFile(path))
        Library::detail::reportUnwritable(path, Library::detail::places::manufacturerFileCheck);
}

bool ManufacturerManager::changeManufacturerDataPath(const fileString& folder)
{
    ManufacturerFile file;
    const DataFileResult reading = file.read(folder / fileString(Library::detail::manufacturerDataFileName));
    if (reading)
        file_ = std::move(file);
    // What is held now counts as older than any file, so that an update may replace it.
    else if (reading.fault != DataFileFault::Missing && reading.fault != DataFileFault::NotAnObject)
        file_.lastModified = ManufacturerFile().lastModified;
    return static_cast<bool>(reading);
}

DataFileResult ManufacturerManager::writeDataFile() const
{
    try {
        const fileString path = dataFile();
        DataFileResult writing = file_.write(path);
        if (writing.fault == DataFileFault::MayNotBeWritten)
            Library::detail::reportUnwritable(path, Library::detail::places::manufacturerFileWrite);
        return writing;
    } catch (...) {  // out of memory: the old file stays
        return {DataFileFault::NotWritten, {}, {}};
    }
}

// ---- Updates from the content service --------------------------------------------------------------

void ManufacturerManager::checkForManufacturerUpdates(const std::u32string& dataUrl, const std::u32string& logoUrl)
{
    try {
        updateManufacturers(dataUrl, logoUrl);
    } catch (...) {
        // Out of memory. The cards are either all old or all new.
    }
}

ManufacturerUpdate ManufacturerManager::updateManufacturers(const std::u32string& dataUrl,
                                                            const std::u32string& logoUrl)
{
    const Curl::Run run;
    ManufacturerUpdate update;
    const fileString downloaded = temporaryDataFile();
    const FileReaper reaper(downloaded);
    if (Library::detail::fetchServiceFile(dataUrl, downloaded, update))
        take(logoUrl, update);
    return update;
}

void ManufacturerManager::take(const std::u32string& logoUrl, ManufacturerUpdate& update)
{
    using enum ManufacturerUpdateOutcome;
    const ManufacturerFile& offered = update.offered;
    std::vector<Library::ManufacturerChange> changes = Library::detail::compareCards(file_.cards, offered.cards);
    const bool textDiffers = file_.defaultText != offered.defaultText;
    update.differs = textDiffers || std::any_of(changes.begin(), changes.end(), isChange);
    update.outcome = NotNewer;
    if (!(file_.lastModified < offered.lastModified))
        return;
    Library::detail::fetchLogos(file_.cards, offered.cards, logoUrl, changes);
    update.outcome = Stopped;
    // If the cards were taken over now, the logos that are missing would never be asked for again.
    if (Curl::Stoppable::isStopped())
        return;
    takeOver(offered);
    update.changes = std::move(changes);
    update.textChanged = textDiffers;
    update.writing = writeDataFile();
    update.outcome = update.writing ? Taken : NotWritten;
}

// Lookups go on while an update runs, so the lock is held for the exchange only.
std::string ManufacturerManager::fetchLogo(const Manufacturer& card, const std::u32string& logoUrl)
{
    return Library::detail::fetchLogo(card, logoUrl);
}

void ManufacturerManager::takeOver(const ManufacturerFile& offered)
{
    ManufacturerFile taken = offered;
    taken.lastModified = Library::getTimeNow();
    const std::lock_guard lock(manufacturerManagerMutex);
    std::swap(file_, taken);
}
