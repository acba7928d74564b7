#pragma once

// Sets two languages for the life of an object: the override in the settings, and the system's language.

#include "platform/win32.h"

#ifdef _WIN32
#include "platform/SystemHandles.h"

#include <cstdio>
#else
#include <cstdlib>
#include <map>
#include <optional>
#endif

#include <string>

namespace eq {

#ifdef _WIN32

/// A registry value. The destructor restores the former value.
class RegistryValue {
public:
    RegistryValue(HKEY root, const char* path, const char* name) : m_name(name) {
        RegCreateKeyExA(root, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, m_key.receive(), nullptr);
        RegQueryValueExA(m_key.get(), name, nullptr, &m_type, m_data, &m_size);
    }
    ~RegistryValue() {
        remove();
        if (m_type != REG_NONE) set(m_type, m_data, m_size);
    }

    void set(DWORD type, const void* data, std::size_t size) {
        RegSetValueExA(m_key.get(), m_name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
    }
    void setText(const std::string& text) { set(REG_SZ, text.c_str(), text.size() + 1); }
    void remove() { RegDeleteValueA(m_key.get(), m_name); }

private:
    RegistryKey m_key;
    const char* m_name;
    DWORD m_type = REG_NONE; // unchanged if there was no value
    BYTE m_data[64] = {};
    DWORD m_size = sizeof m_data;
};

struct LanguageSettings {
    LanguageSettings(DWORD overrideLanguage, WORD systemLanguage) {
        overrideValue.set(REG_DWORD, &overrideLanguage, sizeof overrideLanguage);
        setSystemLanguage(systemLanguage);
    }

    void setSystemLanguage(WORD language) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08X", language);
        system_value.setText(digits);
    }

    RegistryValue overrideValue{HKEY_LOCAL_MACHINE, "Software\\Tavrin\\TuneBench\\2.0", "Language"};
    RegistryValue system_value{HKEY_USERS, ".Default\\Control Panel\\International", "Locale"};
    RegistryValue user_value{HKEY_CURRENT_USER, "Control Panel\\International", "Locale"};
};

#else

/// An environment variable. The destructor restores the former value.
class EnvironmentVariable {
public:
    explicit EnvironmentVariable(const char* name) : m_name(name) {
        if (const char* value = std::getenv(name)) m_before = value;
    }
    ~EnvironmentVariable() { set(m_before); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

    void set(const std::optional<std::string>& value) { value ? setenv(m_name, value->c_str(), 1) : unsetenv(m_name); }

private:
    const char* m_name;
    std::optional<std::string> m_before;
};

class LanguageSettings {
public:
    /// Throws std::out_of_range for a system language that is not in the table.
    LanguageSettings(DWORD overrideLanguage, WORD systemLanguage) {
        const std::map<WORD, const char*> locales = {
            {0, "C"}, {1031, "de_DE.UTF-8"}, {1033, "en_US.UTF-8"}, {1036, "fr_FR.UTF-8"}, {1041, "ja_JP.UTF-8"}};
        m_override.set(std::to_string(overrideLanguage));
        setSystemLocale(locales.at(systemLanguage));
    }

    void setSystemLocale(const std::string& name) { m_locale.set(name); }

private:
    EnvironmentVariable m_override{"TUNEBENCH_LANGUAGE"};
    EnvironmentVariable m_locale{"LC_ALL"};
};

#endif

} // namespace eq
