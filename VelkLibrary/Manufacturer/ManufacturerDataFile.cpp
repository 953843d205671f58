#include <VelkLibrary/Manufacturer/detail/ManufacturerDataFile.h>

#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Files/PathUtils.h>
#include <VelkCommon/Json/json_writer.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Data/detail/DataFile.h>
#include <VelkLibrary/Manufacturer/ManufacturerManager.h>
#include <VelkLibrary/detail/ModuleStatics.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

using boost::posix_time::ptime;
using Library::detail::findMember;
using Library::detail::JsonNode;
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

    // Empty when there is none.
    std::u32string decode(const std::string* text) const { return text != nullptr ? decode(*text) : std::u32string(); }

private:
    bool utf8_;
};

// The members of a card, all found in one pass: to look for one after the other takes as long as all the
// rest. Of members that share a key, the first one counts.
class CardMembers
{
public:
    enum Member : std::size_t { id, lastModified, name, url, phone, fax, email, logo, deleted, count };

    explicit CardMembers(const JsonObject& object)
    {
        constexpr std::array<std::string_view, count> keys{idKey,  lastModifiedKey, nameKey, urlKey,    phoneKey,
                                                           faxKey, emailKey,        logoKey, deletedKey};
        for (const auto& [key, node] : object) {
            const auto place = static_cast<std::size_t>(std::find(keys.begin(), keys.end(), key) - keys.begin());
            if (place < count && nodes_[place] == nullptr)
                nodes_[place] = &node;
        }
    }

    // Null when there is none; throws when it is no `Value`.
    template <typename Value>
    const Value* find(Member member) const
    {
        return nodes_[member] != nullptr ? &valueOf<Value>(*nodes_[member]) : nullptr;
    }

    const std::string* text(Member member) const { return find<std::string>(member); }

private:
    std::array<const JsonNode*, count> nodes_{};
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
ptime cardTime(const std::string* text)
{
    return text == nullptr || *text == Library::toString(ptime()) ? ptime() : timeIn(*text);
}

void readCard(const JsonObject& object, const TextDecoder& texts, std::map<long, Manufacturer>& cards)
{
    using Member = CardMembers::Member;
    const CardMembers members(object);
    const int* const id = members.find<int>(Member::id);
    if (id == nullptr)
        return;
    const auto text = [&](Member member) { return texts.decode(members.text(member)); };
    const bool* const deleted = members.find<bool>(Member::deleted);
    // Of several with this id, the last one counts.
    auto place = cards.lower_bound(*id);
    if (place != cards.end() && place->first == *id)
        place = cards.erase(place);
    cards.try_emplace(place, *id, text(Member::name), text(Member::url), text(Member::phone), text(Member::fax),
                      fileString(text(Member::logo)), text(Member::email), deleted != nullptr && *deleted,
                      cardTime(members.text(Member::lastModified)));
}

// ---- Writing -------------------------------------------------------------------------------------

// An infinite time would make the whole file one that cannot be read.
std::string writtenTime(const ptime& time)
{
    return Library::toString(time.is_special() ? ptime() : time);
}

json_writer::Object documentOf(long id, const Manufacturer& card)
{
    json_writer::Object object;
    object.add_element(idKey, id);
    object.add_element(lastModifiedKey, writtenTime(card.getLastModified()));
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
