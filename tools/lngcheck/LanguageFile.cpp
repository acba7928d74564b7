#include "tools/lngcheck/LanguageFile.h"

#include "support/AsciiText.h"
#include "support/TextConversion.h"
#include "wedge/CLanguageFile.h"
#include "wedge/LanguageSelection.h"
#include "wedge/LanguageTag.h"
#include "wedge/string_ext.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace eq {

namespace lngcheck {
namespace {

/// Takes up what one line after the other holds.
class Recorder : public CLanguageFileHandler {
public:
    Recorder(LanguageFile& file, Findings& findings) : m_file(file), m_findings(findings) {}

    void setLine(int line) { m_line = line; }

    void OnContext(const std::string& name) override { m_context = std::string(trim(name)); }

    void OnString(const std::string& key, const std::string& value) override { define(key, value, false); }

    void OnTag(const std::string& tag, const std::string& value) override {
        std::string reason;
        const LanguageTagPtr record = ParseLanguageTag(tag, reason);
        if (const CodepageDefinition* codepage = asCodepage(*record))
            m_codepage = static_cast<UINT>(codepage->codepage);
        else if (const AcceleratorDefinition* accelerator = asAccelerator(*record))
            define(AcceleratorKeyName(*accelerator), value, true);
    }

    // The scanner sees a file of one line at a time, and a context outlives these.
    void OnContextEnd() override {}
    void OnFileEnd() override {}

private:
    void define(const std::string& key, const std::string& value, bool isAccelerator) {
        if (!m_context) {
            fault("stands in front of the first [context], so the library drops this line");
            return;
        }
        m_file.definitions.push_back(
            {m_line, *m_context, key, isAccelerator, value, m_codepage, converted(decode_value(value))});
    }

    std::optional<std::wstring> converted(const std::string& bytes) {
        if (m_codepage == 0) return convertedUnnamed(bytes);
        try {
            std::wstring text = convert_wstring(bytes, m_codepage);
            if (toWide(bytes, m_codepage, InvalidBytes::Refused).error == ERROR_SUCCESS) return text;
            fault("the value is no text of code page " + std::to_string(m_codepage));
        } catch (const convert_wstring_failed& failure) {
            m_file.isBroken = true;
            fault(failure.context());
        }
        return std::nullopt;
    }

    std::optional<std::wstring> convertedUnnamed(const std::string& bytes) {
        if (std::ranges::all_of(bytes, isAscii)) return convert_wstring(bytes, CP_UTF8);
        fault("the value is not ASCII, and no <CODEPAGE> tag stands above it: what it shows depends on the system");
        return std::nullopt;
    }

    void fault(const std::string& text) { m_findings.add(m_file.path, m_line, Severity::Fault, text); }

    LanguageFile& m_file;
    Findings& m_findings;
    std::optional<std::string> m_context;
    UINT m_codepage = 0;
    int m_line = 0;
};

class Ignored : public CLanguageFileHandler {
    void OnTag(const std::string&, const std::string&) override {}
    void OnContext(const std::string&) override {}
    void OnString(const std::string&, const std::string&) override {}
    void OnContextEnd() override {}
    void OnFileEnd() override {}
};

/// What the scanner says of a fault, without the position in front.
std::string messageOf(const CLanguageFile::syntax_error& error, const std::string& path) {
    std::string_view text = error.context();
    const std::string position = "In file '" + path + "', line 1: ";
    if (text.starts_with(position)) text.remove_prefix(position.size());
    return std::string(trim(text));
}

/// False if the library cannot open or read the file at all.
bool canBeRead(const std::string& path, Findings& findings) {
    try {
        CLanguageFile file(path.c_str());
        Ignored ignored;
        file.ScanFile(ignored);
    } catch (const CLanguageFile::syntax_error&) {
        // To be met again, line by line.
    } catch (const CLanguageFile::no_unicode_file_support&) {
        findings.add(path, 0, Severity::Fault,
                     "no_unicode_file_support: the file is in UTF-16, save it in an ANSI code page");
        return false;
    } catch (const CLanguageFile::base_exception& error) {
        findings.add(path, 0, Severity::Fault, std::string(trim(error.context())));
        return false;
    }
    return true;
}

/// The scanner stops at the first faulty line. Given one line at a time, it tells of each.
void readLines(LanguageFile& file, Findings& findings) {
    Recorder recorder(file, findings);
    std::ifstream stream(file.path);
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        recorder.setLine(number);
        try {
            std::istringstream single(line);
            scanLanguageStream(single, file.path, recorder);
        } catch (const CLanguageFile::syntax_error& error) {
            file.isBroken = true;
            findings.add(file.path, number, Severity::Fault, messageOf(error, file.path));
        }
    }
}

} // namespace

LanguageFile readLanguageFile(const std::string& path, Findings& findings) {
    LanguageFile file;
    file.path = path;
    file.name = std::filesystem::path(path).filename().string();
    file.language = ParseLanguageFileName(file.name, "", "lng");
    file.isReadable = canBeRead(path, findings);
    file.isBroken = !file.isReadable;
    if (file.isReadable) readLines(file, findings);
    return file;
}

std::string inUtf8(std::wstring_view text) {
    return toNarrow(text, CP_UTF8).text;
}

} // namespace lngcheck

} // namespace eq
