#include "tools/editor-host/windows/Screenshot.h"

#include "platform/SystemHandles.h"
#include "support/TextConversion.h"
#include "tools/common/Errors.h"

#include <vector>

// The headers of the system's imaging library use `min` and `max` without a namespace.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus
#include <objidl.h>

#include <gdiplus.h>

namespace eq {

namespace {

bool closeBitmap(HBITMAP bitmap) noexcept {
    return DeleteObject(bitmap) != FALSE;
}
using Bitmap = UniqueHandle<HBITMAP, closeBitmap>;

bool closeContext(HDC context) noexcept {
    return DeleteDC(context) != FALSE;
}
using MemoryContext = UniqueHandle<HDC, closeContext>;

/// Returns a bitmap of a window's client area.
Bitmap captured(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    const WindowContext from(window);
    const MemoryContext to(CreateCompatibleDC(from.get()));
    Bitmap bitmap(CreateCompatibleBitmap(from.get(), client.right, client.bottom));
    const HGDIOBJ before = SelectObject(to.get(), bitmap.get());
    BitBlt(to.get(), 0, 0, client.right, client.bottom, from.get(), 0, 0, SRCCOPY);
    SelectObject(to.get(), before);
    return bitmap;
}

/// Starts the system's imaging library, and stops it in the destructor.
class Imaging {
public:
    Imaging() {
        // The encoders of the library need COM.
        m_hasCom = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        const Gdiplus::GdiplusStartupInput input;
        m_isUp = Gdiplus::GdiplusStartup(&m_token, &input, nullptr) == Gdiplus::Ok;
    }
    ~Imaging() {
        if (m_isUp) Gdiplus::GdiplusShutdown(m_token);
        if (m_hasCom) CoUninitialize();
    }
    Imaging(const Imaging&) = delete;
    Imaging& operator=(const Imaging&) = delete;

private:
    ULONG_PTR m_token = 0;
    bool m_hasCom = false;
    bool m_isUp = false;
};

bool findPngEncoder(CLSID& id) {
    UINT count = 0;
    UINT size = 0;
    if (Gdiplus::GetImageEncodersSize(&count, &size) != Gdiplus::Ok || size == 0) return false;
    std::vector<std::byte> storage(size); // the records, and then the data to which they point
    auto* const encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(storage.data());
    if (Gdiplus::GetImageEncoders(count, size, encoders) != Gdiplus::Ok) return false;
    const auto* const found = std::find_if(encoders, encoders + count, [](const Gdiplus::ImageCodecInfo& encoder) {
        return std::wstring(encoder.MimeType) == L"image/png";
    });
    if (found == encoders + count) return false;
    id = found->Clsid;
    return true;
}

} // namespace

void writeScreenshot(HWND window, const std::string& path) {
    const Bitmap picture = captured(window);
    const Imaging imaging;
    CLSID png{};
    if (!picture || !findPngEncoder(png)) throw FileError(path + ": this system cannot write PNG files");
    Gdiplus::Bitmap bitmap(picture.get(), nullptr);
    if (bitmap.Save(toWide(path, CP_ACP).text.c_str(), &png, nullptr) != Gdiplus::Ok)
        throw FileError(path + ": the picture cannot be written there");
}

} // namespace eq
