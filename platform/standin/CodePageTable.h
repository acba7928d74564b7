#pragma once

#include "platform/standin/Types.h"

#include <array>
#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace eq::standin {

/// A code page with one or two bytes per character, as one table per direction.
///
/// The characters come from iconv. Bytes that iconv leaves undefined have the same meaning as on Windows. Bytes below
/// 0x80 are always ASCII. Undefined bytes from 0x80 to 0x9F are the control codes of the same number. In some pages,
/// undefined bytes from 0xA0 on are private-use characters, which a strict conversion refuses. Windows' user-defined
/// characters, its best-fit characters, and its readings of single Jamo in page 1361 are missing.
class CodePageTable {
public:
    /// Returns the table of a page, or null for an unknown page. A table is built on its first use and kept.
    static const CodePageTable* find(UINT page);

    bool isLeadByte(BYTE byte) const noexcept { return m_leadBytes[byte]; }

    struct Decoded {
        char16_t unit;
        int size;   // bytes read
        bool valid; // false: the unit replaces unreadable bytes
    };

    /// Returns the first character of a text, which must not be empty.
    Decoded decode(std::string_view text) const noexcept;

    struct Encoded {
        std::array<char, 2> bytes;
        int size;
    };

    std::optional<Encoded> encode(char16_t unit) const noexcept;

private:
    struct Page;
    class Converter;

    static const Page* findPage(UINT number) noexcept;

    explicit CodePageTable(const Page& page);

    void readSingleBytes(const Page& page, Converter& converter);
    void readPairs(Converter& converter);
    void invert(Converter& converter);
    void addInverse(char16_t unit, WORD code, Converter& converter);

    static constexpr std::size_t Codes = 0x10000;

    char16_t m_undefined;
    std::bitset<256> m_leadBytes;
    std::bitset<256> m_private; // single bytes that a strict conversion refuses
    std::array<char16_t, 256> m_single{};
    std::vector<char16_t> m_pairs; // index: lead byte * 256 + trail byte; 0: none
    std::vector<WORD> m_codes;     // index: unit; value: byte, or lead byte * 256 + trail byte; 0: none
};

} // namespace eq::standin
