#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>

namespace eq {

/// The base of the language layer's exceptions. It contains the exception's name, the operation that threw it, the
/// context of the failure, and a report that combines these with the source position:
///
///     open_failed thrown by CLanguageFile::CLanguageFile() [wedge/CLanguageFile:574] with context
///     Open of file 'x' failed.
///
/// The four texts are inside the object, or in one heap block if they are long. Throwing therefore usually needs no
/// heap. Neither construction nor copying throws: a text that does not fit is cut.
class ContextException : public std::exception {
public:
    /// Null texts count as empty. A null name becomes "<exception not named>".
    ContextException(const char* operation, const char* context, const char* file, int line, const char* name) noexcept;

    /// Describes a failed system call. The context is `CallFailureText(systemCall, errorCode)`.
    ContextException(const char* operation, const char* systemCall, unsigned long errorCode, const char* file, int line,
                     const char* name) noexcept;

    /// The copy does not refer to its source. Its texts are empty if its heap block cannot be allocated.
    ContextException(const ContextException& source) noexcept;
    ContextException& operator=(const ContextException&) = delete;

    ~ContextException() override;

    /// Returns the report.
    [[nodiscard]] const char* what() const noexcept override { return report; }

    [[nodiscard]] const char* name() const noexcept { return exceptionName; }
    [[nodiscard]] const char* throwingOperation() const noexcept { return thrower; }
    [[nodiscard]] const char* context() const noexcept { return contextText; }

private:
    void build(const char* operation, const char* context, const char* file, int line, const char* name) noexcept;
    char* allocateStorage(std::size_t size) noexcept;
    [[nodiscard]] const char* rebased(const char* text, const ContextException& source) const noexcept;
    [[nodiscard]] const char* storage() const noexcept { return heapText ? heapText.get() : inlineText; }
    [[nodiscard]] std::size_t storageSize() const noexcept { return heapText ? heapTextSize : sizeof inlineText; }

    // Each pointer points into the storage, or to a constant empty text.
    const char* exceptionName = "";
    const char* thrower = "";
    const char* contextText = "";
    const char* report = "";

    char inlineText[256] = {};
    unsigned heapTextSize = 0;
    std::unique_ptr<char[]> heapText; // the storage when `inlineText` is too small
};

/// Returns "Call to 'systemCall' returned error 87", followed by ": " and the system's text if the system has one for
/// the code.
[[nodiscard]] std::string CallFailureText(const char* systemCall, unsigned long errorCode);

/// Returns the system's text for an error code, or `fallback` if there is none. All threads share the text's buffer.
/// The text is valid until the next call on any thread.
[[nodiscard]] const char* SystemErrorText(unsigned long errorCode, const char* fallback);

} // namespace eq
