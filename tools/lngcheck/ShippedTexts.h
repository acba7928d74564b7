#pragma once

#include <string>
#include <string_view>

namespace eq {

/// The texts of the shipped languages, which are compiled into the program: English is what a translator translates,
/// and the other languages show which texts are translated everywhere.
namespace lngcheck {

struct EnglishText {
    std::string context;
    std::wstring text;
};

/// Returns the English text of a key of the library; null for other keys. Case does not matter.
[[nodiscard]] const EnglishText* findEnglishText(std::string_view key);

/// Returns how many shipped languages other than English have the English text for this key.
[[nodiscard]] int languagesWithEnglishText(std::string_view key);

/// Returns how many shipped languages other than English there are.
[[nodiscard]] int shippedLanguages();

/// Returns the UTF-8 source of the English file.
[[nodiscard]] std::string_view englishSource();

} // namespace lngcheck

} // namespace eq
