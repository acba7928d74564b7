#include "support/TextConversion.h"

#include <utility>

namespace eq {

namespace {

/// Returns the text that `convert` writes to a buffer of `size` characters, or the system's error code. `convert`
/// returns 0 if it fails.
template <typename Text, typename Convert>
Converted<Text> convertedInto(int size, Convert convert) {
    Text text(static_cast<std::size_t>(size), typename Text::value_type());
    const int converted = convert(text.data(), size);
    if (converted == 0) return {{}, GetLastError()};
    text.resize(static_cast<std::size_t>(converted));
    return {std::move(text)};
}

} // namespace

Converted<std::wstring> toWide(std::string_view text, UINT codePage, InvalidBytes invalid) {
    if (text.empty()) return {};
    const DWORD flags = invalid == InvalidBytes::Refused ? MB_ERR_INVALID_CHARS : 0;
    const int size = static_cast<int>(text.size());
    return convertedInto<std::wstring>(size + 1, [&](wchar_t* buffer, int room) {
        return MultiByteToWideChar(codePage, flags, text.data(), size, buffer, room);
    });
}

Converted<std::string> toNarrow(std::wstring_view text, UINT codePage, int mostBytes, const char* substitute) {
    if (text.empty()) return {};
    if (isUtf8Codepage(codePage)) substitute = nullptr; // the system refuses a substitute for UTF-8
    const auto convert = [&](char* buffer, int room) {
        return WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), buffer, room, substitute,
                                   nullptr);
    };
    return convertedInto<std::string>(mostBytes == AnySize ? convert(nullptr, 0) : mostBytes, convert);
}

bool isUtf8Codepage(unsigned codePage) noexcept {
    return codePage == CP_UTF8 || (codePage == CP_ACP && GetACP() == CP_UTF8);
}

} // namespace eq
