#pragma once

#include "platform/standin/Types.h"

#include <array>
#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

namespace eq::standin {

/// A code page of one or two bytes a character, as tables in both directions.
///
/// The characters come from iconv. What iconv leaves undefined is filled in as Windows does: the lower half is always
/// ASCII, holes from 0x80 to 0x9F are the control codes of the same number, and holes above stand for private-use
/// characters, which count as invalid when a conversion is strict. Windows' user-defined characters, its best-fit
/// characters, and its readings of single Jamo in page 1361 are left out.
class CodePageTable {
public:
    /// The table of a page, built on first use and kept, or null for a page that is not known.
    static const CodePageTable* find(UINT page);

    bool isLeadByte(BYTE byte) const noexcept { return m_leadBytes[byte]; }

    struct Decoded {
        char16_t unit;
        int size;   // bytes taken
        bool valid; // else the unit stands for what could not be read
    };

    /// Reads the character at the front of a text that is not empty.
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
    std::vector<char16_t> m_pairs; // by lead byte * 256 + trail byte; 0 for none
    std::vector<WORD> m_codes;     // by unit: byte, or lead byte * 256 + trail byte; 0 for none
};

} // namespace eq::standin
