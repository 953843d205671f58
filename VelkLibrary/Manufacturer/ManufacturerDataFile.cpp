#include <VelkLibrary/Manufacturer/detail/ManufacturerDataFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Json/json_writer.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>
#include <VelkLibrary/detail/DataFile.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <stdexcept>
#include <string>

using boost::posix_time::ptime;
using Library::detail::findMember;
using Library::detail::JsonObject;
using Library::detail::valueOf;

namespace {

constexpr std::size_t unwritableLine = 244;
constexpr unsigned int defaultTextNumber = 10108;
constexpr const char* formatVersion = "42";

// The keys of the file.
constexpr const char* versionKey = "Version";
constexpr const char* lastModifiedKey = "Last_Modified";
constexpr const char* defaultTextKey = "Default_Text";
constexpr const char* cardPrefix = "Manufacturer";
constexpr const char* idKey = "Id";
constexpr const char* nameKey = "Name";
constexpr const char* urlKey = "Url";
constexpr const char* phoneKey = "Phone";
constexpr const char* faxKey = "Fax";
constexpr const char* emailKey = "Email";
constexpr const char* logoKey = "Logo";
constexpr const char* deletedKey = "Deleted";

// ---- Reading -------------------------------------------------------------------------------------

// The texts of a file: UTF-8, but Windows-1252 in old ones.
class TextDecoder
{
public:
    explicit TextDecoder(const JsonObject& root) : utf8_(root.contains(versionKey)) {}

    std::u32string decode(const std::string& text) const
    {
        return utf8_ ? StringConvert::toUnicodeFromUtf8(text) : StringConvert::fromWin1252(text);
    }

    // Empty when there is no such member.
    std::u32string member(const JsonObject& object, const std::string& key) const
    {
        const std::string* const text = findMember<std::string>(object, key);
        return text != nullptr ? decode(*text) : std::u32string();
    }

private:
    bool utf8_;
};

// What is no time compares with none; kept, it would stop updates or repeat them for ever.
ptime timeIn(const std::string& text)
{
    const ptime time = Library::fromString<ptime>(text);
    if (time.is_special())
        throw std::invalid_argument("A data file holds a time that is none.");
    return time;
}

// Not-a-date-time when the card has none, and that is then written too.
ptime cardTime(const JsonObject& object)
{
    const std::string* const text = findMember<std::string>(object, lastModifiedKey);
    return text == nullptr || *text == Library::toString(ptime()) ? ptime() : timeIn(*text);
}

void readCard(const JsonObject& object, const TextDecoder& texts, std::map<long, Manufacturer>& cards)
{
    const int* const id = findMember<int>(object, idKey);
    if (id == nullptr)
        return;
    const bool* const deleted = findMember<bool>(object, deletedKey);
    // Of several with this id, the last one counts.
    auto place = cards.lower_bound(*id);
    if (place != cards.end() && place->first == *id)
        place = cards.erase(place);
    cards.try_emplace(place, *id, texts.member(object, nameKey), texts.member(object, urlKey),
                      texts.member(object, phoneKey), texts.member(object, faxKey),
                      fileString(texts.member(object, logoKey)), texts.member(object, emailKey),
                      deleted != nullptr && *deleted, cardTime(object));
}

// ---- Writing -------------------------------------------------------------------------------------

json_writer::Object documentOf(long id, const Manufacturer& card)
{
    json_writer::Object object;
    object.add_element(idKey, id);
    object.add_element(lastModifiedKey, Library::toString(card.getLastModified()));
    object.add_element(nameKey, card.getManufacturerName());
    object.add_element(urlKey, card.getManufacturerUrl());
    object.add_element(phoneKey, card.getManufacturerPhoneNumber(false));
    object.add_element(faxKey, card.getManufacturerFaxNumber(false));
    object.add_element(emailKey, card.getManufacturerEmail(false));
    object.add_element(logoKey, StringConvert::toStdUtf8String(card.getManufacturerLogoName()));
    object.add_element(deletedKey, card.isDeleted());
    return object;
}

json_writer::Object documentOf(const std::map<long, Manufacturer>& cards, const std::u32string& defaultText)
{
    json_writer::Object root;
    root.add_element(versionKey, formatVersion);
    root.add_element(lastModifiedKey, Library::toString(Library::getTimeNow()));
    root.add_element(defaultTextKey, defaultText);
    for (const auto& [id, card] : cards)
        root.add_element(std::string(cardPrefix) + "_" + std::to_string(id), documentOf(id, card));
    return root;
}

void writeDocument(const fileString& path, const json_writer::Object& root)
{
    json_writer::write_file(StringConvert::toStdUtf8String(path), root);
    if (!FileUtils::pathExists(path))
        return;
    FileUtils::makeFileWritable(path);
    FileUtils::setFilePermEveryoneFullAccess(path);
}

}  // namespace

namespace Library::detail {

fileString manufacturerDataFile()
{
    const fileString folder = PathUtils::getObject().getManufacturerDataPath();
    if (!FileUtils::pathExists(folder))
        FileUtils::createDirectoriesWithPerm(folder);
    return folder / fileString(manufacturerDataFileName);
}

ptime earliestTime()
{
    return ptime(boost::date_time::min_date_time);
}

}  // namespace Library::detail

bool ManufacturerManager::readDataFile(const fileString& path, Cards& cards, Time& lastModified,
                                       std::u32string& defaultText)
{
    if (!path.pathExists())
        return false;
    try {
        cards.clear();
        const auto document = Library::detail::readJsonFile(path);
        const auto* const root = boost::any_cast<JsonObject>(document.get());
        if (root == nullptr)
            return false;
        const TextDecoder texts(*root);
        const std::string* const time = findMember<std::string>(*root, lastModifiedKey);
        lastModified = time != nullptr ? timeIn(*time) : Library::getTimeNow();
        const std::string* const text = findMember<std::string>(*root, defaultTextKey);
        defaultText = text != nullptr ? texts.decode(*text) : StringUtils::loadUnicodeString(defaultTextNumber);
        for (const auto& [key, value] : *root)
            if (StringUtils::iStartsWith(key, cardPrefix))
                readCard(valueOf<JsonObject>(value), texts, cards);
        return true;
    } catch (...) {
        cards.clear();
        defaultText.clear();
        lastModified = Library::detail::earliestTime();
        return false;
    }
}

void ManufacturerManager::writeDataFile() const
{
    try {
        const json_writer::Object root = documentOf(manufacturers_, defaultText_);
        const fileString path = Library::detail::manufacturerDataFile();
        if (Library::detail::isWritableOrReport(path, Library::detail::manufacturerManagerSource, unwritableLine))
            writeDocument(path, root);
    } catch (...) {
        // The old file stays.
    }
}
