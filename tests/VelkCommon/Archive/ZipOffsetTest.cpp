#include <VelkCommon/Archive/detail/ZipOffset.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

// Only an archive of more than 4 GiB has such offsets, so the records are looked at by themselves.
namespace {

constexpr std::uint64_t beyond32Bits = 0x1'2345'6789;

std::string number(std::uint64_t value, int bytes)
{
    std::string text;
    for (; bytes > 0; --bytes, value >>= 8U)
        text += static_cast<char>(value & 0xFFU);
    return text;
}

/// A field of the extra data: number, size and bytes.
std::string field(unsigned id, const std::string& bytes)
{
    return number(id, 2) + number(bytes.size(), 2) + bytes;
}

/// A record of the directory of an entry "a.txt" with a comment.
std::string record(unsigned version, std::uint64_t compressed, std::uint64_t size, std::uint64_t offset,
                   const std::string& extra)
{
    return number(0x02014B50, 4) + number(20, 2) + number(version, 2) + number(0, 12) + number(compressed, 4) +
           number(size, 4) + number(5, 2) + number(extra.size(), 2) + number(3, 2) + number(0, 8) + number(offset, 4) +
           "a.txt" + extra + "end";
}

constexpr std::uint64_t full = 0xFFFFFFFF;
const std::string time = field(0x5455, "time!");

TEST(ZipOffset, StandsInTheRecordWhileItFits)
{
    for (const std::uint64_t offset : {std::uint64_t{0}, std::uint64_t{77}, full - 1}) {
        std::string text = record(20, 5, 9, 1, time);
        EXPECT_TRUE(Velk::detail::setOffset(text, offset));
        EXPECT_EQ(text, record(20, 5, 9, offset, time));
    }
}

TEST(ZipOffset, GetsAWideFieldBehindTheOthers)
{
    for (const std::uint64_t offset : {full, beyond32Bits}) {
        std::string text = record(20, 5, 9, 1, time);
        EXPECT_TRUE(Velk::detail::setOffset(text, offset));
        EXPECT_EQ(text, record(45, 5, 9, full, time + field(1, number(offset, 8))));
    }
    std::string newer = record(63, 5, 9, 1, "");
    EXPECT_TRUE(Velk::detail::setOffset(newer, beyond32Bits));
    EXPECT_EQ(newer, record(63, 5, 9, full, field(1, number(beyond32Bits, 8)))) << "a higher version stays";
}

struct WideCase
{
    std::uint64_t compressed;
    std::uint64_t size;
    int values;  // that stand in the field already
};

const WideCase wideCases[] = {{full, full, 2}, {5, full, 1}, {full, 9, 1}};

TEST(ZipOffset, StandsBehindTheLengthsInAWideField)
{
    for (const WideCase& wide : wideCases) {
        const std::string lengths = number(0x1'0000'0001, 8) + number(0x1'0000'0002, 8);
        const std::string had = lengths.substr(0, static_cast<std::size_t>(wide.values) * 8);
        std::string text = record(45, wide.compressed, wide.size, 1, field(1, had) + time);
        EXPECT_TRUE(Velk::detail::setOffset(text, beyond32Bits));
        EXPECT_EQ(text, record(45, wide.compressed, wide.size, full, field(1, had + number(beyond32Bits, 8)) + time));
        // What is there once, is written over.
        EXPECT_TRUE(Velk::detail::setOffset(text, 3));
        EXPECT_EQ(text, record(45, wide.compressed, wide.size, full, field(1, had + number(3, 8)) + time));
    }
}

TEST(ZipOffset, NeedsRoom)
{
    constexpr std::size_t room = 0xFFFF - 12;  // which a new field takes
    for (const auto& [size, fits] : {std::pair(room - 4, true), {room - 3, false}}) {
        std::string text = record(20, 5, 9, 1, field(0x5455, std::string(size, 'x')));
        EXPECT_EQ(Velk::detail::setOffset(text, beyond32Bits), fits);
    }
}

}  // namespace
