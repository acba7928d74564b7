#include "tools/lngcheck/Checks.h"

#include "support/AsciiText.h"
#include "support/TextConversion.h"
#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/TextWidth.h"
#include "wedge/CLanguageFile.h"
#include "wedge/LanguageTag.h"
#include "wedge/NocaseString.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <utility>

namespace eq {

namespace lngcheck {
namespace {

/// The files of a primary language serve countries that have no file of their own. What they lack is shown in English.
bool isPrimaryLanguage(WORD language) {
    return language == PRIMARYLANGID(language);
}

bool isControl(wchar_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

class FileCheck {
public:
    FileCheck(const LanguageFile& file, Findings& findings) : m_file(file), m_findings(findings) {}

    void run() const {
        if (m_file.language == 0) warnOfName();
        warnOfUtf8();
        checkDuplicates();
        for (const Definition& definition : m_file.definitions) {
            checkBackslashes(definition);
            if (definition.isAccelerator)
                checkAccelerator(definition);
            else
                checkString(definition);
        }
    }

private:
    void report(const Definition& where, Severity severity, const std::string& text) const {
        m_findings.add(m_file.path, where.line, severity, text);
    }

    void warnOfName() const {
        m_findings.add(m_file.path, 0, Severity::Warning,
                       "the name does not end in a language id and .lng, so the file belongs to no language");
    }

    /// UTF-8 saved by mistake is often valid in a single-byte code page, and shows two characters for one.
    void warnOfUtf8() const {
        std::string values;
        for (const Definition& definition : m_file.definitions) values += definition.value + "\n";
        if (std::ranges::all_of(values, isAscii)) return;
        if (toWide(values, CP_UTF8, InvalidBytes::Refused).error != ERROR_SUCCESS) return;
        m_findings.add(m_file.path, 0, Severity::Warning,
                       "the texts look like UTF-8, which the library does not read: save the file in the code page "
                       "that its <CODEPAGE> tag names");
    }

    void checkDuplicates() const {
        std::map<std::pair<nocase_string_view, nocase_string_view>, int> lines;
        for (const Definition& definition : m_file.definitions) {
            const auto [first, isNew] =
                lines.try_emplace({asNocase(definition.context), asNocase(definition.key)}, definition.line);
            if (!isNew)
                report(definition, Severity::Fault,
                       definition.key + " is defined in line " + std::to_string(first->second) + " of this [" +
                           definition.context + "] already, so this line is ignored");
        }
    }

    /// The scanner tells letters of two bytes by the system's code page, which need not be that of the file.
    void checkBackslashes(const Definition& definition) const {
        const std::string& value = definition.value;
        for (std::size_t at = value.find('\\', 1); at < value.size(); at = value.find('\\', at + 1)) {
            if (isAscii(value[at - 1])) continue;
            report(definition, Severity::Warning,
                   "a backslash, or a letter whose second byte is one, stands behind a byte outside ASCII: systems "
                   "with another code page read it otherwise");
            return;
        }
    }

    void checkAccelerator(const Definition& definition) const {
        std::string reason;
        const std::string tag = decode_value(definition.value);
        const LanguageTagPtr record = ParseLanguageTag(tag, reason);
        if (record && asAccelerator(*record)) return;
        const std::string why = record ? "it is no accelerator" : reason.empty() ? "it is no <tag>" : reason;
        report(definition, Severity::Fault, "'" + tag + "' cannot be the new accelerator: " + why);
    }

    void checkString(const Definition& definition) const {
        if (!isKnownContext(definition.context)) return;
        const KnownText* const known = findKnownText(definition.key);
        if (known)
            checkText(definition, *known);
        else if (equalNoCase(definition.context, ModuleContext))
            report(definition, Severity::Warning, "the library does not look up the key '" + definition.key + "'");
    }

    void checkText(const Definition& definition, const KnownText& known) const {
        if (!definition.text) return;
        const std::wstring& text = *definition.text;
        if (text.empty()) report(definition, Severity::Fault, "the text is empty");
        if (std::ranges::any_of(text, isControl))
            report(definition, Severity::Warning, "the text holds a control character, and shows in one line");
        if (!known.number.empty()) checkUnitBytes(definition, known);
        checkWidth(definition, known);
    }

    /// The read-out's text is in the system's code page: the file's on Windows, as a rule, and UTF-8 elsewhere.
    void checkUnitBytes(const Definition& definition, const KnownText& known) const {
        const std::size_t inUnicode = inUtf8(*definition.text).size();
        if (inUnicode > 2 * definition.text->size() + 1)
            report(definition, Severity::Warning, "the unit does not show where the system's code page is UTF-8");
        const std::size_t unit = std::max(decode_value(definition.value).size(), inUnicode);
        const std::size_t bytes = known.number.size() + unit;
        if (bytes <= MostDisplayBytes) return;
        report(definition, Severity::Fault,
               "the unit makes a read-out of " + std::to_string(bytes) + " bytes, of which " +
                   std::to_string(MostDisplayBytes) + " show");
    }

    void checkWidth(const Definition& definition, const KnownText& known) const {
        const std::wstring shown = toWide(known.number, CP_UTF8).text + *definition.text;
        const int needed = textWidth(shown);
        const int available = controlWidth(known.width);
        if (needed <= available) return;
        report(definition, Severity::Warning,
               "'" + inUtf8(shown) + "' takes about " + std::to_string(needed) + " pixels, and its place has " +
                   std::to_string(available));
    }

    const LanguageFile& m_file;
    Findings& m_findings;
};

using FilesOfLanguage = std::vector<const LanguageFile*>;

/// Calls `check` for each language with its files, in the order of their first file. A language that cannot be read as
/// a whole is left out, for nothing can be said of what it lacks.
void forEachLanguage(const std::vector<LanguageFile>& files, const std::function<void(const FilesOfLanguage&)>& check) {
    std::vector<FilesOfLanguage> languages;
    for (const LanguageFile& file : files) {
        if (file.language == 0) continue;
        const auto same = std::ranges::find_if(
            languages, [&](const FilesOfLanguage& language) { return language.front()->language == file.language; });
        if (same == languages.end())
            languages.push_back({&file});
        else
            same->push_back(&file);
    }
    for (const FilesOfLanguage& language : languages) {
        if (std::ranges::all_of(language, &LanguageFile::isReadable)) check(language);
    }
}

template <class Wanted>
const Definition* findDefinition(const FilesOfLanguage& language, Wanted isWanted) {
    for (const LanguageFile* file : language) {
        const auto found = std::ranges::find_if(file->definitions, isWanted);
        if (found != file->definitions.end()) return &*found;
    }
    return nullptr;
}

bool definesKnownText(const FilesOfLanguage& language, const KnownText& known) {
    return findDefinition(language, [&](const Definition& definition) {
               return findKnownText(definition.key) == &known && isKnownContext(definition.context);
           }) != nullptr;
}

void checkLanguageAgainst(const LanguageFile& reference, const FilesOfLanguage& language, Findings& findings) {
    std::string same;
    for (const Definition& wanted : reference.definitions) {
        const Definition* const found = findDefinition(language, [&](const Definition& definition) {
            return equalNoCase(definition.key, wanted.key) && equalNoCase(definition.context, wanted.context);
        });
        const bool isReported = isKnownContext(wanted.context) && findKnownText(wanted.key);
        if (!found && !isReported && !isPrimaryLanguage(language.front()->language))
            findings.add(language.front()->path, 0, Severity::Fault,
                         "the key " + wanted.key + " of [" + wanted.context + "] is missing, which " + reference.name +
                             " has");
        else if (found && found->text == wanted.text)
            same += (same.empty() ? "" : ", ") + wanted.key;
    }
    if (!same.empty())
        findings.add(language.front()->path, 0, Severity::Note, "the same as in " + reference.name + ": " + same);
}

} // namespace

void checkFile(const LanguageFile& file, Findings& findings) {
    FileCheck(file, findings).run();
}

void checkCompleteness(const std::vector<LanguageFile>& files, Findings& findings) {
    forEachLanguage(files, [&](const FilesOfLanguage& language) {
        const LanguageFile& first = *language.front();
        std::string leftToEnglish;
        for (const KnownText& known : knownTexts()) {
            if (definesKnownText(language, known)) continue;
            const std::string key(known.key);
            if (isPrimaryLanguage(first.language))
                leftToEnglish += (leftToEnglish.empty() ? "" : ", ") + key;
            else
                findings.add(first.path, 0, Severity::Fault, "the key " + key + " is missing");
        }
        if (!leftToEnglish.empty())
            findings.add(first.path, 0, Severity::Note, "these texts show in English: " + leftToEnglish);
    });
}

void checkAgainstReference(const std::vector<LanguageFile>& files, const LanguageFile& reference, Findings& findings) {
    const auto isReference = [&](const LanguageFile& file) {
        return std::filesystem::equivalent(file.path, reference.path);
    };
    forEachLanguage(files, [&](const FilesOfLanguage& language) {
        if (!isReference(*language.front())) checkLanguageAgainst(reference, language, findings);
    });
}

} // namespace lngcheck

} // namespace eq
