#pragma once

#include "platform/win32.h"

namespace eq {

/// A text in wide form, narrow form or both. The first request for a missing form creates it. The narrow form is in the
/// system's ANSI code page, whatever the current language is. Several threads must not use an object at the same time.
class LanguageText {
public:
    LanguageText() = default;
    explicit LanguageText(const wchar_t* text);

    /// Holds the translation of a key from the store of `module`, or the key if it has no translation. This constructor
    /// is defined in wedge/CLanguageStore.cpp, because it uses the store.
    LanguageText(const char* key, HMODULE module);

    LanguageText(const LanguageText&) = delete;
    LanguageText& operator=(const LanguageText&) = delete;
    virtual ~LanguageText();

    /// Replaces the object's text by a copy of `text`. A null text empties the object.
    void assign(const wchar_t* text);
    void assign(const char* text);

    /// Returns the text in wide or narrow form, or null if the object is empty. The pointer is valid until the next
    /// `assign` or `release`. A character that the code page lacks becomes the code page's default character. The
    /// narrow form is empty if n wide units need more than 2 n + 1 bytes, which is possible in UTF-8.
    [[nodiscard]] const wchar_t* wide();
    [[nodiscard]] const char* narrow();

    /// Frees both forms.
    void release() noexcept;

private:
    void makeWide();
    void makeNarrow();

    wchar_t* wideText = nullptr;
    char* narrowText = nullptr;
    unsigned wideLength = 0;   // 0 also if the length is not known yet
    unsigned narrowLength = 0; // 0 also if the length is not known yet
    unsigned wideCapacity = 0; // includes the spare characters
    BYTE ownsText = 0;
};

} // namespace eq
