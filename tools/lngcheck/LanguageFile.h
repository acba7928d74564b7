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

/// A language file as the library reads it.
struct LanguageFile {
    std::string path;
    std::string name; ///< without the folder
    WORD language = 0;
    bool isReadable = false;
    bool isBroken = false; ///< the library gives up all files because of this one
    std::vector<Definition> definitions;
};

/// Reads a file with the library's scanner. What the scanner refuses is a finding, and reading goes on behind it.
[[nodiscard]] LanguageFile readLanguageFile(const std::string& path, Findings& findings);

/// For messages.
[[nodiscard]] std::string inUtf8(std::wstring_view text);

} // namespace lngcheck

} // namespace eq
