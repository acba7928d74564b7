#include "platform/desktop/MessageBox.h"

#include "platform/desktop/ReplacedFunctions.h"
#include "platform/desktop/TestHooks.h"
#include "platform/desktop/Window.h"
#include "platform/standin/CodePages.h"
#include "platform/standin/Refuse.h"
#include "platform/standin/StandardError.h"

#include <mutex>

namespace {

std::mutex shownLock;
eq::standin::ShownMessageBoxes shown;

} // namespace

namespace eq::standin {

ShownMessageBoxes shownMessageBoxes() {
    const std::lock_guard guard(shownLock);
    return shown;
}

int WINAPI system::MessageBoxExW(HWND /*owner*/, LPCWSTR text, LPCWSTR caption, UINT type, WORD language) noexcept try {
    constexpr UINT buttons = 0x0000000F;
    if ((type & buttons) != MB_OK) return refuse(ERROR_NOT_SUPPORTED);
    const std::wstring shownText = text ? text : L"";
    const std::wstring shownCaption = caption ? caption : L"Error";

    const std::lock_guard guard(shownLock);
    writeToStandardError(shownCaption, shownText);
    shown = {shown.count + 1, shownText, shownCaption, language};
    return IDOK;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

int WINAPI system::MessageBoxExA(HWND owner, LPCSTR text, LPCSTR caption, UINT type, WORD language) noexcept try {
    const std::wstring wideText = wideFromAnsi(text ? text : "");
    const std::wstring wideCaption = wideFromAnsi(caption ? caption : "");
    return eq::standin::system::MessageBoxExW(owner, wideText.c_str(), caption ? wideCaption.c_str() : nullptr, type,
                                              language);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

} // namespace eq::standin
