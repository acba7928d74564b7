#include "platform/SystemHandles.h"
#include "wedge/resources/DialogReader.h"
#include "wedge/string_ext.h"

namespace eq {

void SystemDialogFont(std::wstring& face, std::uint16_t& pointSize) {
    constexpr int PointsPerInch = 72;
    LOGFONTA font;
    if (GetObjectA(GetStockObject(DEFAULT_GUI_FONT), sizeof font, &font) == 0) return;
    face = convert_wstring(font.lfFaceName, CP_ACP);
    const WindowContext screen(nullptr);
    const int dotsPerInch = GetDeviceCaps(screen.get(), LOGPIXELSY);
    // A negative `lfHeight` is the height of the characters without the space above them.
    pointSize = static_cast<std::uint16_t>(-MulDiv(font.lfHeight, PointsPerInch, dotsPerInch));
}

} // namespace eq
