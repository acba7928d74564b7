#include "wedge/CLanguageFile.h"

#include "wedge/Codepages.h"
#include "wedge/LanguageTag.h"

#include <istream>
#include <optional>

namespace eq {

namespace {

constexpr const char* SourceFile = "wedge/CLanguageFile";
constexpr const char* ScanOperation = "CLanguageFile::ScanFile()";
constexpr std::string_view Brackets = "[]";

template <class Exception>
[[noreturn]] void raise(const char* thrower, const std::string& context, const char* name, int line) {
    throw Exception(thrower, context.c_str(), SourceFile, line, name);
}

[[noreturn]] void raiseOpenFailed(const std::string& filename, int line) {
    raise<CLanguageFile::open_failed>("CLanguageFile::CLanguageFile()", "Open of file '" + filename + "' failed.",
                                      "open_failed", line);
}

[[noreturn]] void raiseReadFailed(const std::string& filename, int line) {
    raise<CLanguageFile::open_failed>(ScanOperation, "Read of file '" + filename + "' failed.", "open_failed", line);
}

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

WORD languageOfPath(std::string_view path) noexcept {
    const auto dot = path.rfind('.');
    if (dot == path.npos) return 0;

    auto first = dot;
    while (first > 0 && isDigit(path[first - 1])) --first;
    return languageOfDigits(path.substr(first, dot - first));
}

/// The trimmed texts before and after the first '=' of a line.
struct Assignment {
    std::string left;
    std::string right;
};

std::optional<Assignment> assignmentOf(std::string_view line) {
    const auto equal = line.find('=');
    if (equal == line.npos) return std::nullopt;
    return Assignment{std::string(trim(line.substr(0, equal))), std::string(trim(line.substr(equal + 1)))};
}

/// Reads a stream once: classifies and checks each line, then passes it to the handler.
class Scan {
public:
    Scan(const std::string& filename, CLanguageFileHandler& handler) : m_filename(filename), m_handler(handler) {}

    void run(std::istream& stream) {
        std::string line;
        while (std::getline(stream, line)) {
            ++m_line_number;
            scanLine(trim(line));
        }
        if (stream.bad()) raiseReadFailed(m_filename, __LINE__);
        endContext();
        m_handler.OnFileEnd();
    }

private:
    void scanLine(std::string_view line) {
        if (line.empty() || line.starts_with("//")) return;

        switch (line.front()) {
        case '[':
            scanContext(line);
            break;
        case '<':
            scanTag(line);
            break;
        default:
            scanString(line);
            break;
        }
    }

    void scanContext(std::string_view line) {
        endContext();
        m_handler.OnContext(std::string(trim_chars(line, Brackets)));
        m_in_context = true;
    }

    void scanTag(std::string_view line) {
        const auto close = line.find('>', 1);
        if (close == line.npos) fail(": Invalid tag syntax - cannot find '>'.\n", __LINE__);

        const std::string tag(line.substr(0, close + 1));
        const bool needsValue = checkTag(tag);
        if (const auto assignment = assignmentOf(line)) {
            if (assignment->left != tag) fail(": Unexpected text encountered between tag and '='.", __LINE__);
            m_handler.OnTag(tag, assignment->right);
        } else {
            if (needsValue) fail(": equal (=) expected for this tag type.\n", __LINE__);
            m_handler.OnTag(tag, std::string());
        }
    }

    /// Returns whether a tag needs a value. Throws syntax_error if the tag is invalid or does not fit the language of
    /// the file.
    bool checkTag(const std::string& tag) const {
        std::string reason;
        const LanguageTagPtr record = ParseLanguageTag(tag, reason);
        if (!record) {
            fail(reason.empty() ? ": Invalid tag '" + tag + "'.\n" : ": Invalid tag '" + tag + "':" + reason + "\n",
                 __LINE__);
        }
        const CodepageDefinition* definition = asCodepage(*record);
        if (definition && !CodepageFitsLanguage(definition->codepage, languageOfPath(m_filename))) {
            fail(": Specified codepage does not appear to match language of file.\n", __LINE__);
        }
        return record->needs_value;
    }

    void scanString(std::string_view line) {
        const auto assignment = assignmentOf(line);
        if (!assignment) fail(": equal (=) expected.\n", __LINE__);
        m_handler.OnString(assignment->left, assignment->right);
    }

    void endContext() {
        if (m_in_context) m_handler.OnContextEnd();
        m_in_context = false;
    }

    [[noreturn]] void fail(const std::string& message, int line) const {
        raise<CLanguageFile::syntax_error>(
            ScanOperation, "In file '" + m_filename + "', line " + std::to_string(m_line_number) + message,
            "syntax_error", line);
    }

    const std::string& m_filename;
    CLanguageFileHandler& m_handler;
    unsigned long m_line_number = 0;
    bool m_in_context = false;
};

/// Reads the bytes of a text from its start and classifies the next byte.
class ByteWalk {
public:
    /// Returns the kind of `c` if it is the next byte. `byte_kind` defines the numbers.
    [[nodiscard]] int kindOf(char c) const noexcept {
        if (m_trail_follows) return 2;
        // No code page has a lead byte in the ASCII range.
        const auto value = static_cast<BYTE>(c);
        return value >= 0x80 && IsDBCSLeadByte(value) ? 1 : 0;
    }

    void pass(char c) noexcept { m_trail_follows = kindOf(c) == 1; }

private:
    bool m_trail_follows = false;
};

/// The byte that an escape represents, and the length of the escape in bytes.
struct Escape {
    char byte;
    std::size_t length;
};

std::optional<Escape> controlEscapeAt(std::string_view s) noexcept {
    if (s.size() < 2) return std::nullopt;
    switch (s[1]) {
    case 'n':
        return Escape{'\n', 2};
    case 'r':
        return Escape{'\r', 2};
    case 't':
        return Escape{'\t', 2};
    default:
        return std::nullopt;
    }
}

int hexadecimalDigit(char c) noexcept {
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::optional<Escape> hexadecimalEscapeAt(std::string_view s) noexcept {
    if (s.size() < 4 || s[1] != 'x') return std::nullopt;
    const int high = hexadecimalDigit(s[2]);
    const int low = hexadecimalDigit(s[3]);
    if (high < 0 || low < 0) return std::nullopt;
    return Escape{static_cast<char>(high * 16 + low), 4};
}

/// Decodes in place the escapes that `escapeAt` recognizes. The text only becomes shorter, so each byte is read before
/// it is overwritten. A decoded byte can be a lead byte; the next byte is then a trail byte.
template <class EscapeAt>
void decodeEscapes(std::string& s, EscapeAt escapeAt) {
    ByteWalk walk;
    std::size_t written = 0;
    for (std::size_t read = 0; read < s.size();) {
        Escape next{s[read], 1};
        if (next.byte == '\\' && walk.kindOf(next.byte) != 2) {
            next = escapeAt(std::string_view(s).substr(read)).value_or(next);
        }
        walk.pass(next.byte);
        s[written++] = next.byte;
        read += next.length;
    }
    s.resize(written);
}

} // namespace

CLanguageFile::CLanguageFile(const char* filename) : m_filename(filename), m_stream(filename) {
    if (!m_stream) raiseOpenFailed(m_filename, __LINE__);

    constexpr int FirstMark = 0xFF;
    constexpr int SecondMark = 0xFE;
    if (m_stream.peek() == FirstMark) {
        m_stream.get();
        m_unicode = m_stream.peek() == SecondMark;
    }
    // Some systems open a folder like a file, but fail at the first read.
    if (m_stream.bad()) raiseOpenFailed(m_filename, __LINE__);
}

void CLanguageFile::ScanFile(CLanguageFileHandler& handler) {
    if (m_unicode) {
        raise<no_unicode_file_support>(ScanOperation, "filename=" + m_filename, "no_unicode_file_support", __LINE__);
    }
    m_stream.clear();
    m_stream.seekg(0);
    if (!m_stream) raiseReadFailed(m_filename, __LINE__);
    scanLanguageStream(m_stream, m_filename, handler);
}

WORD CLanguageFile::FileLanguage() const {
    return languageOfPath(m_filename);
}

void scanLanguageStream(std::istream& stream, const std::string& filename, CLanguageFileHandler& handler) {
    Scan(filename, handler).run(stream);
}

WORD languageOfDigits(std::string_view digits) noexcept {
    unsigned value = 0;
    for (const char digit : digits) value = (value * 10 + static_cast<unsigned>(digit - '0')) & 0xFFFFU;
    return static_cast<WORD>(value);
}

std::string decode_value(std::string s) {
    // Decode hexadecimal escapes last, in a separate pass, because a decoded byte can make the next byte a trail byte.
    decodeEscapes(s, controlEscapeAt);
    decodeEscapes(s, hexadecimalEscapeAt);
    return s;
}

int byte_kind(std::string_view s, std::size_t index) noexcept {
    ByteWalk walk;
    for (const char c : s.substr(0, index)) walk.pass(c);
    return index < s.size() ? walk.kindOf(s[index]) : 0;
}

} // namespace eq
