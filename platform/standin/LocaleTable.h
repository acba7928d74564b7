#pragma once

#include "platform/standin/Types.h"

#include <string_view>

namespace eq::standin {

struct Language {
    std::string_view locale; // language_COUNTRY, as in the environment, and a modifier where one tells scripts apart
    UINT ansiCodepage;       // 0: the language has none
    WORD id;
    char decimalPoint;
};

/// The language with an id, or null. A primary language alone stands for its usual sublanguage.
const Language* findLanguage(WORD id) noexcept;

/// The language of the environment: the first of LC_ALL, the category's own variable, and LANG that is set decides.
/// Null for "C", "POSIX" and names that are not known. A country that is not known, or none, stands for the usual
/// country of the language; code set and modifier do not count.
const Language* environmentLanguage(const char* categoryVariable) noexcept;

} // namespace eq::standin
