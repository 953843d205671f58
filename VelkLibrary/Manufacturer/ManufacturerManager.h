#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>
#include <VelkLibrary/Manufacturer/Manufacturer.h>
#include <VelkLibrary/Manufacturer/ManufacturerUpdate.h>

#include <map>
#include <string>

/// The store of the manufacturers' cards, by their ids. One instance at a time, made at the first use from
/// the data file; the file is written by saveModifiedManufacturers(), manageManufacturerData(),
/// checkForManufacturerUpdates() and updateManufacturers() only. Its content as a value is a ManufacturerFile.
///
/// The data file, "manufacturer_data.json" in the manufacturer data folder, is UTF-8 JSON:
///
///     {"Version": "42", "Last_Modified": "20260301T140559", "Default_Text": "See the manufacturer's web site",
///      "Manufacturer_7": {"Id": 7, "Last_Modified": "20260115T080000", "Name": "Acme Doors",
///                         "Url": "https://acme.example", "Phone": "default", "Fax": "default",
///                         "Email": "default", "Logo": "acme.png", "Deleted": false}}
///
/// The texts of a file without "Version" are Windows-1252. A card's id is its "Id"; a card without one is
/// skipped. A file with a member of the wrong type, or with a time that is none, counts as a whole as
/// unreadable; a card's time may be the text of not-a-date-time.
///
/// Nothing throws but for memory and for locks, whose faults are std::system_error. Any thread may call
/// getManufacturerManager(), cleanup(), getManufacturer(), manufacturerExists() and getIdNameMap() at any
/// time, the last three also on an instance that another thread has just cleaned up: they then ask the
/// one that is there, and know nothing where there is none. The other operations must not run while
/// another one of these does on another thread, nor while somebody uses a reference from here.
class VELKLIBRARY_EXPORT ManufacturerManager
{
public:
    /// The instance, made from the data file when there is none. A missing or unreadable file makes an
    /// empty store.
    static ManufacturerManager& getManufacturerManager();
    /// Destroys the instance; the next use reads the file anew.
    static void cleanup();

    ManufacturerManager(const ManufacturerManager&) = delete;
    ManufacturerManager& operator=(const ManufacturerManager&) = delete;
    ~ManufacturerManager();

    /// The card; an empty one for an id that is unknown. The reference is valid until the cards are
    /// replaced or the instance is destroyed.
    const Manufacturer& getManufacturer(long id) const;
    /// There is a card of this id, be it a deleted one.
    bool manufacturerExists(long id) const;
    /// The names of all cards, deleted ones too.
    std::map<long, std::u32string> getIdNameMap() const;

    /// All cards, in ascending order of their ids. Takes no lock.
    const std::map<long, Manufacturer>& getManufacturers() const noexcept { return file_.cards; }
    /// What stands in place of the marker "default". Takes no lock.
    const std::u32string& getDefaultText() const noexcept { return file_.defaultText; }

    /// Replaces all cards and the default text by copies and writes the data file. Cards that differ from
    /// those held here (the fax does not count) get the current time as their last change, in `cards` too;
    /// new ones keep theirs.
    void saveModifiedManufacturers(std::map<long, Manufacturer>& cards, const std::u32string& defaultText);
    /// Writes the data file. The user is told when it may not be written; other faults are lost.
    void manageManufacturerData() const;
    /// Tells the user when the data file cannot be written. Writes nothing, but makes the folder.
    static void checkWriteDataFile();

    /// Takes over the cards and the default text of the data file in another folder; files are still
    /// written to the manufacturer data folder. False when there is no such file or it cannot be read; the
    /// cards and the text stay then.
    bool changeManufacturerDataPath(const fileString& folder);

    /// Brings the cards up to date from the content service: takes over the service's data file when it is
    /// newer than this one, with the logos of the cards that are newer or new. Cards that the service does
    /// not have are dropped. Whatever fails is silent; without the service's file nothing changes.
    ///
    /// `dataUrl` is the address of the service's data file; a logo's is `logoUrl`, "&logo-path=" and the
    /// logo's name. Logos are written to and removed from the manufacturer data folder only, by names
    /// that are plain file names and none of the module's own files; other names are stored with
    /// their card, and nothing more.
    void checkForManufacturerUpdates(const std::u32string& dataUrl, const std::u32string& logoUrl);

    /// The same, with an account of what it learned and did. Unlike the above it throws `std::bad_alloc`; the cards
    /// are the old ones or the new ones then.
    Library::ManufacturerUpdate updateManufacturers(const std::u32string& dataUrl, const std::u32string& logoUrl);

private:
    ManufacturerManager();

    Library::DataFileResult writeDataFile() const;
    void take(const std::u32string& logoUrl, Library::ManufacturerUpdate& update);
    void takeOver(const ManufacturerFile& offered);

    ManufacturerFile file_;  // its time is that of the file that was read, or of the last update
    Manufacturer emptyManufacturer_;
};
