#include "platform/standin/CodePageTable.h"

#include <algorithm>
#include <functional>
#include <iconv.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace eq::standin {

namespace {

struct ByteRange {
    BYTE first;
    BYTE last;
};

constexpr char16_t EuroSign = 0x20AC;
constexpr char16_t KatakanaMiddleDot = 0x30FB;
constexpr char16_t HolamHaserForVav = 0x05BA;

} // namespace

struct CodePageTable::Page {
    UINT number;
    const char* iconvName;
    char16_t firstPrivate = 0;            // first private-use unit for undefined bytes from 0xA0 on, in order; 0: none
    std::array<ByteRange, 3> leadBytes{}; // unused ranges are {0, 0}
    char16_t undefined = u'?';            // replaces unreadable bytes
    BYTE addedByte = 0;                   // a byte that iconv leaves undefined; 0: none
    char16_t addedUnit = 0;               // the unit of addedByte
};

/// Converts single characters. Each conversion starts in the page's initial state.
class CodePageTable::Converter {
public:
    explicit Converter(const char* iconvName)
        : m_toUnicode(iconv_open("UTF-16LE", iconvName)), m_fromUnicode(iconv_open(iconvName, "UTF-16LE")) {}
    ~Converter() {
        if (m_toUnicode != closed()) iconv_close(m_toUnicode);
        if (m_fromUnicode != closed()) iconv_close(m_fromUnicode);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const noexcept { return m_toUnicode != closed() && m_fromUnicode != closed(); }

    /// Returns the unit of a character, or 0 if the character does not convert to exactly one unit.
    char16_t toUnit(std::string_view character) {
        const std::string bytes = convert(m_toUnicode, character);
        if (bytes.size() != 2) return 0;
        return static_cast<char16_t>(static_cast<BYTE>(bytes[0]) | static_cast<BYTE>(bytes[1]) << 8);
    }

    std::string fromUnit(char16_t unit) {
        const std::array<char, 2> bytes = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
        return convert(m_fromUnicode, {bytes.data(), bytes.size()});
    }

private:
    static iconv_t closed() noexcept { return handleOfNumber<iconv_t>(~std::uintptr_t{0}); }

    /// Returns the converted text, or an empty text if there is no exact conversion.
    static std::string convert(iconv_t descriptor, std::string_view text) {
        std::array<char, 16> buffer;
        char* in = const_cast<char*>(text.data());
        std::size_t inSize = text.size();
        char* out = buffer.data();
        std::size_t outSize = buffer.size();
        iconv(descriptor, nullptr, nullptr, nullptr, nullptr);
        if (iconv(descriptor, &in, &inSize, &out, &outSize) != 0) return {};
        // In pages with combining characters, iconv keeps a letter until it knows that no combining character follows.
        // This call writes the letter.
        iconv(descriptor, nullptr, nullptr, &out, &outSize);
        return {buffer.data(), out};
    }

    iconv_t m_toUnicode;
    iconv_t m_fromUnicode;
};

// Conversions refuse a page that has no row. The C library has no table for 708 to 710, 720, 934, 938, 942, 944, 946,
// 948 and 1381.
const CodePageTable::Page* CodePageTable::findPage(UINT number) noexcept {
    static constexpr std::array<ByteRange, 3> japanese = {{{0x81, 0x9F}, {0xE0, 0xFC}}};
    static constexpr std::array<ByteRange, 3> eastAsian = {{{0x81, 0xFE}}};
    static constexpr std::array<ByteRange, 3> johab = {{{0x84, 0xD3}, {0xD8, 0xDE}, {0xE0, 0xF9}}};
    static constexpr std::array pages = {
        Page{437, "CP437"},
        Page{737, "CP737"},
        Page{775, "CP775"},
        Page{813, "CP813"},
        Page{819, "CP819"},
        Page{850, "CP850"},
        Page{852, "CP852"},
        Page{855, "CP855"},
        Page{856, "CP856"},
        Page{857, "CP857", 0xF8BB},
        Page{860, "CP860"},
        Page{861, "CP861"},
        Page{862, "CP862"},
        Page{863, "CP863"},
        Page{864, "CP864", 0xF8BE},
        Page{865, "CP865"},
        Page{866, "CP866"},
        Page{869, "CP869"},
        Page{874, "CP874", 0xF8C1},
        Page{912, "CP912"},
        Page{915, "CP915"},
        Page{916, "CP916"},
        Page{920, "CP920"},
        Page{921, "CP921"},
        Page{922, "CP922"},
        Page{932, "CP932", 0xF8F0, japanese, KatakanaMiddleDot},
        Page{936, "CP936", 0xF8F5, eastAsian, u'?', 0x80, EuroSign},
        Page{943, "IBM943", 0, japanese, KatakanaMiddleDot},
        Page{949, "CP949", 0xF8F7, eastAsian},
        Page{950, "CP950", 0xF8F8, eastAsian},
        Page{1089, "CP1089"},
        Page{1250, "CP1250"},
        Page{1251, "CP1251"},
        Page{1252, "CP1252"},
        Page{1253, "CP1253", 0xF8F9},
        Page{1254, "CP1254"},
        Page{1255, "CP1255", 0xF88D, {}, u'?', 0xCA, HolamHaserForVav},
        Page{1256, "CP1256"},
        Page{1257, "CP1257", 0xF8FC},
        Page{1258, "CP1258"},
        Page{1361, "CP1361", 0xF8EC, johab},
    };
    static_assert(std::ranges::adjacent_find(pages, std::ranges::greater_equal{}, &Page::number) == pages.end());
    const auto* const row =
        std::find_if(pages.begin(), pages.end(), [number](const Page& page) { return page.number == number; });
    return row == pages.end() ? nullptr : row;
}

const CodePageTable* CodePageTable::find(UINT page) {
    static std::mutex lock;
    static std::map<UINT, std::unique_ptr<const CodePageTable>> tables;

    const Page* const row = findPage(page);
    if (!row) return nullptr;

    const std::lock_guard guard(lock);
    auto& table = tables[page];
    if (!table && Converter(row->iconvName).isOpen()) table.reset(new CodePageTable(*row));
    return table.get();
}

CodePageTable::CodePageTable(const Page& page) : m_undefined(page.undefined), m_codes(Codes) {
    Converter converter(page.iconvName);
    for (const ByteRange& range : page.leadBytes)
        for (unsigned lead = range.first; lead != 0 && lead <= range.last; ++lead) m_leadBytes.set(lead);
    readSingleBytes(page, converter);
    if (m_leadBytes.any()) readPairs(converter);
    invert(converter);
}

void CodePageTable::readSingleBytes(const Page& page, Converter& converter) {
    char16_t nextPrivate = page.firstPrivate;
    for (unsigned byte = 0; byte < m_single.size(); ++byte) {
        if (m_leadBytes[byte]) continue;
        const char character = static_cast<char>(byte);
        char16_t& unit = m_single[byte];
        unit = byte < 0x80 ? static_cast<char16_t>(byte) : converter.toUnit({&character, 1});
        if (unit != 0 || byte == 0) continue;

        if (byte == page.addedByte) {
            unit = page.addedUnit;
        } else if (byte < 0xA0) {
            unit = static_cast<char16_t>(byte);
        } else if (nextPrivate != 0) {
            unit = nextPrivate++;
            m_private.set(byte);
        }
    }
}

void CodePageTable::readPairs(Converter& converter) {
    m_pairs.resize(Codes);
    for (std::size_t code = 0; code < Codes; ++code) {
        if (!m_leadBytes[code >> 8]) continue;
        const std::array<char, 2> character = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
        m_pairs[code] = converter.toUnit({character.data(), character.size()});
    }
}

void CodePageTable::invert(Converter& converter) {
    for (std::size_t byte = 0; byte < m_single.size(); ++byte)
        addInverse(m_single[byte], static_cast<WORD>(byte), converter);
    for (std::size_t code = 0; code < m_pairs.size(); ++code)
        addInverse(m_pairs[code], static_cast<WORD>(code), converter);
}

void CodePageTable::addInverse(char16_t unit, WORD code, Converter& converter) {
    if (unit == 0) return;
    WORD& known = m_codes[unit];
    if (known == 0) {
        known = code;
        return;
    }
    // Some characters occur twice in a page. The conversion by iconv determines the code that is used.
    const std::string usual = converter.fromUnit(unit);
    if (usual.size() == 2 && (static_cast<BYTE>(usual[0]) << 8 | static_cast<BYTE>(usual[1])) == code) known = code;
}

CodePageTable::Decoded CodePageTable::decode(std::string_view text) const noexcept {
    const auto first = static_cast<BYTE>(text[0]);
    if (!m_leadBytes[first]) {
        const char16_t unit = m_single[first];
        const bool defined = unit != 0 || first == 0;
        return {defined ? unit : m_undefined, 1, defined && !m_private[first]};
    }
    // A lead byte never consumes a zero, so a text keeps its terminator.
    if (text.size() == 1 || text[1] == '\0') return {m_undefined, 1, false};
    const char16_t unit = m_pairs[static_cast<std::size_t>(first << 8 | static_cast<BYTE>(text[1]))];
    return {unit != 0 ? unit : m_undefined, 2, unit != 0};
}

std::optional<CodePageTable::Encoded> CodePageTable::encode(char16_t unit) const noexcept {
    const WORD code = m_codes[unit];
    if (code == 0 && unit != 0) return std::nullopt;
    if (code < 0x100) return Encoded{{static_cast<char>(code)}, 1};
    return Encoded{{static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)}, 2};
}

} // namespace eq::standin
