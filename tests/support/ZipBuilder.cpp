#include "support/ZipBuilder.h"

#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include <zlib.h>

namespace test {
namespace {

void put(std::string& out, std::uint64_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i, value >>= 8U)
        out += static_cast<char>(static_cast<unsigned char>(value & 0xFFU));
}

using zip::full32;
namespace signature = zip::signature;

/// An item with everything that is computed from it.
struct Prepared
{
    ZipItem item;
    std::string stored;  // the data as it goes into the archive
    std::uint16_t method = 0;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    std::uint64_t compressedSize = 0;
    std::uint64_t offset = 0;
};

Prepared prepare(const ZipItem& item)
{
    Prepared prepared;
    prepared.item = item;
    prepared.stored = item.deflated ? deflated(item.data) : item.data;
    prepared.method = item.method.value_or(item.deflated ? zip::deflated : zip::stored);
    prepared.crc = item.crc.value_or(crcOf(item.data));
    prepared.size = item.size.value_or(item.data.size());
    prepared.compressedSize = item.compressedSize.value_or(prepared.stored.size());
    if (item.descriptor != ZipDescriptor::none)
        prepared.item.flags |= zip::hasDescriptor;
    return prepared;
}

std::uint32_t narrow(std::uint64_t value, bool wide)
{
    return static_cast<std::uint32_t>(wide || value >= full32 ? full32 : value);
}

void putLocal(std::string& out, const Prepared& entry)
{
    const ZipItem& item = entry.item;
    const bool later = item.descriptor != ZipDescriptor::none;
    std::string extra;
    if (item.wide) {
        put(extra, zip::wideField, 2);
        put(extra, 16, 2);
        put(extra, later ? 0 : entry.size, 8);
        put(extra, later ? 0 : entry.compressedSize, 8);
    }
    extra += item.localExtra;
    out += signature::local;
    put(out, item.wide ? zip::wideVersion : zip::usualVersion, 2);
    put(out, item.flags, 2);
    put(out, entry.method, 2);
    put(out, item.time, 2);
    put(out, item.date, 2);
    put(out, later ? 0 : entry.crc, 4);
    put(out, later && !item.wide ? 0 : narrow(entry.compressedSize, item.wide), 4);
    put(out, later && !item.wide ? 0 : narrow(entry.size, item.wide), 4);
    put(out, item.name.size(), 2);
    put(out, extra.size(), 2);
    out += item.name + extra + entry.stored;
    if (!later)
        return;
    if (item.descriptor == ZipDescriptor::signedNarrow || item.descriptor == ZipDescriptor::signedWide)
        out += signature::descriptor;
    const bool wide = item.descriptor == ZipDescriptor::signedWide || item.descriptor == ZipDescriptor::plainWide;
    put(out, entry.crc, 4);
    put(out, entry.compressedSize, wide ? 8 : 4);
    put(out, entry.size, wide ? 8 : 4);
}

void putCentral(std::string& out, const Prepared& entry)
{
    const ZipItem& item = entry.item;
    std::string extra;
    std::string values;
    for (const std::uint64_t value : {entry.size, entry.compressedSize, entry.offset})
        if (item.wide || value >= full32)
            put(values, value, 8);
    if (!values.empty()) {
        put(extra, zip::wideField, 2);
        put(extra, values.size(), 2);
        extra += values;
    }
    extra += item.centralExtra;
    out += signature::central;
    put(out, item.madeBy, 2);
    put(out, item.wide ? zip::wideVersion : zip::usualVersion, 2);
    put(out, item.flags, 2);
    put(out, entry.method, 2);
    put(out, item.time, 2);
    put(out, item.date, 2);
    put(out, entry.crc, 4);
    put(out, narrow(entry.compressedSize, item.wide), 4);
    put(out, narrow(entry.size, item.wide), 4);
    put(out, item.name.size(), 2);
    put(out, extra.size(), 2);
    put(out, item.comment.size(), 2);
    put(out, 0, 2);
    put(out, item.internalAttributes, 2);
    put(out, item.externalAttributes, 4);
    put(out, narrow(entry.offset, item.wide), 4);
    out += item.name + extra + item.comment;
}

void putWideEnd(std::string& out, std::uint64_t count, std::uint64_t size, std::uint64_t offset, std::uint64_t front)
{
    const std::uint64_t position = out.size() - front;
    out += signature::wideEnd;
    put(out, 44, 8);
    put(out, zip::wideVersion, 2);
    put(out, zip::wideVersion, 2);
    put(out, 0, 8);
    put(out, count, 8);
    put(out, count, 8);
    put(out, size, 8);
    put(out, offset, 8);
    out += signature::wideLocator;
    put(out, 0, 4);
    put(out, position, 8);
    put(out, 1, 4);
}

}  // namespace

ZipBuilder& ZipBuilder::add(ZipItem item)
{
    items_.push_back(std::move(item));
    return *this;
}

ZipBuilder& ZipBuilder::add(const std::string& name, const std::string& data)
{
    ZipItem item;
    item.name = name;
    item.data = data;
    return add(std::move(item));
}

ZipBuilder& ZipBuilder::lead(std::string bytes, bool counted)
{
    lead_ = std::move(bytes);
    leadCounted_ = counted;
    return *this;
}

ZipBuilder& ZipBuilder::comment(std::string text)
{
    comment_ = std::move(text);
    return *this;
}

ZipBuilder& ZipBuilder::wideEnd()
{
    wideEnd_ = true;
    return *this;
}

std::string ZipBuilder::bytes() const
{
    std::string out = lead_;
    const std::uint64_t front = leadCounted_ ? 0 : lead_.size();
    std::string directory;
    for (const ZipItem& item : items_) {
        Prepared entry = prepare(item);
        entry.offset = item.offset.value_or(out.size() - front);
        putLocal(out, entry);
        putCentral(directory, entry);
    }
    const std::uint64_t offset = out.size() - front;
    out += directory;
    const bool wide = wideEnd_ || items_.size() >= zip::full16;
    if (wide)
        putWideEnd(out, items_.size(), directory.size(), offset, front);
    out += signature::end;
    put(out, 0, 4);
    put(out, wide ? zip::full16 : items_.size(), 2);
    put(out, wide ? zip::full16 : items_.size(), 2);
    put(out, narrow(directory.size(), wideEnd_), 4);
    put(out, narrow(offset, wideEnd_), 4);
    put(out, comment_.size(), 2);
    return out + comment_;
}

void ZipBuilder::writeTo(const fileString& path) const
{
    writeFile(path, bytes());
}

std::string deflated(const std::string& data)
{
    z_stream stream = {};
    EXPECT_EQ(::deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out(::deflateBound(&stream, static_cast<uLong>(data.size())), '\0');
    std::string in = data;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(::deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(stream.total_out);
    ::deflateEnd(&stream);
    return out;
}

std::uint32_t crcOf(const std::string& data)
{
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
}

std::string noise(std::size_t bytes, unsigned seed)
{
    std::mt19937 random(seed);
    std::string text(bytes, '\0');
    std::generate(text.begin(), text.end(), [&] { return static_cast<char>(random() >> 24U); });
    return text;
}

}  // namespace test
