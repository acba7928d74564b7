#include "wedge/string_ext.h"

#include "platform/win32.h"

#include <vector>

namespace {

constexpr char File[] = "wedge/string_ext";

bool isUtf8Continuation(char value) noexcept {
    return (static_cast<unsigned char>(value) & 0xC0U) == 0x80U;
}

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

bool is_utf8_codepage(unsigned codePage) noexcept {
    return codePage == CP_UTF8 || (codePage == CP_ACP && GetACP() == CP_UTF8);
}

std::size_t whole_characters(std::string_view text, std::size_t limit, unsigned codePage) noexcept {
    if (text.size() <= limit) return text.size();
    if (is_utf8_codepage(codePage)) {
        while (limit > 0 && isUtf8Continuation(text[limit])) --limit;
        return limit;
    }
    std::size_t end = 0;
    while (end < limit) {
        const std::size_t width = IsDBCSLeadByteEx(codePage, static_cast<BYTE>(text[end])) != 0 ? 2 : 1;
        if (end + width > limit) break;
        end += width;
    }
    return end;
}
