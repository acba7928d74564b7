#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string>

namespace eq {

/// The base of every failure that the language layer raises. It carries the exception's own name, the operation that
/// threw, the context of the failure, and a report made of these and of the source position:
///
///     open_failed thrown by CLanguageFile::CLanguageFile() [wedge/CLanguageFile:574] with context
///     Open of file 'x' failed.
///
/// All four lie inside the object, or in one heap block when they are long, so that raising a failure usually needs no
/// heap. Neither construction nor copying throws: what there is no room for is cut.
class ContextException : public std::exception {
public:
    /// Null texts count as empty; without a name the exception is "<exception not named>".
    ContextException(const char* operation, const char* context, const char* file, int line, const char* name) noexcept;

    /// A failed call of the system: the context is `CallFailureText(systemCall, errorCode)`.
    ContextException(const char* operation, const char* systemCall, unsigned long errorCode, const char* file, int line,
                     const char* name) noexcept;

    /// The copy refers to nothing in its source. Its texts are empty if its heap block cannot be allocated.
    ContextException(const ContextException& source) noexcept;
    ContextException& operator=(const ContextException&) = delete;

    ~ContextException() override;

    /// The report.
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

    // Each points into the storage, or at a constant empty text.
    const char* exceptionName = "";
    const char* thrower = "";
    const char* contextText = "";
    const char* report = "";

    char inlineText[256] = {};
    unsigned heapTextSize = 0;
    std::unique_ptr<char[]> heapText; // the storage when `inlineText` is too small
};

/// "Call to 'systemCall' returned error 87", followed by ": " and the system's own text, if it has one for the code.
[[nodiscard]] std::string CallFailureText(const char* systemCall, unsigned long errorCode);

/// The system's text for an error code, or `fallback` if there is none. The text lies in a buffer that the whole
/// process shares: it holds until the next call from any thread.
[[nodiscard]] const char* SystemErrorText(unsigned long errorCode, const char* fallback);

} // namespace eq
