#include "platform/standin/Gdi.h"

#include "platform/standin/TestHooks.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace {

constexpr int DotsPerInch = 96;

struct GuiFont {
    std::string face = "Tahoma";
    LONG height = -11; // 8 points
};

GuiFont& guiFont() {
    static GuiFont font;
    return font;
}

char screen;

HDC screenContext() noexcept {
    return reinterpret_cast<HDC>(&screen);
}

} // namespace

void standin::setGuiFont(const std::string& face, LONG height) {
    guiFont() = {face, height};
}

HGDIOBJ WINAPI GetStockObject(int index) noexcept {
    const bool known = index == DEFAULT_GUI_FONT && !guiFont().face.empty();
    return known ? &guiFont() : nullptr;
}

int WINAPI GetObjectA(HGDIOBJ object, int size, void* buffer) noexcept {
    if (object != &guiFont() || size != static_cast<int>(sizeof(LOGFONTA))) return 0;
    LOGFONTA font{};
    font.lfHeight = guiFont().height;
    font.lfWeight = 400;
    guiFont().face.copy(font.lfFaceName, LF_FACESIZE - 1);
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
