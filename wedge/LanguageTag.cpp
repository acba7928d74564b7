#include "wedge/LanguageTag.h"

#include "support/AsciiText.h"
#include "wedge/VirtualKeys.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <vector>

namespace eq {

namespace {

struct ModifierWord {
    std::string_view word;
    BYTE flag;
};

constexpr std::array<ModifierWord, 4> Modifiers{{
    {"VIRTKEY", FVIRTKEY},
    {"CONTROL", FCONTROL},
    {"ALT", FALT},
    {"SHIFT", FSHIFT},
}};

using Words = std::vector<std::string>;

/// Adds one word of an accelerator to its definition. Returns false if the word is unknown.
bool applyAcceleratorWord(const std::string& word, AcceleratorDefinition& definition) {
    const auto modifier = std::ranges::find(Modifiers, word, &ModifierWord::word);
    if (modifier != Modifiers.end()) {
        definition.fVirt = static_cast<BYTE>(definition.fVirt | modifier->flag);
        return true;
    }
    const BYTE key = LookupVirtualKey(word);
    if (key == 0) return false;
    definition.key = key;
    return true;
}

LanguageTagPtr parseAccelerator(const Words& words, std::string& error) {
    AcceleratorDefinition definition{{LanguageTagType::Accelerator, true}, 0, 0, 0};
    for (auto word = words.begin() + 1; word != words.end(); ++word) {
        if (!applyAcceleratorWord(*word, definition)) {
            error = "Unknown identifier '" + *word + "' in accelerator definition.";
            return nullptr;
        }
    }
    return LanguageTagPtr(new AcceleratorDefinition(definition));
}

/// Returns the number at the start of `word`, clamped to the range of 32 bits; 0 if there is none.
std::int32_t leadingNumber(const std::string& word) {
    using Limits = std::numeric_limits<std::int32_t>;
    const long number = std::strtol(word.c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long>(number, Limits::min(), Limits::max()));
}

LanguageTagPtr parseCodepage(const Words& words, std::string& error) {
    if (words.size() < 2) {
        error = "Codepage number expected in codepage definition.";
        return nullptr;
    }
    const std::int32_t codepage = leadingNumber(words[1]);
    if (codepage == 0) {
        error = "First argument in codepage definition is expected to be an integer codepage number.";
        return nullptr;
    }
    return LanguageTagPtr(new CodepageDefinition{{LanguageTagType::Codepage, false}, codepage});
}

} // namespace

void LanguageTagDeleter::operator()(LanguageTag* tag) const noexcept {
    switch (tag->type) {
    case LanguageTagType::Accelerator:
        delete static_cast<AcceleratorDefinition*>(tag);
        break;
    case LanguageTagType::Codepage:
        delete static_cast<CodepageDefinition*>(tag);
        break;
    }
}

LanguageTagPtr ParseLanguageTag(const std::string& tag, std::string& error) {
    if (!tag.starts_with('<') || !tag.ends_with('>')) return nullptr;

    std::string inner = tag.substr(1, tag.size() - 2);
    std::ranges::transform(inner, inner.begin(), asciiUpper<char>);
    Words words;
    split(inner, " \t", words);
    if (words.empty()) return nullptr;

    const std::string& type = words.front();
    if (type == "ACCEL" || type == "ACCELERATOR") return parseAccelerator(words, error);
    if (type == "CODEPAGE") return parseCodepage(words, error);
    error = "Tag type '" + type + "' is unknown.";
    return nullptr;
}

const AcceleratorDefinition* asAccelerator(const LanguageTag& tag) noexcept {
    return tag.type == LanguageTagType::Accelerator ? static_cast<const AcceleratorDefinition*>(&tag) : nullptr;
}

const CodepageDefinition* asCodepage(const LanguageTag& tag) noexcept {
    return tag.type == LanguageTagType::Codepage ? static_cast<const CodepageDefinition*>(&tag) : nullptr;
}

std::string AcceleratorKeyName(const AcceleratorDefinition& definition) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string name = "ACCEL";
    for (const ModifierWord& modifier : Modifiers) {
        if ((definition.fVirt & modifier.flag) != 0) name.append("_").append(modifier.word);
    }
    name += "_0x";
    name += Digits[(definition.key >> 4) & 0xF];
    name += Digits[definition.key & 0xF];
    return name;
}

} // namespace eq
