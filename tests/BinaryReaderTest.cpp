#include "support/BinaryReader.h"

#include "support/BinaryWriter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

namespace eq {

TEST(BinaryReader, ReadsToTheEndAndNotBeyond) {
    using namespace std::string_view_literals;
    constexpr auto Data = "\x01\x82\x03\x84\x05\x86\x07\x88Z\0\0\xD8\0\0B\0!"sv;
    BinaryReader reader(Data.data(), Data.size());
    EXPECT_EQ(reader.peek<std::uint16_t>(), 0x8201);
    EXPECT_EQ(reader.read<std::uint64_t>(), 0x8807860584038201U);
    EXPECT_EQ(BinaryReader(Data.data(), 8, std::endian::big).read<std::uint64_t>(), 0x0182038405860788U);
    EXPECT_EQ(reader.readText(), (std::wstring{L'Z', wchar_t{0xD800}}));
    EXPECT_THROW(static_cast<void>(reader.readText(SIZE_MAX)), EndOfData);
    BinaryReader end(Data.data(), Data.size());
    end.skip(14);
    EXPECT_EQ(end.readText(1), L"B");
    // A read that fails keeps the position.
    for (const std::size_t count : {std::size_t{2}, SIZE_MAX, SIZE_MAX - 15})
        EXPECT_THROW(static_cast<void>(end.readBytes(count)), EndOfData) << count;
    EXPECT_THROW(static_cast<void>(end.peek<std::uint16_t>()), EndOfData);
    EXPECT_THROW(end.align(9), EndOfData) << "the padding is missing";
    EXPECT_EQ(end.offset(), 16U);
    EXPECT_EQ(end.readBytes(1), "!");
    end.align(17);
    EXPECT_EQ(end.readBytes(end.remaining()), "");
    EXPECT_THROW(static_cast<void>(end.read<std::uint8_t>()), EndOfData);
}

TEST(BinaryWriter, WritesAlignedLittleEndianDataAndPatchesIt) {
    BinaryWriter writer;
    writer.align(4);
    writer.write(std::uint8_t{0xFF});
    writer.align(4);
    writer.write(std::uint32_t{0});
    writer.writeText(L"ab");
    writer.patch(4, std::uint32_t{0x89ABCDEF});
    EXPECT_THROW(writer.patch(12, std::uint8_t{0}), std::out_of_range);
    EXPECT_EQ(writer.written(), std::string_view("\xFF\0\0\0\xEF\xCD\xAB\x89"
                                                 "a\0b\0",
                                                 12));
}

} // namespace eq
