#include "platform/standin/MessageBox.h"

#include "platform/standin/CodePages.h"
#include "platform/standin/Refuse.h"
#include "platform/standin/SystemEntries.h"
#include "platform/standin/TestHooks.h"
#include "platform/standin/Window.h"

#include <cstdio>
#include <mutex>

namespace {

std::mutex shownLock;
standin::ShownMessageBoxes shown;

std::string toUtf8(const std::wstring& text) {
    const int size = static_cast<int>(text.size());
    std::string bytes(text.size() * 3, '\0');
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(),
                                                              static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

} // namespace

namespace standin {

ShownMessageBoxes shownMessageBoxes() {
    const std::lock_guard guard(shownLock);
    return shown;
}

int WINAPI showMessageBoxExW(HWND /*owner*/, LPCWSTR text, LPCWSTR caption, UINT type, WORD language) noexcept try {
    constexpr UINT buttons = 0x0000000F;
    if ((type & buttons) != MB_OK) return refuse(ERROR_NOT_SUPPORTED);
    const std::wstring shownText = text ? text : L"";
    const std::wstring shownCaption = caption ? caption : L"Error";

    const std::lock_guard guard(shownLock);
    std::fprintf(stderr, "%s: %s\n", toUtf8(shownCaption).c_str(), toUtf8(shownText).c_str());
    shown = {shown.count + 1, shownText, shownCaption, language};
    return IDOK;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

int WINAPI showMessageBoxExA(HWND owner, LPCSTR text, LPCSTR caption, UINT type, WORD language) noexcept try {
    const std::wstring wideText = wideFromAnsi(text ? text : "");
    const std::wstring wideCaption = wideFromAnsi(caption ? caption : "");
    return showMessageBoxExW(owner, wideText.c_str(), caption ? wideCaption.c_str() : nullptr, type, language);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

} // namespace standin
