#include "support/LanguageText.h"

#include "support/TextConversion.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <new>

namespace eq {

namespace {

// The spare characters of a wide buffer, after the text and its terminator.
constexpr unsigned SpareCharacters = 32;

template <typename Character>
Character* allocate(std::size_t count) {
    void* const buffer = CoTaskMemAlloc(count * sizeof(Character));
    if (buffer == nullptr) throw std::bad_alloc();
    return static_cast<Character*>(buffer);
}

} // namespace

LanguageText::LanguageText(const wchar_t* text) {
    assign(text);
}

LanguageText::~LanguageText() {
    release();
}

void LanguageText::assign(const wchar_t* text) {
    if (text == nullptr) return release();
    const unsigned length = static_cast<unsigned>(std::wcslen(text));
    const unsigned capacity = length + 1 + SpareCharacters;
    wchar_t* const copy = allocate<wchar_t>(capacity);
    std::copy_n(text, length + 1, copy);
    release(); // only now, because `text` may belong to this object
    wideText = copy;
    wideLength = length;
    wideCapacity = capacity;
    ownsText = 1;
}

void LanguageText::assign(const char* text) {
    if (text == nullptr) return release();
    const unsigned length = static_cast<unsigned>(std::strlen(text));
    char* const copy = allocate<char>(length + 1);
    std::copy_n(text, length + 1, copy);
    release(); // only now, because `text` may belong to this object
    narrowText = copy;
    narrowLength = length;
    ownsText = 1;
}

const wchar_t* LanguageText::wide() {
    if (wideText == nullptr && narrowText != nullptr) makeWide();
    return wideText;
}

const char* LanguageText::narrow() {
    if (narrowText == nullptr && wideText != nullptr) makeNarrow();
    return narrowText;
}

void LanguageText::release() noexcept {
    if (ownsText != 0) {
        CoTaskMemFree(wideText);
        CoTaskMemFree(narrowText);
    }
    wideText = nullptr;
    narrowText = nullptr;
    ownsText = 0;
}

void LanguageText::makeWide() {
    if (narrowLength == 0) narrowLength = static_cast<unsigned>(std::strlen(narrowText));
    const unsigned room = narrowLength + 1;
    const std::wstring converted = toWide({narrowText, narrowLength}, CP_ACP).text;
    wideCapacity = room + SpareCharacters;
    wideText = allocate<wchar_t>(wideCapacity);
    wideLength = 0;
    wideText[converted.copy(wideText, room)] = L'\0';
}

void LanguageText::makeNarrow() {
    if (wideLength == 0) wideLength = static_cast<unsigned>(std::wcslen(wideText));
    const unsigned room = 2 * wideLength + 2;
    const std::string converted = toNarrow({wideText, wideLength}, CP_ACP, static_cast<int>(room) - 1).text;
    narrowText = allocate<char>(room);
    narrowLength = 0;
    narrowText[converted.copy(narrowText, room - 1)] = '\0';
}

} // namespace eq
