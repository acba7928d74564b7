#include "platform/desktop/Gdi.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

constexpr int DotsPerInch = 96;

/// Returns the font of DEFAULT_GUI_FONT.
LOGFONTA guiFont() noexcept {
    LOGFONTA font{};
    font.lfHeight = -11; // 8 points
    font.lfWeight = 400;
    std::string_view("Tahoma").copy(font.lfFaceName, LF_FACESIZE - 1);
    return font;
}

char stockFont;
char screen;

HDC screenContext() noexcept {
    return reinterpret_cast<HDC>(&screen);
}

} // namespace

HGDIOBJ WINAPI GetStockObject(int index) noexcept {
    return index == DEFAULT_GUI_FONT ? &stockFont : nullptr;
}

int WINAPI GetObjectA(HGDIOBJ object, int size, void* buffer) noexcept {
    if (object != &stockFont || size != static_cast<int>(sizeof(LOGFONTA))) return 0;
    const LOGFONTA font = guiFont();
    std::memcpy(buffer, &font, sizeof font);
    return size;
}

HDC WINAPI GetDC(HWND window) noexcept {
    return window == nullptr ? screenContext() : nullptr;
}

int WINAPI ReleaseDC(HWND /*window*/, HDC context) noexcept {
    return context == screenContext() ? 1 : 0;
}

int WINAPI GetDeviceCaps(HDC context, int index) noexcept {
    return context == screenContext() && index == LOGPIXELSY ? DotsPerInch : 0;
}

int WINAPI MulDiv(int number, int numerator, int denominator) noexcept {
    if (denominator == 0) return -1;
    const std::int64_t product = std::int64_t{number} * numerator;
    const std::int64_t divisor = denominator;
    const std::int64_t half = (divisor < 0 ? -divisor : divisor) / 2;
    const std::int64_t result = (product + ((product < 0) ? -half : half)) / divisor;
    return result == static_cast<int>(result) ? static_cast<int>(result) : -1;
}
