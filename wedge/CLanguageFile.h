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

/// Receives the content of a language file in the file's order. Tags, keys and values are trimmed. The escapes of
/// values are not yet decoded.
class CLanguageFileHandler {
public:
    virtual ~CLanguageFileHandler() = default;

    /// Receives a tag that passed all checks, with its angle brackets. `value` is empty if the line has no '='.
    virtual void OnTag(const std::string& tag, const std::string& value) = 0;
    virtual void OnContext(const std::string& name) = 0;
    virtual void OnString(const std::string& key, const std::string& value) = 0;
    /// Receives the end of a context, before the next context or at the end of the file.
    virtual void OnContextEnd() = 0;
    virtual void OnFileEnd() = 0;
};

/// A language file contains translated strings and accelerators of one language for one or more modules. A scan stores
/// no text and needs at most a few times the memory of the longest line. Only one thread at a time may use an object.
class CLanguageFile {
public:
    class base_exception : public ContextException {
    public:
        using ContextException::ContextException;
    };
    /// The file cannot be opened, or a read fails before the end of the file. A file that was read in part never counts
    /// as complete.
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

    /// Reads the whole file and passes its content to `handler`. May be called repeatedly. Throws
    /// no_unicode_file_support before it calls `handler`, syntax_error at the first faulty line, open_failed if a read
    /// fails, and the exceptions of `handler`.
    void ScanFile(CLanguageFileHandler& handler);

    /// Returns the language id in the file's name: the digits directly before the last '.'. Returns 0 if there are
    /// none.
    [[nodiscard]] WORD FileLanguage() const;

private:
    std::string m_filename;
    std::ifstream m_stream;
    bool m_unicode = false;
};

/// Scans a stream like `ScanFile`, but without its check for a UTF-16 file. Error messages contain `filename`, whose
/// digits are the language id of the file.
void scanLanguageStream(std::istream& stream, const std::string& filename, CLanguageFileHandler& handler);

/// Returns the low 16 bits of a decimal number with any number of digits; 0 for no digits.
[[nodiscard]] WORD languageOfDigits(std::string_view digits) noexcept;

/// Returns the value with its escapes \n, \r, \t and \xHH decoded. A backslash that is the second byte of a double-byte
/// character in the system's ANSI code page starts no escape. The time is proportional to the length.
[[nodiscard]] std::string decode_value(std::string s);

/// Returns the kind of the byte at `index` in the system's ANSI code page: 1 for the first byte of a double-byte
/// character, 2 for the second byte, 0 for any other byte. Reads `s` from its start.
[[nodiscard]] int byte_kind(std::string_view s, std::size_t index) noexcept;

} // namespace eq
