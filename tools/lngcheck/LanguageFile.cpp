#include "tools/lngcheck/LanguageFile.h"

#include "support/AsciiText.h"
#include "support/TextConversion.h"
#include "tools/lngcheck/FileAccess.h"
#include "tools/lngcheck/Hints.h"
#include "tools/lngcheck/WholeFile.h"
#include "wedge/CLanguageFile.h"
#include "wedge/LanguageSelection.h"
#include "wedge/LanguageTag.h"
#include "wedge/string_ext.h"

#include <algorithm>
#include <sstream>

namespace eq {

namespace lngcheck {
namespace {

constexpr char EndMark = '\x1A';

/// Records the contents of the lines that the scanner accepts.
class Recorder : public CLanguageFileHandler {
public:
    Recorder(LanguageFile& file, Findings& findings, std::optional<UINT> codepage)
        : m_file(file), m_findings(findings), m_fixedCodepage(codepage) {}

    void setLine(int line) { m_line = line; }

    /// Records that a code page tag is wrong. The texts after this tag then cannot be checked.
    void setCodepageUnknown() { m_isCodepageUnknown = true; }

    [[nodiscard]] int acceptedLines() const { return m_acceptedLines; }

    void OnContext(const std::string& name) override {
        ++m_acceptedLines;
        m_context = std::string(trim(name));
        m_file.contexts.push_back({m_line, *m_context});
    }

    void OnString(const std::string& key, const std::string& value) override {
        ++m_acceptedLines;
        define(key, value, false);
    }

    void OnTag(const std::string& tag, const std::string& value) override {
        ++m_acceptedLines;
        std::string reason;
        const LanguageTagPtr record = ParseLanguageTag(tag, reason);
        if (const CodepageDefinition* codepage = asCodepage(*record))
            setCodepage(static_cast<UINT>(codepage->codepage));
        else if (const AcceleratorDefinition* accelerator = asAccelerator(*record))
            define(AcceleratorKeyName(*accelerator), value, true);
    }

    // The scanner receives each line as a whole file. The end of such a file does not end the context.
    void OnContextEnd() override {}
    void OnFileEnd() override {}

private:
    void setCodepage(UINT codepage) {
        m_codepage = codepage;
        m_isCodepageUnknown = false;
    }

    void define(const std::string& key, const std::string& value, bool isAccelerator) {
        if (!m_context) {
            m_file.droppedKeys.push_back(key);
            fault("this line is before the first [context], so the library ignores it",
                  "Write [Parametric Equalizer] or [Shared] above this line.");
            return;
        }
        const UINT codepage = m_fixedCodepage.value_or(m_codepage);
        m_file.definitions.push_back(
            {m_line, *m_context, key, isAccelerator, value, codepage, converted(decode_value(value), codepage)});
    }

    std::optional<std::wstring> converted(const std::string& bytes, UINT codepage) {
        if (codepage == 0) return convertedUnnamed(bytes);
        try {
            std::wstring text = convert_wstring(bytes, codepage);
            if (toWide(bytes, codepage, InvalidBytes::Refused).error == ERROR_SUCCESS) return text;
            fault("the value is not a text in code page " + std::to_string(codepage),
                  "These letters do not exist there: the file was saved in another encoding than its <CODEPAGE> tag "
                  "names.");
        } catch (const convert_wstring_failed& failure) {
            m_file.isBroken = true;
            fault(failure.context(), "Windows cannot read code page " + std::to_string(codepage) + ".");
        }
        return std::nullopt;
    }

    std::optional<std::wstring> convertedUnnamed(const std::string& bytes) {
        if (std::ranges::all_of(bytes, isAscii)) return convert_wstring(bytes, CP_UTF8);
        if (m_isCodepageUnknown) return std::nullopt;
        fault("the value is not ASCII, and no <CODEPAGE> tag is above it: the shown text depends on the system",
              hintForMissingTag(m_file));
        return std::nullopt;
    }

    void fault(const std::string& text, const std::string& hint) {
        m_findings.add(m_file.path, m_line, Severity::Fault, text, hint);
    }

    LanguageFile& m_file;
    Findings& m_findings;
    std::optional<UINT> m_fixedCodepage;
    std::optional<std::string> m_context;
    UINT m_codepage = 0;
    bool m_isCodepageUnknown = false;
    int m_line = 0;
    int m_acceptedLines = 0;
};

/// Returns the scanner's message without the position at its start.
std::string messageOf(const CLanguageFile::syntax_error& error, const std::string& path) {
    std::string_view text = error.context();
    const std::string position = "In file '" + path + "', line 1: ";
    if (text.starts_with(position)) text.remove_prefix(position.size());
    return std::string(trim(text));
}

/// Reads the lines of a file. The scanner stops at the first faulty line, so it receives each line separately.
class LineReader {
public:
    LineReader(LanguageFile& file, Findings& findings, std::optional<UINT> codepage)
        : m_file(file), m_findings(findings), m_recorder(file, findings, codepage) {}

    void read(std::string_view contents) {
        while (!contents.empty()) {
            const std::size_t end = std::min(contents.find('\n'), contents.size() - 1);
            readLine(contents.substr(0, end + 1));
            contents.remove_prefix(end + 1);
            if (seemsNoLanguageFile()) break;
        }
        if (m_endMarkLine != 0) reportEndMark();
    }

private:
    void readLine(std::string_view line) {
        m_recorder.setLine(++m_line);
        const int acceptedBefore = m_recorder.acceptedLines();
        try {
            std::istringstream single{std::string(line)};
            scanLanguageStream(single, m_file.path, m_recorder);
        } catch (const CLanguageFile::syntax_error& error) {
            m_file.isBroken = true;
            ++m_refusedLines;
            if (isCodepageTag(line)) m_recorder.setCodepageUnknown();
            const std::string message = messageOf(error, m_file.path);
            m_findings.add(m_file.path, m_line, Severity::Fault, message, hintFor(message, line, m_line, m_file));
        }
        if (m_endMarkLine != 0 && m_recorder.acceptedLines() > acceptedBefore) m_isTextBehindEndMark = true;
        if (m_endMarkLine == 0) findEndMark(line);
        if (m_line == 1 && line.starts_with(Utf8Mark) && m_recorder.acceptedLines() > acceptedBefore)
            m_findings.add(m_file.path, m_line, Severity::Warning, "the file begins with a UTF-8 mark",
                           "The library reads the mark as a part of this line. Save the file as ANSI.");
        if (trim(line).find('\r') != std::string_view::npos)
            m_findings.add(
                m_file.path, m_line, Severity::Fault,
                "a line end of old Macs (CR) is in this line, which the library does not see",
                "The library reads several lines as one line here. Save the file with the line ends of Windows "
                "(CR LF).");
    }

    void findEndMark(std::string_view line) {
        const std::size_t mark = line.find(EndMark);
        if (mark == std::string_view::npos) return;
        m_endMarkLine = m_line;
        m_isTextBehindEndMark = !trim(line.substr(mark)).empty();
    }

    void reportEndMark() {
        m_findings.add(m_file.path, m_endMarkLine, m_isTextBehindEndMark ? Severity::Fault : Severity::Warning,
                       m_isTextBehindEndMark
                           ? "a byte 0x1A is here: Windows ends the file there, and reads no text after it"
                           : "a byte 0x1A is here, at which Windows ends the file",
                       "Some old programs write this byte (Ctrl+Z) at the end of a file. Delete it.");
    }

    /// Returns true and adds a fault if most lines so far are wrong. The file is then probably of another kind.
    bool seemsNoLanguageFile() {
        constexpr int MostRefusedLines = 10;
        if (m_refusedLines < MostRefusedLines || m_recorder.acceptedLines() >= m_refusedLines) return false;
        m_file.isReadable = false;
        m_findings.add(
            m_file.path, m_line, Severity::Fault,
            "this does not seem to be a language file: " + std::to_string(m_refusedLines) + " of the first " +
                std::to_string(m_line) + " lines are wrong, and the rest is not read",
            "A language file holds lines of the form [context], key = text, <CODEPAGE number>, and comments, "
            "which begin with //.");
        return true;
    }

    LanguageFile& m_file;
    Findings& m_findings;
    Recorder m_recorder;
    int m_line = 0;
    int m_refusedLines = 0;
    int m_endMarkLine = 0;
    bool m_isTextBehindEndMark = false;
};

LanguageFile unread(const std::string& path) {
    LanguageFile file;
    file.path = path;
    file.name = fileName(path);
    file.language = ParseLanguageFileName(file.name, "", "lng");
    return file;
}

} // namespace

LanguageFile readLanguageFile(const std::string& path, Findings& findings) {
    LanguageFile file = unread(path);
    const Contents contents = readContents(path);
    if (!contents.failure.empty()) {
        file.isBroken = true;
        findings.add(path, 0, Severity::Fault, "Open of file '" + path + "' failed.",
                     "The reason: " + contents.failure + ".");
        return file;
    }
    if (const auto cause = faultOfWholeFile(contents.bytes)) {
        file.isBroken = isRefusedByLibrary(contents.bytes, path);
        findings.add(path, 0, Severity::Fault, cause->text, cause->hint);
        return file;
    }
    file.isReadable = true;
    LineReader(file, findings, std::nullopt).read(contents.bytes);
    return file;
}

LanguageFile readLanguageSource(const std::string& name, std::string_view contents) {
    Findings none;
    LanguageFile file = unread(name);
    file.isReadable = true;
    LineReader(file, none, CP_UTF8).read(contents);
    return file;
}

std::string inUtf8(std::wstring_view text) {
    return toNarrow(text, CP_UTF8).text;
}

} // namespace lngcheck

} // namespace eq
