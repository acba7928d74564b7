#pragma once

#ifdef _WIN32
#include "platform/win32.h"
#else
#include "tests/support/LanguageSettings.h"
#endif

/// The user's decimal separator, for the length of a test.
class UserSeparator {
public:
#ifdef _WIN32
    explicit UserSeparator(char separator) {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, m_before, 5);
        const wchar_t text[] = {static_cast<wchar_t>(separator), 0};
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text);
    }
    ~UserSeparator() {
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, m_before);
    }
    UserSeparator(const UserSeparator&) = delete;
    UserSeparator& operator=(const UserSeparator&) = delete;

private:
    wchar_t m_before[5] = {};
#else
    explicit UserSeparator(char separator) {
        m_locale.set(separator == ',' ? "de_DE.UTF-8" : "en_US.UTF-8");
    }

private:
    EnvironmentVariable m_locale{"LC_ALL"};
#endif
};
