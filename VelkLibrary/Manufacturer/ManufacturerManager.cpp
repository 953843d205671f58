#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/Manufacturer/detail/ManufacturerDataFile.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <mutex>
#include <utility>

using Library::detail::manufacturerDataFile;
using Library::detail::manufacturerManagerMutex;

namespace {

// Guarded by the manufacturer lock, but at the end of the process.
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
ManufacturerManager::ManufacturerManager() : lastModified_(std::make_unique<Time>(Library::detail::earliestTime()))
{
    readDataFile(manufacturerDataFile(), manufacturers_, *lastModified_, defaultText_);
}

ManufacturerManager::~ManufacturerManager() = default;

// ---- Lookups -------------------------------------------------------------------------------------

// They ask the instance that is held, which is this one unless another thread has just cleaned it up;
// then nothing of this one may be touched any more.

const Manufacturer& ManufacturerManager::getManufacturer(long id) const
{
    const std::lock_guard lock(manufacturerManagerMutex);
    const ManufacturerManager* const held = heldInstance().get();
    if (held == nullptr) {
        static const Manufacturer empty;
        return empty;
    }
    const auto found = held->manufacturers_.find(id);
    return found != held->manufacturers_.end() ? found->second : held->emptyManufacturer_;
}

bool ManufacturerManager::manufacturerExists(long id) const
{
    const std::lock_guard lock(manufacturerManagerMutex);
    const ManufacturerManager* const held = heldInstance().get();
    return held != nullptr && held->manufacturers_.contains(id);
}

std::map<long, std::u32string> ManufacturerManager::getIdNameMap() const
{
    const std::lock_guard lock(manufacturerManagerMutex);
    std::map<long, std::u32string> names;
    if (const ManufacturerManager* const held = heldInstance().get())
        for (const auto& [id, card] : held->manufacturers_)
            names.emplace_hint(names.end(), id, card.getManufacturerName());
    return names;
}

// ---- Changes -------------------------------------------------------------------------------------

void ManufacturerManager::saveModifiedManufacturers(std::map<long, Manufacturer>& cards,
                                                    const std::u32string& defaultText)
{
    std::u32string newText = defaultText;  // it may stand in one of the cards
    for (auto& [id, card] : cards) {
        const auto held = manufacturers_.find(id);
        if (held != manufacturers_.end() && !(held->second == card))
            card.setLastModified(Library::getTimeNow());
    }
    if (&cards != &manufacturers_)
        manufacturers_ = cards;
    defaultText_ = std::move(newText);
    writeDataFile();
}

void ManufacturerManager::manageManufacturerData() const
{
    writeDataFile();
}

void ManufacturerManager::checkWriteDataFile()
{
    const fileString path = manufacturerDataFile();
    const bool writable = FileUtils::pathExists(path) ? FileUtils::canReplaceFile(path) : FileUtils::canWriteFile(path);
    if (!writable)
        Library::detail::reportUnwritable(path, Library::detail::manufacturerManagerSource, 229);
}

bool ManufacturerManager::changeManufacturerDataPath(const fileString& folder)
{
    const fileString path = folder / fileString(Library::detail::manufacturerDataFileName);
    if (!FileUtils::pathExists(path))
        return false;
    Cards keptCards = manufacturers_;
    std::u32string keptText = defaultText_;
    if (readDataFile(path, manufacturers_, *lastModified_, defaultText_))
        return true;
    manufacturers_ = std::move(keptCards);
    defaultText_ = std::move(keptText);
    return false;
}
