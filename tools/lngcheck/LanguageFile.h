#pragma once

#include "platform/win32.h"
#include "tools/lngcheck/Findings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace eq {

namespace lngcheck {

/// A line that gives a key its text.
struct Definition {
    int line = 0;
    std::string context;
    std::string key; ///< of an accelerator line, the key under which the library keeps it
    bool isAccelerator = false;
    std::string value;                ///< as written, with its escapes
    UINT codepage = 0;                ///< 0 ahead of the first code page tag
    std::optional<std::wstring> text; ///< nothing if the value is no text of its code page
};

/// A line that opens a context.
struct ContextLine {
    int line = 0;
    std::string name;
};

/// A language file as the library reads it.
struct LanguageFile {
    std::string path;
    std::string name; ///< without the folder
    WORD language = 0;
    bool isReadable = false; ///< false if one fault of the whole file explains all that is missing
    bool isBroken = false;   ///< the library gives up all files because of this one
    std::vector<Definition> definitions;
    std::vector<ContextLine> contexts;
    std::vector<std::string> droppedKeys; ///< of lines before the first context
};

/// Reads a file with the library's scanner. What the scanner refuses is a finding, and reading goes on behind it.
[[nodiscard]] LanguageFile readLanguageFile(const std::string& path, Findings& findings);

/// Reads the UTF-8 source of a language file, which has no faults. `name` ends in the language id and an extension.
[[nodiscard]] LanguageFile readLanguageSource(const std::string& name, std::string_view contents);

/// For messages.
[[nodiscard]] std::string inUtf8(std::wstring_view text);

} // namespace lngcheck

} // namespace eq
