#pragma once

#include "platform/win32.h"
#include "tools/lngcheck/Findings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eq {

namespace lngcheck {

/// A line that defines the text of a key.
struct Definition {
    int line = 0;
    std::string context;
    std::string key; ///< for an accelerator line, the key under which the library keeps it
    bool isAccelerator = false;
    std::string value;                ///< as written, with its escapes
    UINT codepage = 0;                ///< 0 before the first code page tag
    std::optional<std::wstring> text; ///< nothing if the value is not valid in its code page
};

/// A line that begins a context.
struct ContextLine {
    int line = 0;
    std::string name;
};

/// A language file as the library reads it.
struct LanguageFile {
    std::string path;
    std::string name; ///< without the folder
    WORD language = 0;
    bool isReadable = false; ///< false if one fault of the whole file explains all missing texts
    bool isBroken = false;   ///< true if a fault of this file makes the library refuse all files
    std::vector<Definition> definitions;
    std::vector<ContextLine> contexts;
    std::vector<std::string> droppedKeys; ///< the keys of lines before the first context
};

/// Reads a file with the library's scanner. Each line that the scanner refuses is a finding, and reading continues with
/// the next line.
[[nodiscard]] LanguageFile readLanguageFile(const std::string& path, Findings& findings);

/// Reads the UTF-8 source of a language file. The source must have no faults. `name` ends in the language id and an
/// extension.
[[nodiscard]] LanguageFile readLanguageSource(const std::string& name, std::string_view contents);

/// Returns a text in UTF-8, for messages.
[[nodiscard]] std::string inUtf8(std::wstring_view text);

} // namespace lngcheck

} // namespace eq
