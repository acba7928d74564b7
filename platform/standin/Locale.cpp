#include "platform/standin/Locale.h"

#include "platform/standin/LocaleTable.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <string>

namespace {

using eq::standin::refuse;

/// Copies a text and its terminator. Returns the copied size, or with a size of 0 the needed size.
template <typename Character>
int giveText(const std::basic_string<Character>& text, Character* buffer, int size) noexcept {
    const int needed = static_cast<int>(text.size() + 1);
    if (size == 0) return needed;
    if (size < needed) return refuse(ERROR_INSUFFICIENT_BUFFER);
    std::copy_n(text.c_str(), needed, buffer);
    return needed;
}

} // namespace

int WINAPI GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size) noexcept try {
    if (type != LOCALE_IDEFAULTANSICODEPAGE) return refuse(ERROR_INVALID_FLAGS);
    const auto* const language = locale <= 0xFFFF ? eq::standin::findLanguage(static_cast<WORD>(locale)) : nullptr;
    return language ? giveText(std::to_string(language->ansiCodepage), buffer, size) : refuse(ERROR_INVALID_PARAMETER);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

int WINAPI GetLocaleInfoW(LCID locale, LCTYPE type, LPWSTR buffer, int size) noexcept try {
    if (type != LOCALE_SDECIMAL) return refuse(ERROR_INVALID_FLAGS);
    if (locale != LOCALE_USER_DEFAULT) return refuse(ERROR_INVALID_PARAMETER);
    const auto* const language = eq::standin::environmentLanguage("LC_NUMERIC");
    return giveText(std::wstring(1, language && language->decimalPoint == ',' ? L',' : L'.'), buffer, size);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}
