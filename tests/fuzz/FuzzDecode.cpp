// Compares decode_value with the definition of the escapes. The definition has one pass per kind of escape, which
// searches and replaces. A hit on a trail byte is not an escape. The text before a hit determines whether the hit is on
// a trail byte.

#include "platform/desktop/TestHooks.h"
#include "tests/fuzz/Require.h"
#include "wedge/CLanguageFile.h"

#include <charconv>
#include <cstdint>

namespace eq {

namespace {

bool isTrailByte(const std::string& s, std::size_t index) {
    return index > 0 && IsDBCSLeadByte(static_cast<BYTE>(s[index - 1])) && !isTrailByte(s, index - 1);
}

void replaceControl(std::string& s, const char* escape, char byte) {
    for (auto hit = s.find(escape); hit != s.npos; hit = s.find(escape, hit + 1)) {
        if (!isTrailByte(s, hit)) s.replace(hit, 2, 1, byte);
    }
}

void replaceHexadecimal(std::string& s) {
    for (auto hit = s.find("\\x"); hit != s.npos; hit = s.find("\\x", hit + 1)) {
        if (isTrailByte(s, hit) || hit + 4 > s.size()) continue;
        unsigned char byte = 0;
        const char* const digits = s.data() + hit + 2;
        if (std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2)
            s.replace(hit, 4, 1, static_cast<char>(byte));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    // The first byte selects the ANSI code page, with or without double-byte characters.
    standin::setAnsiCodepage(data[0] % 2 == 0 ? 1252 : 932);
    const std::string value(reinterpret_cast<const char*>(data + 1), size - 1);

    std::string expected = value;
    replaceControl(expected, "\\n", '\n');
    replaceControl(expected, "\\r", '\r');
    replaceControl(expected, "\\t", '\t');
    replaceHexadecimal(expected);
    require(decode_value(value) == expected);
    for (std::size_t i = 0; i < value.size(); ++i) require((byte_kind(value, i) == 2) == isTrailByte(value, i));
    return 0;
}

} // namespace eq
