#include "wedge/string_ext.h"

#include "platform/win32.h"

#include <vector>

namespace {

constexpr char File[] = "wedge/string_ext";

} // namespace

std::wstring convert_wstring(const std::string& text, unsigned codePage) {
    const int size = static_cast<int>(text.size());
    const int room = size + 1;
    std::vector<wchar_t> buffer(static_cast<std::size_t>(room));
    const int converted = MultiByteToWideChar(codePage, 0, text.data(), size, buffer.data(), room);
    if (converted == 0 && size != 0) {
        throw convert_wstring_failed("convert_wstring", "MultiByteToWideChar()", GetLastError(), File, __LINE__,
                                     "convert_wstring_failed");
    }
    buffer[static_cast<std::size_t>(converted)] = L'\0';
    return buffer.data();
}

std::string convert_string(const std::wstring& text, unsigned codePage) {
    const int size = static_cast<int>(text.size());
    const int room = 2 * size + 2;
    std::vector<char> buffer(static_cast<std::size_t>(room) + 1); // the text may fill its room; the end fits too
    const int converted = WideCharToMultiByte(codePage, 0, text.data(), size, buffer.data(), room, nullptr, nullptr);
    if (converted == 0 && size != 0) {
        throw convert_string_failed("convert_string", "WideCharToMultiByte()", GetLastError(), File, __LINE__,
                                    "convert_string_failed");
    }
    buffer[static_cast<std::size_t>(converted)] = '\0';
    return buffer.data();
}
