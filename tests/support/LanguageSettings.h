#pragma once

// Sets, for the length of a test, what the system says of languages: the settings value and the system's language.

#include "platform/win32.h"

#ifdef _WIN32
#include "platform/Owners.h"

#include <cstdio>
#endif

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef _WIN32

/// A value of the registry, put back as it was at the end.
class RegistryValue {
public:
    RegistryValue(HKEY root, const char* path, const char* name) : m_name(name) {
        const LSTATUS status =
            RegCreateKeyExA(root, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, m_key.receive(), nullptr);
        if (status != ERROR_SUCCESS) throw std::runtime_error(std::string("cannot open ") + path);
        DWORD size = 64;
        m_data.resize(size);
        m_existed = RegQueryValueExA(m_key.get(), name, nullptr, &m_type, m_data.data(), &size) == ERROR_SUCCESS;
        m_data.resize(size);
    }
    ~RegistryValue() {
        if (m_existed) {
            set(m_type, m_data.data(), m_data.size());
        } else {
            remove();
        }
    }
    RegistryValue(const RegistryValue&) = delete;
    RegistryValue& operator=(const RegistryValue&) = delete;

    void set(DWORD type, const void* data, std::size_t size) {
        RegSetValueExA(m_key.get(), m_name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
    }
    void remove() { RegDeleteValueA(m_key.get(), m_name); }

private:
    platform::RegistryKey m_key;
    const char* m_name;
    bool m_existed = false;
    DWORD m_type = 0;
    std::vector<BYTE> m_data;
};

class LanguageSettings {
public:
    void setOverride(std::optional<DWORD> language) {
        if (language) {
            m_override.set(REG_DWORD, &*language, sizeof *language);
        } else {
            m_override.remove();
        }
    }

    void setSystemLanguage(WORD language) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08X", language);
        setSystemText(digits);
    }

    void setUserLanguage(WORD language) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08X", language);
        m_user.set(REG_SZ, digits, sizeof digits);
    }

    /// What the system keeps as its language, in hexadecimal digits or not.
    void setSystemText(const std::string& text) { m_system.set(REG_SZ, text.c_str(), text.size() + 1); }

    /// A settings value of another type than the right one.
    void setOverrideText(const std::string& text) { m_override.set(REG_SZ, text.c_str(), text.size() + 1); }
    void removeSystemLanguage() { m_system.remove(); }
    void removeUserLanguage() { m_user.remove(); }

private:
    RegistryValue m_override{HKEY_LOCAL_MACHINE, "Software\\Tavrin\\TuneBench\\2.0", "Language"};
    RegistryValue m_system{HKEY_USERS, ".Default\\Control Panel\\International", "Locale"};
    RegistryValue m_user{HKEY_CURRENT_USER, "Control Panel\\International", "Locale"};
};

#else

/// A variable of the environment, put back as it was at the end.
class EnvironmentVariable {
public:
    explicit EnvironmentVariable(const char* name) : m_name(name) {
        if (const char* value = std::getenv(name)) m_before = value;
    }
    ~EnvironmentVariable() { set(m_before); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    void set(const std::optional<std::string>& value) {
        if (value) {
            setenv(m_name, value->c_str(), 1);
        } else {
            unsetenv(m_name);
        }
    }

private:
    const char* m_name;
    std::optional<std::string> m_before;
};

class LanguageSettings {
public:
    void setOverride(std::optional<DWORD> language) {
        m_override.set(language ? std::optional(std::to_string(*language)) : std::nullopt);
    }

    /// Knows the languages that the tests use.
    void setSystemLanguage(WORD language) {
        struct Locale {
            WORD language;
            const char* name;
        };
        constexpr Locale Locales[] = {
            {0, "C"}, {1031, "de_DE.UTF-8"}, {1033, "en_US.UTF-8"}, {1036, "fr_FR.UTF-8"}, {1041, "ja_JP.UTF-8"}};
        for (const Locale& locale : Locales) {
            if (locale.language == language) return m_locale.set(locale.name);
        }
        throw std::invalid_argument("no locale for language " + std::to_string(language));
    }

private:
    EnvironmentVariable m_override{"TUNEBENCH_LANGUAGE"};
    EnvironmentVariable m_locale{"LC_ALL"};
};

#endif
