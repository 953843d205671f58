#pragma once

#include <VelkCommon/Files/fileString.h>
#include <VelkLibrary/Export.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <memory>
#include <string>

/// The contact card of a manufacturer of library content. Its id is the key under which ManufacturerManager
/// keeps it.
///
/// Phone, fax and e-mail may hold the marker "default" (exactly so): the manager's default text is shown in
/// their place. A plain value: copies share nothing. Not synchronised.
class VELKLIBRARY_EXPORT Manufacturer
{
public:
    /// An empty card whose last change is now.
    Manufacturer();
    /// A card with these contents. `logo` is a file name in the manufacturer data folder.
    Manufacturer(std::u32string name, std::u32string url, std::u32string phone, std::u32string fax, fileString logo,
                 std::u32string email, bool deleted, const boost::posix_time::ptime& lastModified);
    /// A copy that shares nothing with `other`, not even the time.
    Manufacturer(const Manufacturer& other);
    /// Copies every field of `other`.
    Manufacturer& operator=(const Manufacturer& other);
    ~Manufacturer();

    /// Whether the cards are equal, the time of the last change included. The fax is not compared.
    bool operator==(const Manufacturer& other) const;

    /// For display.
    const std::u32string& getManufacturerName() const noexcept { return name_; }
    /// The manufacturer's web address.
    const std::u32string& getManufacturerUrl() const noexcept { return url_; }

    /// The phone number as it is stored. With `resolveDefault`, the manager's default text stands in place of
    /// the marker; asking for it takes the manager's lock, and creates the manager when there is none. The
    /// reference is valid until the card or the manager changes.
    const std::u32string& getManufacturerPhoneNumber(bool resolveDefault) const;
    /// The same for the fax number.
    const std::u32string& getManufacturerFaxNumber(bool resolveDefault) const;
    /// The same for the e-mail address.
    const std::u32string& getManufacturerEmail(bool resolveDefault) const;

    /// Whether the phone number is the marker.
    bool isPhoneDefaulted() const;
    /// Whether the fax number is the marker.
    bool isFaxDefaulted() const;
    /// Whether the e-mail address is the marker.
    bool isEmailDefaulted() const;
    /// Stores the marker in place of the phone number.
    void setPhoneDefaulted();
    /// Stores the marker in place of the fax number.
    void setFaxDefaulted();
    /// Stores the marker in place of the e-mail address.
    void setEmailDefaulted();

    /// The logo's name as it is stored, relative to the manufacturer data folder.
    fileString getManufacturerLogoName() const;
    /// The path of the logo in the manufacturer data folder; the path of that folder when the card names no
    /// logo.
    std::u32string getManufacturerFullLogoName() const;

    /// Whether the manufacturer was withdrawn; its card is kept.
    bool isDeleted() const noexcept { return deleted_; }

    /// The time of the last change, UTC; not-a-date-time where a data file gives none.
    const boost::posix_time::ptime& getLastModified() const noexcept { return *lastModified_; }
    /// Changes the time of the last change.
    void setLastModified(const boost::posix_time::ptime& time);

private:
    std::u32string name_;
    std::u32string url_;
    std::u32string phoneNumber_;
    std::u32string faxNumber_;
    fileString logoName_;
    std::u32string email_;
    bool deleted_ = false;
    std::unique_ptr<boost::posix_time::ptime> lastModified_;
};
