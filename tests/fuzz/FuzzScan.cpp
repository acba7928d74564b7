// The scanner, and behind it the loader, on any bytes. What was read ahead of a fault, or of the end, is read again
// from a file that has just that.

#include "tests/fuzz/Require.h"
#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStoreLoader.h"
#include "wedge/string_ext.h"

#include <cstdint>
#include <sstream>

namespace {

/// Writes a file with the events that it is told.
class Writer : public CLanguageFileHandler {
public:
    void OnTag(const std::string& tag, const std::string& value) override { OnString(tag, value); }
    void OnContext(const std::string& name) override { text += "[" + name + "]\n"; }
    void OnString(const std::string& key, const std::string& value) override { text += key + "=" + value + "\n"; }
    void OnContextEnd() override {}
    void OnFileEnd() override {}

    std::string text;
};

/// Whether the text has no fault.
bool scan(const std::string& text, CLanguageFileHandler& handler) {
    std::istringstream stream(text);
    try {
        scanLanguageStream(stream, "Fuzz1041.lng", handler);
    } catch (const CLanguageFile::syntax_error&) {
        return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Writer first;
    scan(std::string(reinterpret_cast<const char*>(data), size), first);
    Writer again;
    require(scan(first.text, again) && again.text == first.text);
    try {
        LanguageContexts contexts;
        CLanguageStoreLoader loader(1252, contexts);
        scan(first.text, loader);
    } catch (const convert_wstring_failed&) {
        // The code page has no such characters.
    }
    return 0;
}
