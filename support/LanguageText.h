#pragma once

#include "platform/win32.h"

namespace eq {

/// A text held in wide form, narrow form or both; the missing form is made when it is asked for, in the system's ANSI
/// code page whatever the language in force. Not for use by several threads at once.
class LanguageText {
public:
    LanguageText() = default;
    explicit LanguageText(const wchar_t* text);

    /// The translation of a key in the store of `module`, or the key itself if it has none. Defined with the store.
    LanguageText(const char* key, HMODULE module);

    LanguageText(const LanguageText&) = delete;
    LanguageText& operator=(const LanguageText&) = delete;
    virtual ~LanguageText();

    /// Takes a copy of the text in place of what the object holds. A null text leaves the object empty.
    void assign(const wchar_t* text);
    void assign(const char* text);

    /// The text in the form asked for, or null if the object is empty. The pointer holds until the next `assign` or
    /// `release`. What the code page lacks shows as its default character. A narrow text of more than two bytes for a
    /// unit of the wide one, which UTF-8 may need, comes out empty.
    [[nodiscard]] const wchar_t* wide();
    [[nodiscard]] const char* narrow();

    /// Frees both forms.
    void release() noexcept;

private:
    void makeWide();
    void makeNarrow();

    wchar_t* wideText = nullptr;
    char* narrowText = nullptr;
    unsigned wideLength = 0;   // 0 also while it is not known
    unsigned narrowLength = 0; // 0 also while it is not known
    unsigned wideCapacity = 0; // with room to spare behind the text
    BYTE ownsText = 0;
};

} // namespace eq
