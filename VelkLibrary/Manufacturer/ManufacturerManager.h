#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Manufacturer/Manufacturer.h>
#include <VelkLibrary/Manufacturer/ManufacturerUpdate.h>

#include <map>
#include <string>

/// Keeps the manufacturers' cards by their ids. There is one instance at a time, made from the data file at the
/// first use. Only saveModifiedManufacturers(), manageManufacturerData(), checkForManufacturerUpdates() and
/// updateManufacturers() write the file. A ManufacturerFile holds its content as a plain value.
///
/// The data file, "manufacturer_data.json" in the manufacturer data folder, is UTF-8 JSON:
///
///     {"Version": "42", "Last_Modified": "20260301T140559", "Default_Text": "See the manufacturer's web site",
///      "Manufacturer_7": {"Id": 7, "Last_Modified": "20260115T080000", "Name": "Acme Doors",
///                         "Url": "https://acme.example", "Phone": "default", "Fax": "default",
///                         "Email": "default", "Logo": "acme.png", "Deleted": false}}
///
/// The texts of a file without "Version" are Windows-1252. A card's id is its "Id"; a card without one is
/// skipped. A member of the wrong type, or a text that is not a time where one should be, makes the whole file
/// unreadable; a card's time may also be the text of not-a-date-time.
///
/// Nothing throws except `std::bad_alloc`, and std::system_error when a lock fails. Any thread may call
/// getManufacturerManager(), cleanup(), getManufacturer(), manufacturerExists() and getIdNameMap() at any time,
/// the last three even on an instance that another thread has just cleaned up: they then ask the current
/// instance, and find nothing when there is none. None of the other operations may run while another of them
/// runs on another thread, nor while somebody uses a reference from here.
class VELKLIBRARY_EXPORT ManufacturerManager
{
public:
    /// The instance, made from the data file when there is none. Without a readable file it holds no cards.
    static ManufacturerManager& getManufacturerManager();
    /// Destroys the instance; the next use reads the file anew.
    static void cleanup();

    ManufacturerManager(const ManufacturerManager&) = delete;
    ManufacturerManager& operator=(const ManufacturerManager&) = delete;
    ~ManufacturerManager();

    /// The card with this id; an empty card when the id is unknown. The reference is valid until the cards are
    /// replaced or the instance is destroyed.
    const Manufacturer& getManufacturer(long id) const;
    /// Whether there is a card with this id, even a deleted one.
    bool manufacturerExists(long id) const;
    /// The names of all cards, deleted ones too.
    std::map<long, std::u32string> getIdNameMap() const;

    /// All cards, in ascending order of their ids. Takes no lock.
    const std::map<long, Manufacturer>& getManufacturers() const noexcept { return file_.cards; }
    /// The text that is shown in place of the marker "default". Takes no lock.
    const std::u32string& getDefaultText() const noexcept { return file_.defaultText; }

    /// Replaces all cards and the default text with copies of these, and writes the data file. Cards that
    /// differ from those held here (the fax does not count) get the current time as their last change, in
    /// `cards` too; new cards keep theirs.
    void saveModifiedManufacturers(std::map<long, Manufacturer>& cards, const std::u32string& defaultText);
    /// Writes the data file. The user is told when the file may not be written; other faults are not reported.
    void manageManufacturerData() const;
    /// Tells the user when the data file cannot be written. Writes no file, but makes the folder when it is
    /// missing.
    static void checkWriteDataFile();

    /// Takes over the cards and the default text of the data file in another folder; files are still
    /// written to the manufacturer data folder. False when there is no such file or it cannot be read; the
    /// cards and the text then stay as they are.
    bool changeManufacturerDataPath(const fileString& folder);

    /// Brings the cards up to date from the content service: takes over the service's data file when it is
    /// newer than this one, with the logos of the cards that are newer or new. Cards that the service does
    /// not have are dropped. Failures are not reported; without the service's file nothing changes.
    ///
    /// `dataUrl` is the address of the service's data file; a logo's is `logoUrl`, "&logo-path=" and the
    /// logo's name. Logos are written to and removed from the manufacturer data folder only, under safe
    /// names (see Library::isSafeLogoName()), whose folders are made where they are missing; a link there is not
    /// followed. Any other name is kept in its card, and no file is touched for it.
    void checkForManufacturerUpdates(const std::u32string& dataUrl, const std::u32string& logoUrl);

    /// Does the same and returns an account of what it learned and did. Unlike checkForManufacturerUpdates() it
    /// may throw `std::bad_alloc`; the cards are then either all old or all new.
    Library::ManufacturerUpdate updateManufacturers(const std::u32string& dataUrl, const std::u32string& logoUrl);

    /// Fetches the logo of a card from the service, as an update does; `logoUrl` as there. For a logo that is missing
    /// although its card is current. Returns why it did not come, UTF-8; empty when it did. Any thread.
    static std::string fetchLogo(const Manufacturer& card, const std::u32string& logoUrl);

private:
    ManufacturerManager();

    Library::DataFileResult writeDataFile() const;
    void take(const std::u32string& logoUrl, Library::ManufacturerUpdate& update);
    void takeOver(const ManufacturerFile& offered);

    ManufacturerFile file_;  // its time is that of the file that was read, or of the last update
    Manufacturer emptyManufacturer_;
};
