#pragma once

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace eq::lv2 {

/// A fault in an input of the generator. The message names the file.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Returns the lines of a file, without their ends. Throws InputError.
[[nodiscard]] std::vector<std::string> linesOf(const std::filesystem::path& file);

/// A name in English, and in other languages by their tags.
struct Name {
    std::string english;
    std::map<std::string, std::string> translations;
};

/// The texts of `languages/`, which are UTF-8. A source names its tags in a comment in its head, such as
/// "// Language tags: pt-br pt"; the English source has none.
class LanguageSources {
public:
    /// Throws InputError.
    explicit LanguageSources(const std::filesystem::path& folder);

    /// Returns a text in all languages. Throws InputError if it is missing in one.
    [[nodiscard]] Name find(const std::string& key) const;
    [[nodiscard]] std::vector<std::string> tags() const;

private:
    using Texts = std::map<std::string, std::string>;

    void read(const std::filesystem::path& file);

    Texts englishTexts;
    std::map<std::string, Texts> translatedTexts; ///< by tag
};

/// Returns names with the same text after each, such as the number of a band.
[[nodiscard]] Name withSuffix(Name name, std::string_view suffix);

} // namespace eq::lv2
