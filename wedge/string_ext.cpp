#include "wedge/string_ext.h"

#include "support/TextConversion.h"

namespace eq {

namespace {

constexpr char File[] = "wedge/string_ext";

bool isUtf8Continuation(char value) noexcept {
    return (static_cast<unsigned char>(value) & 0xC0U) == 0x80U;
}

} // namespace

std::wstring convert_wstring(const std::string& text, unsigned codePage) {
    const auto [wide, error] = toWide(text, codePage);
    if (error != ERROR_SUCCESS) {
        throw convert_wstring_failed("convert_wstring", "MultiByteToWideChar()", error, File, __LINE__,
                                     "convert_wstring_failed");
    }
    return wide.c_str(); // NOLINT(readability-redundant-string-cstr): ends at the first zero
}

std::string convert_string(const std::wstring& text, unsigned codePage) {
    const auto [narrow, error] = toNarrow(text, codePage, 2 * static_cast<int>(text.size()) + 2);
    if (error != ERROR_SUCCESS) {
        throw convert_string_failed("convert_string", "WideCharToMultiByte()", error, File, __LINE__,
                                    "convert_string_failed");
    }
    return narrow.c_str(); // NOLINT(readability-redundant-string-cstr): ends at the first zero
}

std::size_t wholeCharacters(std::string_view text, std::size_t limit, unsigned codePage) noexcept {
    if (text.size() <= limit) return text.size();
    if (isUtf8Codepage(codePage)) {
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

} // namespace eq
