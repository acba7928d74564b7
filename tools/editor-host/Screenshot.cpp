#include "tools/editor-host/Screenshot.h"

#include "tools/common/Errors.h"

#include <memory>
#include <type_traits>
#include <vector>

// The system's imaging library wants its own spelling of two functions.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus
#include <objidl.h>

#include <gdiplus.h>

namespace {

struct BitmapDeleter {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using BitmapOwner = std::unique_ptr<std::remove_pointer_t<HBITMAP>, BitmapDeleter>;

/// What the window shows now.
BitmapOwner captured(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    const HDC from = GetDC(window);
    const HDC to = CreateCompatibleDC(from);
    BitmapOwner bitmap(CreateCompatibleBitmap(from, client.right, client.bottom));
    const HGDIOBJ before = SelectObject(to, bitmap.get());
    BitBlt(to, 0, 0, client.right, client.bottom, from, 0, 0, SRCCOPY);
    SelectObject(to, before);
    DeleteDC(to);
    ReleaseDC(window, from);
    return bitmap;
}

/// The imaging library, while the object lives.
class Imaging {
public:
    Imaging() {
        // Its encoders are COM's.
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
    std::vector<std::byte> storage(size); // the records, and behind them what they point to
    auto* const encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(storage.data());
    if (Gdiplus::GetImageEncoders(count, size, encoders) != Gdiplus::Ok) return false;
    const auto* const found = std::find_if(encoders, encoders + count, [](const Gdiplus::ImageCodecInfo& encoder) {
        return std::wstring(encoder.MimeType) == L"image/png";
    });
    if (found == encoders + count) return false;
    id = found->Clsid;
    return true;
}

std::wstring wide(const std::string& path) {
    std::wstring result(path.size() + 1, L'\0');
    MultiByteToWideChar(CP_ACP, 0, path.c_str(), -1, result.data(), static_cast<int>(result.size()));
    return result.c_str();
}

} // namespace

void writeScreenshot(HWND window, const std::string& path) {
    const BitmapOwner picture = captured(window);
    const Imaging imaging;
    CLSID png{};
    if (!picture || !findPngEncoder(png)) throw tool::FileError(path + ": this system writes no PNG files");
    Gdiplus::Bitmap bitmap(picture.get(), nullptr);
    if (bitmap.Save(wide(path).c_str(), &png, nullptr) != Gdiplus::Ok)
        throw tool::FileError(path + ": cannot be written");
}
