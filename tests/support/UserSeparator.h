#pragma once

#include "platform/win32.h"

#ifndef _WIN32
#include "tests/support/LanguageSettings.h"
#endif

#include <array>

/// The user's decimal separator, for the length of a test.
class UserSeparator {
public:
#ifdef _WIN32
    explicit UserSeparator(char separator) {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, m_before.data(), static_cast<int>(m_before.size()));
        const std::array<wchar_t, 2> text = {static_cast<wchar_t>(separator), 0};
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text.data());
    }
    ~UserSeparator() {
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, m_before.data());
    }

private:
    std::array<wchar_t, 5> m_before{};
#else
    explicit UserSeparator(char separator) {
        m_locale.set(separator == ',' ? "de_DE.UTF-8" : "en_US.UTF-8");
    }

private:
    EnvironmentVariable m_locale{"LC_ALL"};
#endif

public:
    UserSeparator(const UserSeparator&) = delete;
    UserSeparator& operator=(const UserSeparator&) = delete;
};
