#include "tools/lngcheck/Pseudo.h"

#include "tools/common/Errors.h"
#include "wedge/string_ext.h"

#include <array>
#include <cstdio>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::wstring_view Plain = L"ACDEINOSUYZacdeinosuyz";
constexpr std::wstring_view Accented =
    L"\xC5\xC7\xD0\xC9\xCE\xD1\xD6\x160\xDB\xDD\x17D\xE5\xE7\xF0\xE9\xEE\xF1\xF6\x161\xFB\xFD\x17E";
static_assert(Plain.size() == Accented.size());

std::wstring pseudoText(const std::wstring& text) {
    std::wstring result = L"[";
    bool isMnemonic = false;
    for (const wchar_t c : text) {
        const std::size_t letter = isMnemonic ? std::wstring_view::npos : Plain.find(c);
        result += letter == std::wstring_view::npos ? c : Accented[letter];
        isMnemonic = c == L'&';
    }
    const std::size_t extra = (text.size() + 2) / 3;
    return result + std::wstring(extra, L'~') + L"]";
}

std::string hexadecimalEscape(char c) {
    std::array<char, 5> escape = {};
    std::snprintf(escape.data(), escape.size(), "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    return escape.data();
}

/// Returns the bytes as a value of a language file. Blanks at the ends need no escapes, because the text is in
/// brackets.
std::string escaped(const std::string& bytes) {
    std::string value;
    for (const char c : bytes) {
        const bool isControl = static_cast<unsigned char>(c) < 0x20;
        value += isControl || c == '\\' ? hexadecimalEscape(c) : std::string(1, c);
    }
    return value;
}

/// Returns the text in the pseudo code page. Throws FileError if the code page lacks a character, which the conversion
/// would replace.
std::string inPseudoCodepage(const std::wstring& text, const LanguageFile& reference, int line) {
    std::string bytes = convert_string(text, PseudoCodepage);
    if (convert_wstring(bytes, PseudoCodepage) != text)
        throw FileError(reference.path + ":" + std::to_string(line) + ": only Western texts can be pseudo-localised");
    return bytes;
}

std::string lineOf(const Definition& definition, const LanguageFile& reference) {
    // An empty text would hide the texts of later files.
    if (!definition.text || definition.text->empty()) return {};
    const std::wstring text = pseudoText(*definition.text);
    return definition.key + " = " + escaped(inPseudoCodepage(text, reference, definition.line)) + "\n";
}

} // namespace

std::string pseudoLocalised(const LanguageFile& reference) {
    std::string contents = "// Pseudo-localised from " + reference.name + "\n";
    contents += "<CODEPAGE " + std::to_string(PseudoCodepage) + ">\n";
    std::string context;
    bool hasContext = false;
    for (const Definition& definition : reference.definitions) {
        if (definition.isAccelerator) continue; // a key on the keyboard, not a text
        if (!hasContext || definition.context != context) contents += "\n[" + definition.context + "]\n";
        context = definition.context;
        hasContext = true;
        contents += lineOf(definition, reference);
    }
    return contents;
}

} // namespace lngcheck

} // namespace eq
