#include <VelkCommon/Archive/detail/ZipWriter.h>

#include <VelkCommon/Archive/detail/ZipFormat.h>
#include <VelkCommon/Archive/detail/ZipOffset.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace Velk::detail {
namespace {

// Neighbouring entries are copied together, but no more than this many bytes, so that a failure shows soon.
constexpr std::uint64_t pendingLimit = std::uint64_t{8} << 20;
constexpr std::size_t directoryBlock = std::size_t{1} << 20;

/// `header`, a local header or a record of the directory, with another name, in UTF-8.
std::string renamed(std::string_view header, std::size_t headerSize, std::size_t nameSizeField, std::size_t flagsField,
                    const std::string& name)
{
    const std::size_t oldSize = zip::read16(header, nameSizeField);
    std::string result(header.substr(0, headerSize));
    zip::write(result, nameSizeField, static_cast<std::uint16_t>(name.size()));
    const auto flags = static_cast<std::uint16_t>(zip::read16(header, flagsField) | zip::flag::utf8);
    zip::write(result, flagsField, flags);
    return result.append(name).append(header.substr(headerSize + oldSize));
}

template <typename Number>
Number clamped(std::uint64_t value)
{
    return static_cast<Number>(std::min<std::uint64_t>(value, static_cast<Number>(-1)));
}

}  // namespace

ZipWriter::ZipWriter(const fileString& target, std::unique_ptr<ZipArchive> old)
    : old_(std::move(old)), file_(target), good_(file_.isOpen())
{
    if (old_ && good_)
        takeOver();
}

// Anything in front of the old archive (a program, say) stays there.
void ZipWriter::takeOver()
{
    const ZipDirectory& directory = old_->directory();
    comment_ = directory.comment();
    records_.reserve(directory.entries().size());
    std::optional<std::uint64_t> front;
    for (const ZipEntry& entry : directory.entries()) {
        front = std::min(front.value_or(entry.begin), entry.begin);
        put(directory.name(entry), {std::string(directory.record(entry)), entry.begin, entry.limit, true});
    }
    if (front)
        copy(*old_, 0, *front);
}

void ZipWriter::put(const fileString& name, Record record)
{
    const auto [place, isNew] = byName_.try_emplace(name.utf8(), records_.size());
    if (isNew)
        records_.push_back(std::move(record));
    else
        records_[place->second] = std::move(record);
}

bool ZipWriter::add(ZipArchive& source, const ZipEntry& entry, const fileString& name)
{
    const auto extent = good_ ? source.extent(entry) : std::nullopt;
    if (!extent)
        return false;
    const ZipDirectory& directory = source.directory();
    if (name != directory.name(entry))
        return addRenamed(source, entry, *extent, name);
    const std::uint64_t begin = offset_;
    if (!copy(source, extent->begin, extent->end))
        return false;
    put(name, {std::string(directory.record(entry)), begin});
    changed_ = true;
    return true;
}

bool ZipWriter::addRenamed(ZipArchive& source, const ZipEntry& entry, const ZipExtent& extent, const fileString& name)
{
    namespace central = zip::central;
    std::string header(static_cast<std::size_t>(extent.dataBegin - extent.begin), '\0');
    const long long got = source.file().readAt(static_cast<long long>(extent.begin), header.data(), header.size());
    if (got != static_cast<long long>(header.size()) || name.utf8().size() > zip::full16)
        return false;
    header = renamed(header, zip::local::size, zip::local::nameSize, zip::local::flags, name.utf8());
    const std::string record =
        renamed(source.directory().record(entry), central::size, central::nameSize, central::flags, name.utf8());
    const std::uint64_t begin = offset_;
    if (!write(header) || !copy(source, extent.dataBegin, extent.end))
        return false;
    put(name, {record, begin});
    changed_ = true;
    return true;
}

bool ZipWriter::copy(ZipArchive& source, std::uint64_t begin, std::uint64_t end)
{
    const bool follows = pending_.source == &source && pending_.end == begin;
    if (!follows) {
        flush();
        pending_ = {&source, begin, begin};
    }
    pending_.end = end;
    offset_ += end - begin;
    if (pending_.end - pending_.begin >= pendingLimit)
        flush();
    return good_;
}

bool ZipWriter::flush()
{
    const Range range = std::exchange(pending_, {});
    if (good_ && range.end > range.begin)
        good_ = file_.copyRange(range.source->file(), static_cast<long long>(range.begin),
                                static_cast<long long>(range.end - range.begin));
    return good_;
}

bool ZipWriter::write(std::string_view bytes)
{
    good_ = flush() && file_.write(bytes);
    offset_ += bytes.size();
    return good_;
}

bool ZipWriter::finish()
{
    const bool finished = flush() && copyOld() && writeDirectory();
    if (old_)
        old_->close();
    good_ = finished;
    return finished;
}

// Copies the old entries in the order of the file, so that neighbours are copied together.
bool ZipWriter::copyOld()
{
    std::vector<Record*> kept;
    for (Record& record : records_)
        if (record.inOld)
            kept.push_back(&record);
    std::sort(kept.begin(), kept.end(),
              [](const Record* left, const Record* right) { return left->begin < right->begin; });
    for (Record* record : kept) {
        const std::uint64_t begin = offset_;
        if (!copy(*old_, record->begin, record->end))
            return false;
        record->begin = begin;
    }
    return flush();
}

bool ZipWriter::writeDirectory()
{
    const std::uint64_t begin = offset_;
    std::string block;
    for (Record& record : records_) {
        if (!setOffset(record.text, record.begin))
            return false;
        block += record.text;
        if (block.size() >= directoryBlock && !write(std::exchange(block, {})))
            return false;
    }
    return write(block) && write(endRecords(begin));
}

std::string ZipWriter::endRecords(std::uint64_t directoryBegin) const
{
    const std::uint64_t count = records_.size();
    const std::uint64_t size = offset_ - directoryBegin;
    std::string records;
    if (count >= zip::full16 || size >= zip::full32 || directoryBegin >= zip::full32) {
        namespace end64 = zip::end64;
        namespace locator64 = zip::locator64;
        std::string wide(end64::size + locator64::size, '\0');
        zip::write(wide, 0, end64::signature);
        zip::write(wide, end64::remainingSize, std::uint64_t{end64::size - end64::versionMadeBy});
        zip::write(wide, end64::versionMadeBy, zip::versionWithZip64);
        zip::write(wide, end64::versionNeeded, zip::versionWithZip64);
        zip::write(wide, end64::countHere, count);
        zip::write(wide, end64::count, count);
        zip::write(wide, end64::directorySize, size);
        zip::write(wide, end64::directoryOffset, directoryBegin);
        zip::write(wide, end64::size, locator64::signature);
        zip::write(wide, end64::size + locator64::recordOffset, offset_);
        zip::write(wide, end64::size + locator64::disks, std::uint32_t{1});
        records += wide;
    }
    std::string end(zip::end::size, '\0');
    zip::write(end, 0, zip::end::signature);
    zip::write(end, zip::end::countHere, clamped<std::uint16_t>(count));
    zip::write(end, zip::end::count, clamped<std::uint16_t>(count));
    zip::write(end, zip::end::directorySize, clamped<std::uint32_t>(size));
    zip::write(end, zip::end::directoryOffset, clamped<std::uint32_t>(directoryBegin));
    zip::write(end, zip::end::commentSize, static_cast<std::uint16_t>(comment_.size()));
    return records + end + comment_;
}

bool ZipWriter::commit()
{
    return good_ && file_.commit();
}

}  // namespace Velk::detail
