#include "platform/win32.h"
#include "wedge/resources/DialogReader.h"
#include "wedge/string_ext.h"

namespace {

constexpr int PointsPerInch = 72;

/// The screen's device context, for as long as this object lives.
class ScreenContext {
public:
    ScreenContext() : m_context(GetDC(nullptr)) {}
    ~ScreenContext() { ReleaseDC(nullptr, m_context); }
    ScreenContext(const ScreenContext&) = delete;
    ScreenContext& operator=(const ScreenContext&) = delete;

    [[nodiscard]] int dotsPerInch() const { return GetDeviceCaps(m_context, LOGPIXELSY); }

private:
    HDC m_context;
};

} // namespace

void SystemDialogFont(std::wstring& face, std::uint16_t& pointSize) {
    LOGFONTA font;
    if (GetObjectA(GetStockObject(DEFAULT_GUI_FONT), sizeof font, &font) == 0) return;
    face = convert_wstring(font.lfFaceName, CP_ACP);
    // The height is negative where it is that of the characters, without the space above them.
    pointSize = static_cast<std::uint16_t>(-MulDiv(font.lfHeight, PointsPerInch, ScreenContext().dotsPerInch()));
}
