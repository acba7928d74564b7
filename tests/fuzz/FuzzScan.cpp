// Passes any bytes to the scanner and the loader, which may throw only the exceptions that they declare.

#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStoreLoader.h"
#include "wedge/string_ext.h"

#include <cstdint>
#include <sstream>

namespace eq {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
    LanguageContexts contexts;
    CLanguageStoreLoader loader(1252, contexts);
    try {
        scanLanguageStream(stream, "Fuzz1041.lng", loader);
    } catch (const CLanguageFile::syntax_error&) {
        // The bytes are not a language file.
    } catch (const convert_wstring_failed&) {
        // The code page lacks a character.
    }
    return 0;
}

} // namespace eq
