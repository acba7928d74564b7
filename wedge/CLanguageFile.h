#pragma once

#include "platform/win32.h"
#include "support/AsciiText.h"
#include "support/ContextException.h"

#include <cstddef>
#include <fstream>
#include <iosfwd>
#include <string>
#include <string_view>

namespace eq {

/// Receives what a scan reads, in the order of the file. Tag texts and keys arrive trimmed, values trimmed and still
/// escaped.
class CLanguageFileHandler {
public:
    virtual ~CLanguageFileHandler() = default;

    /// A tag line that passed all checks; `value` is empty when the line has no '='.
    virtual void OnTag(const std::string& tag, const std::string& value) = 0;
    virtual void OnContext(const std::string& name) = 0;
    virtual void OnString(const std::string& key, const std::string& value) = 0;
    /// Before the next context and at the end of the file, when a context is open.
    virtual void OnContextEnd() = 0;
    virtual void OnFileEnd() = 0;
};

/// A language file: translated strings and accelerators of one language for one or more modules. A scan keeps nothing
/// of what it reads and needs no more memory than a few times the longest line. For one thread at a time.
class CLanguageFile {
public:
    class base_exception : public ContextException {
    public:
        using ContextException::ContextException;
    };
    /// The file cannot be opened, or a read fails before its end: half a file never passes for a whole one.
    class open_failed : public base_exception {
    public:
        using base_exception::base_exception;
    };
    class syntax_error : public base_exception {
    public:
        using base_exception::base_exception;
    };
    class no_unicode_file_support : public base_exception {
    public:
        using base_exception::base_exception;
    };

    /// Opens the file; `filename` is in the system's ANSI code page. Throws open_failed.
    explicit CLanguageFile(const char* filename);
    CLanguageFile(const CLanguageFile&) = delete;
    CLanguageFile& operator=(const CLanguageFile&) = delete;
    virtual ~CLanguageFile() = default;

    /// Scans from the first byte to the end, as often as called. Throws no_unicode_file_support ahead of any event,
    /// syntax_error at the first faulty line, open_failed when a read fails, and what the handler throws.
    void ScanFile(CLanguageFileHandler& handler);

    /// The language id that the file's own name declares: the digits in front of the last '.', or 0.
    [[nodiscard]] WORD FileLanguage() const;

private:
    std::string m_filename;
    std::ifstream m_stream;
    bool m_unicode = false;
};

/// What ScanFile does behind its check for a wide file, on any stream. `filename` stands in the messages and declares
/// the language.
void scanLanguageStream(std::istream& stream, const std::string& filename, CLanguageFileHandler& handler);

/// The number that decimal digits stand for, cut to 16 bits, however many there are.
[[nodiscard]] WORD languageOfDigits(std::string_view digits) noexcept;

/// The value with its escapes \n, \r, \t and \xHH decoded, in time proportional to its length. A backslash that is the
/// second byte of a double-byte character of the system's ANSI code page starts no escape.
[[nodiscard]] std::string decode_value(std::string s);

/// What the byte at `index` is in the system's ANSI code page: 2 the second byte of a double-byte character, 1 the
/// first, 0 any other. Walks from the start of `s`.
[[nodiscard]] int byte_kind(std::string_view s, std::size_t index) noexcept;

} // namespace eq
