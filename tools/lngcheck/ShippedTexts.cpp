#include "tools/lngcheck/ShippedTexts.h"

#include "tools/lngcheck/LanguageFile.h"
#include "wedge/NocaseString.h"

#include <algorithm>
#include <map>
#include <string>

namespace eq {

namespace lngcheck {
namespace {

struct Source {
    std::string_view name;
    std::string_view contents;
};

// The build writes a row {name, contents} for each source in languages/.
constexpr Source Sources[] = {
#include <ShippedSources.inc>
};
constexpr std::string_view EnglishName = "Equalizer1033.txt";

struct KeyFacts {
    EnglishText english;
    int languages = 0; ///< the number of other languages with the same text
};
using Facts = std::map<nocase_string, KeyFacts>;

Facts readFacts() {
    Facts facts;
    for (const Definition& definition : readLanguageSource(std::string(EnglishName), englishSource()).definitions)
        facts[definition.key.c_str()] = {{definition.context, definition.text.value_or(L"")}};
    for (const Source& source : Sources) {
        if (source.name == EnglishName) continue;
        for (const Definition& definition : readLanguageSource(std::string(source.name), source.contents).definitions) {
            const auto found = facts.find(definition.key.c_str());
            if (found != facts.end() && found->second.english.text == definition.text) ++found->second.languages;
        }
    }
    return facts;
}

const KeyFacts* findFacts(std::string_view key) {
    static const Facts facts = readFacts();
    const auto found = facts.find(nocase_string(key.data(), key.size()));
    return found == facts.end() ? nullptr : &found->second;
}

} // namespace

const EnglishText* findEnglishText(std::string_view key) {
    const KeyFacts* const facts = findFacts(key);
    return facts ? &facts->english : nullptr;
}

int languagesWithEnglishText(std::string_view key) {
    const KeyFacts* const facts = findFacts(key);
    return facts ? facts->languages : 0;
}

int shippedLanguages() {
    return static_cast<int>(std::size(Sources)) - 1;
}

std::string_view englishSource() {
    return std::ranges::find(Sources, EnglishName, &Source::name)->contents;
}

} // namespace lngcheck

} // namespace eq
