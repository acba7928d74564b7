#include "support/AsciiText.h"
#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/Letters.h"
#include "tools/lngcheck/ShippedTexts.h"
#include "tools/lngcheck/checks/FileChecks.h"
#include "wedge/NocaseString.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::array KnownContexts = {ModuleContext, SharedContext};

bool isSimilar(std::string_view name, std::string_view known) {
    // For the library, "[Parametric Equalizer] // labels" opens the context "Parametric Equalizer] // labels".
    const bool isContinued = name.size() > known.size() && equalNoCase(name.substr(0, known.size()), known) &&
                             name.find(']') != std::string_view::npos;
    return isContinued || differences(name, known) * 4 <= known.size();
}

/// Returns whether the key belongs to the library's own context. Keys of the shared context are in other libraries,
/// too.
bool isOwnKey(std::string_view key) {
    const EnglishText* const english = findEnglishText(key);
    return english && equalNoCase(english->context, ModuleContext);
}

bool isSimilarToKnown(std::string_view name) {
    return std::ranges::any_of(KnownContexts, [name](std::string_view known) { return isSimilar(name, known); });
}

std::string_view nearestContext(std::string_view name) {
    const auto similar =
        std::ranges::find_if(KnownContexts, [name](std::string_view known) { return isSimilar(name, known); });
    return similar == KnownContexts.end() ? ModuleContext : *similar;
}

/// Returns the library's key that is most similar; an empty text if no key is similar.
std::string_view nearestKey(std::string_view key) {
    constexpr std::size_t MostDifferences = 3;
    std::string_view nearest;
    std::size_t fewest = std::min(MostDifferences, key.size() / 2) + 1;
    for (const KnownText& known : knownTexts()) {
        const std::size_t count = differences(key, known.key);
        if (count >= fewest) continue;
        fewest = count;
        nearest = known.key;
    }
    return nearest;
}

} // namespace

std::vector<ContextLine> misspeltContexts(const LanguageFile& file) {
    std::set<nocase_string_view> withOwnKeys;
    for (const Definition& definition : file.definitions) {
        if (isOwnKey(definition.key)) withOwnKeys.insert(asNocase(definition.context));
    }
    std::vector<ContextLine> misspelt;
    std::ranges::copy_if(file.contexts, std::back_inserter(misspelt), [&](const ContextLine& context) {
        return !isKnownContext(context.name) &&
               (withOwnKeys.contains(asNocase(context.name)) || isSimilarToKnown(context.name));
    });
    return misspelt;
}

void checkContexts(const LanguageFile& file, Findings& findings) {
    for (const ContextLine& context : misspeltContexts(file))
        findings.add(file.path, context.line, Severity::Fault,
                     "the library does not read [" + context.name + "], so the texts below it are lost",
                     "Write [" + std::string(nearestContext(context.name)) + "], and nothing after the ].");
}

void checkKeys(const LanguageFile& file, Findings& findings) {
    std::map<std::pair<nocase_string_view, nocase_string_view>, int> lines;
    for (const Definition& definition : file.definitions) {
        const auto [first, isNew] =
            lines.try_emplace({asNocase(definition.context), asNocase(definition.key)}, definition.line);
        if (!isNew)
            findings.add(file.path, definition.line, Severity::Fault,
                         definition.key + " is defined in line " + std::to_string(first->second) + " of this [" +
                             definition.context + "] already, so this line is ignored",
                         "Delete one of the two lines.");
        if (definition.isAccelerator || !isKnownContext(definition.context) || findKnownText(definition.key)) continue;
        const std::string_view nearest = nearestKey(definition.key);
        findings.add(file.path, definition.line, Severity::Warning,
                     "the library does not look up the key '" + definition.key + "'",
                     nearest.empty() ? "The effect has no such key. Is it misspelt?"
                                     : "Did you mean " + std::string(nearest) + "?");
    }
}

} // namespace lngcheck

} // namespace eq
