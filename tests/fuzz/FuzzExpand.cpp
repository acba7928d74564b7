// Compares ExpandKeys with its definition for any text. The definition searches for a key, replaces the key in place,
// and continues after the replacement.

#include "tests/fuzz/Require.h"
#include "tests/support/TemporaryFolder.h"
#include "wedge/CLanguageStore.h"

#include <cstdint>

namespace eq {

namespace {

CLanguageStore madeStore() {
    const TemporaryFolder folder;
    folder.write("1033.lng", "[Module]\na = x\nb = {a}{\nc =\n} = y\n");
    return CLanguageStore(folder.path("Module.so"), 1033);
}

std::wstring expandedByDefinition(const CLanguageStore& store, std::wstring s) {
    auto open = s.find(L'{');
    while (open != s.npos) {
        const auto close = s.find(L'}', open + 2);
        if (close == s.npos) break;
        const std::wstring key = s.substr(open + 1, close - open - 1);
        const wchar_t* const found = store.Find(std::string(key.begin(), key.end()).c_str());
        const std::wstring text = found ? found : L"";
        if (!text.empty()) s.replace(open, close - open + 1, text);
        open = s.find(L'{', text.empty() ? close : open + text.size());
    }
    return s;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CLanguageStore store = madeStore();

    // ASCII characters are the same in both widths.
    std::string text;
    for (std::size_t i = 0; i < size && data[i] % 0x80 != 0; ++i) text += static_cast<char>(data[i] % 0x80);
    const std::wstring wide(text.begin(), text.end());
    const std::wstring expected = expandedByDefinition(store, wide);
    bool changed = false;
    require(store.ExpandKeys(wide, &changed) == expected && changed == (expected != wide));
    require(store.ExpandKeys(text, &changed) == std::string(expected.begin(), expected.end()));
    return 0;
}

} // namespace eq
