#include "lv2/turtle/Names.h"

#include "support/AsciiText.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace eq::lv2 {

std::vector<std::string> linesOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.emplace_back(trim(line));
    if (!stream.eof()) throw InputError(file.string() + ": cannot be read");
    return lines;
}

LanguageSources::LanguageSources(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().filename().string().starts_with("Equalizer")) read(entry.path());
    if (englishTexts.empty() || translatedTexts.empty()) throw InputError(folder.string() + ": languages are missing");
}

void LanguageSources::read(const std::filesystem::path& file) {
    constexpr std::string_view TagsMark = "// Language tags:";
    std::vector<std::string> tags;
    Texts texts;
    for (const std::string& line : linesOf(file)) {
        if (line.starts_with(TagsMark)) {
            std::istringstream words(line.substr(TagsMark.size()));
            for (std::string tag; words >> tag;) tags.push_back(tag);
        }
        const std::size_t equals = line.find('=');
        if (line.starts_with("//") || line.starts_with('[') || line.starts_with('<') || equals == std::string::npos)
            continue;
        texts.try_emplace(std::string(trim(line.substr(0, equals))), trim(line.substr(equals + 1)));
    }
    if (tags.empty() && !englishTexts.empty())
        throw InputError(file.string() + ": it has no line '// Language tags: TAG'");
    if (tags.empty()) englishTexts = texts;
    for (const std::string& tag : tags)
        if (!translatedTexts.try_emplace(tag, texts).second)
            throw InputError(file.string() + ": another file has " + tag);
}

Name LanguageSources::find(const std::string& key) const {
    const auto textOf = [&key](const Texts& texts, const std::string& language) -> const std::string& {
        const auto found = texts.find(key);
        if (found == texts.end()) throw InputError("languages: there is no " + key + " in " + language);
        // The generator does not support escape sequences.
        if (found->second.empty() || found->second.find('\\') != std::string::npos)
            throw InputError("languages: the text of " + key + " in " + language + " is empty or has an escape");
        return found->second;
    };
    Name name = {textOf(englishTexts, "English"), {}};
    for (const auto& [tag, texts] : translatedTexts) name.translations[tag] = textOf(texts, tag);
    return name;
}

std::vector<std::string> LanguageSources::tags() const {
    std::vector<std::string> tags;
    for (const auto& [tag, texts] : translatedTexts) tags.push_back(tag);
    return tags;
}

Name withSuffix(Name name, std::string_view suffix) {
    name.english += suffix;
    for (auto& [tag, text] : name.translations) text += suffix;
    return name;
}

} // namespace eq::lv2
