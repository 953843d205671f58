// Reads any bytes as a manufacturers' data file. Whatever they are, the cards that were read are written as a
// file with the same cards.
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/HostServices.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>

#include "Check.h"
#include "WorkFolder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

namespace {

// A folder for the data file, which lasts as long as the process.
class DataFolder
{
public:
    DataFolder()
    {
        Velk::HostServices host;
        host.folders.manufacturerData = fileString(folder_.path().string());
        host.assertionReportsEnabled = [] { return false; };
        Velk::installHost(std::move(host));
    }

    void write(const std::uint8_t* data, std::size_t size) const
    {
        std::ofstream file(folder_.path() / "manufacturer_data.json", std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

private:
    fuzz::OwnFolder folder_;
};

bool isEqual(const std::pair<const long, Manufacturer>& one, const std::pair<const long, Manufacturer>& other)
{
    const auto time = [](const Manufacturer& card) { return Library::toString(card.getLastModified()); };
    return one.first == other.first && one.second == other.second &&
           one.second.getManufacturerFaxNumber(false) == other.second.getManufacturerFaxNumber(false) &&
           time(one.second) == time(other.second);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const DataFolder folder;
    folder.write(data, size);
    ManufacturerManager::cleanup();
    const ManufacturerManager& first = ManufacturerManager::getManufacturerManager();
    const auto cards = first.getManufacturers();
    const std::u32string text = first.getDefaultText();
    first.manageManufacturerData();
    ManufacturerManager::cleanup();
    const ManufacturerManager& second = ManufacturerManager::getManufacturerManager();
    const auto& again = second.getManufacturers();
    fuzz::check(std::equal(cards.begin(), cards.end(), again.begin(), again.end(), isEqual), "the cards are kept");
    fuzz::check(second.getDefaultText() == text, "the default text is kept");
    return 0;
}
