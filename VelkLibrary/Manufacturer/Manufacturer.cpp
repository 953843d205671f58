#include <VelkLibrary/Manufacturer/Manufacturer.h>

#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <utility>

using boost::posix_time::ptime;
using Library::detail::defaultMarker;

namespace {

const std::u32string& resolved(const std::u32string& text, bool resolveDefault)
{
    if (!resolveDefault || text != defaultMarker)
        return text;
    return ManufacturerManager::getManufacturerManager().getDefaultText();
}

}  // namespace

Manufacturer::Manufacturer() : lastModified_(std::make_unique<ptime>(Library::getTimeNow())) {}

Manufacturer::Manufacturer(std::u32string name, std::u32string url, std::u32string phone, std::u32string fax,
                           fileString logo, std::u32string email, bool deleted, const ptime& lastModified)
    : name_(std::move(name)),
      url_(std::move(url)),
      phoneNumber_(std::move(phone)),
      faxNumber_(std::move(fax)),
      logoName_(std::move(logo)),
      email_(std::move(email)),
      deleted_(deleted),
      lastModified_(std::make_unique<ptime>(lastModified))
{}

Manufacturer::Manufacturer(const Manufacturer& other)
    : Manufacturer(other.name_, other.url_, other.phoneNumber_, other.faxNumber_, other.logoName_, other.email_,
                   other.deleted_, *other.lastModified_)
{}

Manufacturer& Manufacturer::operator=(const Manufacturer& other)
{
    name_ = other.name_;
    url_ = other.url_;
    phoneNumber_ = other.phoneNumber_;
    faxNumber_ = other.faxNumber_;
    logoName_ = other.logoName_;
    email_ = other.email_;
    deleted_ = other.deleted_;
    *lastModified_ = *other.lastModified_;
    return *this;
}

Manufacturer::~Manufacturer() = default;

bool Manufacturer::operator==(const Manufacturer& other) const
{
    return name_ == other.name_ && url_ == other.url_ && phoneNumber_ == other.phoneNumber_ &&
           logoName_ == other.logoName_ && email_ == other.email_ && deleted_ == other.deleted_ &&
           *lastModified_ == *other.lastModified_;
}

const std::u32string& Manufacturer::getManufacturerPhoneNumber(bool resolveDefault) const
{
    return resolved(phoneNumber_, resolveDefault);
}

const std::u32string& Manufacturer::getManufacturerFaxNumber(bool resolveDefault) const
{
    return resolved(faxNumber_, resolveDefault);
}

const std::u32string& Manufacturer::getManufacturerEmail(bool resolveDefault) const
{
    return resolved(email_, resolveDefault);
}

bool Manufacturer::isPhoneDefaulted() const
{
    return phoneNumber_ == defaultMarker;
}

bool Manufacturer::isFaxDefaulted() const
{
    return faxNumber_ == defaultMarker;
}

bool Manufacturer::isEmailDefaulted() const
{
    return email_ == defaultMarker;
}

void Manufacturer::setPhoneDefaulted()
{
    phoneNumber_ = defaultMarker;
}

void Manufacturer::setFaxDefaulted()
{
    faxNumber_ = defaultMarker;
}

void Manufacturer::setEmailDefaulted()
{
    email_ = defaultMarker;
}

fileString Manufacturer::getManufacturerLogoName() const
{
    return logoName_;
}

std::u32string Manufacturer::getManufacturerFullLogoName() const
{
    return (PathUtils::getObject().getManufacturerDataPath() / logoName_).unicodeString();
}

void Manufacturer::setLastModified(const ptime& time)
{
    *lastModified_ = time;
}
