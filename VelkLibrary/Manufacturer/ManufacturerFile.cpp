#include <VelkLibrary/Manufacturer/ManufacturerFile.h>

#include <VelkCommon/Json/json_writer.h>
#include <VelkCommon/Text/StringConvert.h>
#include <VelkCommon/Text/StringUtils.h>
#include <VelkCommon/Text/TextNumbers.h>
#include <VelkCommon/Text/TimeText.h>
#include <VelkLibrary/Data/detail/DataFile.h>

#include <algorithm>
#include <array>
#include <string_view>

using boost::posix_time::ptime;
using Library::DataFileResult;
using Library::DataFileValue;
using Library::detail::findMember;
using Library::detail::JsonNode;
using Library::detail::JsonObject;
using Library::detail::MemberPlace;
using Library::detail::valueOf;
using Library::detail::WrongMember;

namespace {

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

// The texts of a file: UTF-8, but Windows-1252 in old files.
class TextDecoder
{
public:
    explicit TextDecoder(const JsonObject& root) : utf8_(root.contains(versionKey)) {}

    std::u32string decode(const std::string& text) const
    {
        return utf8_ ? StringConvert::toUnicodeFromUtf8(text) : StringConvert::fromWin1252(text);
    }

    // Empty for a null `text`.
    std::u32string decode(const std::string* text) const { return text != nullptr ? decode(*text) : std::u32string(); }

    // The same as a path, which is UTF-8 itself.
    fileString decodePath(const std::string* text) const
    {
        return text != nullptr && utf8_ && StringConvert::isUtf8(*text) ? fileString(*text) : fileString(decode(text));
    }

private:
    bool utf8_;
};

// The members of a card, all found in one pass, because looking for them one after the other takes as long as
// all the rest of the reading. Of members that share a key, the first one counts.
class CardMembers
{
public:
    enum Member : std::size_t { id, lastModified, name, url, phone, fax, email, logo, deleted, count };

    /// `card` is the card's own key in the document.
    CardMembers(const JsonObject& object, std::string_view card) : card_(card)
    {
        for (const auto& [key, node] : object) {
            const auto place = static_cast<std::size_t>(std::find(keys.begin(), keys.end(), key) - keys.begin());
            if (place < count && nodes_[place] == nullptr)
                nodes_[place] = &node;
        }
    }

    // Null when the card has no such member; throws WrongMember when it is not a `Value`.
    template <typename Value>
    const Value* find(Member member) const
    {
        return nodes_[member] != nullptr ? &valueOf<Value>(*nodes_[member], place(member)) : nullptr;
    }

    const std::string* text(Member member) const { return find<std::string>(member); }

    MemberPlace place(Member member) const { return {card_, keys[member]}; }

private:
    static constexpr std::array<std::string_view, count> keys{idKey,  lastModifiedKey, nameKey, urlKey,    phoneKey,
                                                              faxKey, emailKey,        logoKey, deletedKey};
    std::string_view card_;
    std::array<const JsonNode*, count> nodes_{};
};

// Special values cannot be compared with a time: kept, they would stop updates or repeat them for ever.
ptime timeIn(const std::string& text, const MemberPlace& place)
{
    const ptime time = Library::fromString<ptime>(text);
    if (time.is_special())
        throw WrongMember{place.text(), DataFileValue::Time};
    return time;
}

// Not-a-date-time when the card has no time; it is then written as its text, which is accepted here, too.
ptime cardTime(const CardMembers& members)
{
    const std::string* const text = members.text(CardMembers::lastModified);
    if (text == nullptr || *text == Library::toString(ptime()))
        return ptime();
    return timeIn(*text, members.place(CardMembers::lastModified));
}

void readCard(std::string_view key, const JsonNode& node, const TextDecoder& texts, ManufacturerFile::Cards& cards)
{
    using Member = CardMembers::Member;
    const CardMembers members(valueOf<JsonObject>(node, {{}, key}), key);
    const int* const id = members.find<int>(Member::id);
    if (id == nullptr)
        return;
    const auto text = [&](Member member) { return texts.decode(members.text(member)); };
    const bool* const deleted = members.find<bool>(Member::deleted);
    // Of several cards with this id, the last one counts.
    auto place = cards.lower_bound(*id);
    if (place != cards.end() && place->first == *id)
        place = cards.erase(place);
    cards.try_emplace(place, *id, text(Member::name), text(Member::url), text(Member::phone), text(Member::fax),
                      texts.decodePath(members.text(Member::logo)), text(Member::email), deleted != nullptr && *deleted,
                      cardTime(members));
}

void readRoot(JsonObject& root, ManufacturerFile& file)
{
    const TextDecoder texts(root);
    const MemberPlace timePlace{{}, lastModifiedKey};
    const std::string* const time = findMember<std::string>(root, timePlace);
    file.lastModified = time != nullptr ? timeIn(*time, timePlace) : Library::getTimeNow();
    const std::string* const text = findMember<std::string>(root, {{}, defaultTextKey});
    file.defaultText =
        text != nullptr ? texts.decode(*text) : StringUtils::loadUnicodeString(Velk::textNumbers::manufacturerCard);
    Library::detail::PartsRead partsRead;
    for (auto& [key, value] : root)
        if (StringUtils::iStartsWith(key, cardPrefix)) {
            readCard(key, value, texts, file.cards);
            partsRead.free(value);
        }
}

// ---- Writing -------------------------------------------------------------------------------------

// An infinite time would make the whole file unreadable.
std::string writtenTime(const ptime& time)
{
    return Library::toString(time.is_special() ? ptime() : time);
}

json_writer::Object objectOf(long id, const Manufacturer& card)
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

json_writer::Object documentOf(const ManufacturerFile& file)
{
    json_writer::Object root;
    root.add_element(versionKey, formatVersion);
    root.add_element(lastModifiedKey, Library::toString(Library::getTimeNow()));
    root.add_element(defaultTextKey, file.defaultText);
    for (const auto& [id, card] : file.cards)
        root.add_element(std::string(cardPrefix) + "_" + std::to_string(id), objectOf(id, card));
    return root;
}

}  // namespace

DataFileResult ManufacturerFile::read(const fileString& path)
{
    *this = {};
    DataFileResult result = Library::detail::readDataFile(path, [this](JsonObject& root) { readRoot(root, *this); });
    if (!result)
        *this = {};
    return result;
}

DataFileResult ManufacturerFile::write(const fileString& path) const
{
    return Library::detail::writeDataFile(path, [this] { return documentOf(*this); });
}

void ManufacturerFile::stampChanges(Cards& cards, const Cards& before)
{
    for (auto& [id, card] : cards) {
        const auto old = before.find(id);
        if (old != before.end() && !(old->second == card))
            card.setLastModified(Library::getTimeNow());
    }
}
