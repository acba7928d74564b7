#include "support/ContextException.h"

#include "platform/win32.h"
#include "support/Mutex.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <functional>
#include <new>

namespace eq {

namespace {

constexpr char ThrownBy[] = " thrown by ";
constexpr char WithContext[] = " with context\n";

constexpr std::size_t lengthOf(const char* literal) {
    return std::char_traits<char>::length(literal);
}

const char* orEmpty(const char* text) noexcept {
    return text != nullptr ? text : "";
}

class DecimalText {
public:
    explicit DecimalText(int number) noexcept { std::to_chars(digits, digits + sizeof digits - 1, number); }
    [[nodiscard]] const char* text() const noexcept { return digits; }

private:
    char digits[16] = {};
};

/// Writes zero-terminated texts, one after the other. Characters that do not fit into the storage are cut.
class TextWriter {
public:
    TextWriter(char* storage, std::size_t size) noexcept : position(storage), last(storage + size - 1) {}

    /// Starts an empty text after the previous one, and returns its address. If the storage is full, the text stays
    /// empty, at the last byte.
    const char* begin() noexcept {
        if (started && position != last) ++position;
        started = true;
        *position = '\0';
        return position;
    }

    void append(const char* text) noexcept {
        const std::size_t size = std::min(std::strlen(text), static_cast<std::size_t>(last - position));
        position = std::copy_n(text, size, position);
        *position = '\0';
    }

private:
    char* position;
    char* last;
    bool started = false;
};

/// The shared buffer for the system's messages, and its lock.
struct SystemMessage {
    Mutex lock;
    char text[1024] = {};
};

SystemMessage& systemMessage() {
    static SystemMessage message;
    return message;
}

} // namespace

ContextException::ContextException(const char* operation, const char* context, const char* file, int line,
                                   const char* name) noexcept {
    build(operation, context, file, line, name);
}

ContextException::ContextException(const char* operation, const char* systemCall, unsigned long errorCode,
                                   const char* file, int line, const char* name) noexcept {
    try {
        build(operation, CallFailureText(systemCall, errorCode).c_str(), file, line, name);
    } catch (const std::exception&) {
        // The system's text cannot be added. The failure of the system call is reported without it.
        build(operation, systemCall, file, line, name);
    }
}

ContextException::ContextException(const ContextException& source) noexcept
    : std::exception(source), heapTextSize(source.heapTextSize) {
    if (source.heapText) heapText.reset(new (std::nothrow) char[heapTextSize]);
    if (heapText) {
        std::copy_n(source.heapText.get(), heapTextSize, heapText.get());
    } else {
        std::copy_n(source.inlineText, sizeof inlineText, inlineText);
    }
    exceptionName = rebased(source.exceptionName, source);
    thrower = rebased(source.thrower, source);
    contextText = rebased(source.contextText, source);
    report = rebased(source.report, source);
}

ContextException::~ContextException() = default;

void ContextException::build(const char* operation, const char* context, const char* file, int line,
                             const char* name) noexcept {
    operation = orEmpty(operation);
    context = orEmpty(context);
    file = orEmpty(file);
    if (name == nullptr) name = "<exception not named>";
    const bool hasContext = *context != '\0';
    const DecimalText lineText(line);

    constexpr std::size_t EndBytes = 4;
    const std::size_t size = 2 * std::strlen(name) + 2 * std::strlen(operation) + 2 * std::strlen(context) +
                             std::strlen(file) + std::strlen(lineText.text()) + lengthOf(ThrownBy) + lengthOf(" [:]") +
                             (hasContext ? lengthOf(WithContext) : 0) + EndBytes;
    char* const place = allocateStorage(size);
    TextWriter writer(place, storageSize());

    exceptionName = writer.begin();
    writer.append(name);

    thrower = writer.begin();
    writer.append(operation);

    report = writer.begin();
    for (const char* piece : {name, ThrownBy, operation, " [", file, ":", lineText.text(), "]"}) writer.append(piece);
    if (hasContext) {
        writer.append(WithContext);
        writer.append(context);
    }

    contextText = writer.begin();
    writer.append(context);
}

char* ContextException::allocateStorage(std::size_t size) noexcept {
    if (size <= sizeof inlineText) return inlineText;
    heapText.reset(new (std::nothrow) char[size]);
    if (!heapText) return inlineText;
    heapTextSize = static_cast<unsigned>(size);
    return heapText.get();
}

const char* ContextException::rebased(const char* text, const ContextException& source) const noexcept {
    const char* const begin = source.storage();
    const std::less<const char*> before;
    if (before(text, begin) || !before(text, begin + storageSize())) return "";
    return storage() + (text - begin);
}

std::string CallFailureText(const char* systemCall, unsigned long errorCode) {
    std::string text = std::string("Call to '") + systemCall + "' returned error " + std::to_string(errorCode);
    // The lock is held until the shared buffer is copied. It is re-entrant, so SystemErrorText can lock it again.
    const MutexEntry entry(systemMessage().lock);
    if (const char* message = SystemErrorText(errorCode, nullptr)) text.append(": ").append(message);
    return text;
}

const char* SystemErrorText(unsigned long errorCode, const char* fallback) {
    SystemMessage& message = systemMessage();
    message.lock.Lock();
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, static_cast<DWORD>(errorCode), 0,
                                        message.text, sizeof message.text, nullptr);
    message.lock.Unlock();
    return length != 0 ? message.text : fallback;
}

} // namespace eq
