#pragma once

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace eq::lv2 {

/// A fault in an input file of the generator. The message names the file.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Returns the lines of a file, without blanks at their beginnings and ends. Throws InputError if the file cannot be
/// read.
[[nodiscard]] std::vector<std::string> linesOf(const std::filesystem::path& file);

/// A name in English, and its translations by language tag.
struct Name {
    std::string english;
    std::map<std::string, std::string> translations;
};

/// The texts of the sources in `languages/`, in UTF-8. A comment at the top of a source contains its language tags,
/// such as "// Language tags: pt-br pt". The English source has no tags.
class LanguageSources {
public:
    /// Reads all sources in a folder. Throws InputError for a fault in a source.
    explicit LanguageSources(const std::filesystem::path& folder);

    /// Returns a text in all languages. Throws InputError if a language does not have the text.
    [[nodiscard]] Name find(const std::string& key) const;
    [[nodiscard]] std::vector<std::string> tags() const;

private:
    using Texts = std::map<std::string, std::string>;

    void read(const std::filesystem::path& file);

    Texts englishTexts;
    std::map<std::string, Texts> translatedTexts; ///< by language tag
};

/// Appends the same text, such as the number of a band, to a name in all languages. Returns the result.
[[nodiscard]] Name withSuffix(Name name, std::string_view suffix);

} // namespace eq::lv2
