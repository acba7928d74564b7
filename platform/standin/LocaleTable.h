#pragma once

#include "platform/standin/Types.h"

#include <string_view>

namespace eq::standin {

struct Language {
    std::string_view locale; // language_COUNTRY, as in the environment; with a modifier if a language has variants
    UINT ansiCodepage;       // 0: the language has none
    WORD id;
    char decimalPoint;
};

/// Returns the language with an id, or null. The id of a primary language finds its usual sublanguage.
const Language* findLanguage(WORD id) noexcept;

/// Returns the language of the environment. The first of LC_ALL, `categoryVariable` and LANG that is set names the
/// language. Returns null for "C", "POSIX" and unknown names. An unknown or missing country means the usual country of
/// the language. Code set and modifier are ignored.
const Language* environmentLanguage(const char* categoryVariable) noexcept;

} // namespace eq::standin
