#pragma once

#include <string>
#include <string_view>

namespace eq {

/// The texts of the shipped languages, which are compiled into the program. Translators translate the English texts.
/// The other languages show which texts are translated everywhere.
namespace lngcheck {

struct EnglishText {
    std::string context;
    std::wstring text;
};

/// Returns the English text of a key of the library; null for other keys. Case does not matter.
[[nodiscard]] const EnglishText* findEnglishText(std::string_view key);

/// Returns the number of shipped languages, without English, that have the English text for this key.
[[nodiscard]] int languagesWithEnglishText(std::string_view key);

/// Returns the number of shipped languages, without English.
[[nodiscard]] int shippedLanguages();

/// Returns the UTF-8 source of the English file.
[[nodiscard]] std::string_view englishSource();

} // namespace lngcheck

} // namespace eq
