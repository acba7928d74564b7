// ExpandKeys on any text, against the definition: search, replace in place, and go on behind what was put in.

#include "platform/standin/TestHooks.h"
#include "tests/fuzz/Require.h"
#include "tests/support/TemporaryFolder.h"
#include "wedge/CLanguageStore.h"

#include <cstdint>

namespace {

CLanguageStore madeStore() {
    const TemporaryFolder folder;
    folder.write("1033.lng", "<CODEPAGE 1252>\n[Module]\na = x\nb = {a}{\nc =\n} = y\n\xE4 = \xE4\n");
    return CLanguageStore(folder.path("Module.so"), 1033);
}

/// Bytes of the single-byte code page 1252 as the units of the same characters; only those that are equal in both.
std::wstring widened(const std::string& text) {
    std::wstring wide;
    for (const char byte : text) wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return wide;
}

std::string expandedByDefinition(const CLanguageStore& store, std::string s, bool& changed) {
    changed = false;
    auto open = s.find('{');
    while (open != s.npos) {
        const auto close = s.find('}', open + 2);
        if (close == s.npos) break;
        const wchar_t* found = store.Find(s.substr(open + 1, close - open - 1).c_str());
        if (found && *found) {
            std::string text;
            for (; *found; ++found) text += static_cast<char>(*found);
            s.replace(open, close - open + 1, text);
            changed = true;
            open = s.find('{', open + text.size());
        } else {
            open = s.find('{', close);
        }
    }
    return s;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    standin::setAnsiCodepage(1252);
    static const CLanguageStore store = madeStore();

    std::string text;
    for (std::size_t i = 0; i < size && data[i] != 0; ++i) {
        const bool is_same_in_unicode = data[i] < 0x80 || data[i] >= 0xA0;
        if (is_same_in_unicode) text += static_cast<char>(data[i]);
    }
    bool expected_change = false;
    const std::string expected = expandedByDefinition(store, text, expected_change);
    bool changed = !expected_change;
    require(store.ExpandKeys(text, &changed) == expected && changed == expected_change);
    changed = !expected_change;
    require(store.ExpandKeys(widened(text), &changed) == widened(expected) && changed == expected_change);
    return 0;
}
