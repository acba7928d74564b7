#include "tools/lngcheck/Checks.h"

#include "support/AsciiText.h"
#include "tools/lngcheck/FileAccess.h"
#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/Languages.h"
#include "tools/lngcheck/checks/FileChecks.h"
#include "tools/lngcheck/checks/TextChecks.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace eq {

namespace lngcheck {
namespace {

using TextCheck = void (*)(const CheckedText&);
constexpr TextCheck TextChecks[] = {checkMnemonic,  checkNumbers, checkScripts,     checkBlanks,
                                    checkLostMarks, checkPairs,   checkUntranslated};

/// Returns the library's keys that the language lacks. A key in a misspelt context, or before the first context, counts
/// as present, because another fault reports it.
std::vector<std::string_view> keysLackedBy(const Language& language) {
    std::set<std::string> misspelt;
    std::set<nocase_string_view> lost;
    for (const LanguageFile* file : language.files()) {
        for (const ContextLine& context : misspeltContexts(*file)) misspelt.insert(context.name);
        for (const std::string& key : file->droppedKeys) lost.insert(asNocase(key));
    }
    const auto isLost = [&](std::string_view key) {
        return lost.contains(asNocase(key)) || std::ranges::any_of(misspelt, [&](const std::string& context) {
                   return static_cast<bool>(language.find(context, key));
               });
    };
    std::vector<std::string_view> keys;
    for (const KnownText& known : knownTexts()) {
        if (!language.findShown(known.key) && !isLost(known.key)) keys.push_back(known.key);
    }
    return keys;
}

void checkTexts(const LanguageFile& file, Findings& findings) {
    for (const Definition& definition : file.definitions) {
        const KnownText* const known = findKnownText(definition.key);
        const EnglishText* const english = findEnglishText(definition.key);
        if (definition.isAccelerator || !known || !english || !definition.text || !isKnownContext(definition.context))
            continue;
        const CheckedText text(file, definition, *known, *english, findings);
        checkSpace(text);
        if (definition.text->empty()) continue;
        for (const TextCheck check : TextChecks) check(text);
    }
}

} // namespace

void checkFile(const LanguageFile& file, Findings& findings) {
    checkName(file, findings);
    if (!file.isReadable) return;
    checkUtf8(file, findings);
    checkContexts(file, findings);
    checkKeys(file, findings);
    checkBackslashes(file, findings);
    checkAccelerators(file, findings);
    checkTexts(file, findings);
}

int missingTexts(const Language& language) {
    return static_cast<int>(keysLackedBy(language).size());
}

void checkLanguage(const Language& language, Findings& findings) {
    checkMnemonicsOfSheets(language, findings);
    checkUnitsOfLabels(language, findings);
    checkEqualTexts(language, findings);
    if (!language.isReadable()) return;

    const std::string& path = language.files().front()->path;
    std::string leftToEnglish;
    for (const std::string_view missing : keysLackedBy(language)) {
        const std::string key(missing);
        if (isPrimaryLanguage(language.id()))
            leftToEnglish += (leftToEnglish.empty() ? "" : ", ") + key;
        else
            findings.add(path, 0, Severity::Fault, "the key " + key + " is missing");
    }
    if (!leftToEnglish.empty())
        findings.add(path, 0, Severity::Note, "these texts are shown in English: " + leftToEnglish);
}

void checkAgainstReference(const Language& language, const LanguageFile& reference, Findings& findings) {
    const std::string& path = language.files().front()->path;
    std::error_code ignored;
    if (!language.isReadable() || std::filesystem::equivalent(toPath(path), toPath(reference.path), ignored)) return;

    std::string same;
    for (const Definition& wanted : reference.definitions) {
        const Place found = language.find(wanted.context, wanted.key);
        const bool isReported = isKnownContext(wanted.context) && findKnownText(wanted.key);
        if (!found && !isReported && !isPrimaryLanguage(language.id()))
            findings.add(path, 0, Severity::Fault,
                         "the key " + wanted.key + " of [" + wanted.context + "] is missing, but " + reference.name +
                             " has it");
        else if (found && found.definition->text == wanted.text)
            same += (same.empty() ? "" : ", ") + wanted.key;
    }
    if (!same.empty()) findings.add(path, 0, Severity::Note, "the same as in " + reference.name + ": " + same);
}

} // namespace lngcheck

} // namespace eq
