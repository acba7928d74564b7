#include "platform/standin/Registry.h"

#include "platform/standin/Errors.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/LocaleTable.h"
#include "platform/standin/TextMatch.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

namespace {

struct Value {
    DWORD type;
    std::string bytes;
};

struct Key {
    HKEY root;
    std::string_view path;
    std::string_view valueName;
    std::optional<Value> (*read)();
};

/// Returns the language that overrides the system's language. Returns nothing if there is none, or if it is not a
/// decimal number.
std::optional<Value> readLanguageOverride() {
    const char* const text = std::getenv("TUNEBENCH_LANGUAGE");
    if (!text) return std::nullopt;
    DWORD number = 0;
    const char* const end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;

    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return Value{REG_DWORD, bytes};
}

std::optional<Value> readSystemLocale() {
    const auto* const language = eq::standin::environmentLanguage("LC_MESSAGES");
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08X", unsigned{language ? language->id : WORD{0}});
    // The data of a text includes its terminator.
    return Value{REG_SZ, std::string(digits.begin(), digits.end())};
}

// The table is local to a function, because static initialisers of other sources read the registry.
const auto& allKeys() {
    static const std::array keys = {
        Key{HKEY_LOCAL_MACHINE, "Software\\Tavrin\\TuneBench\\2.0", "Language", readLanguageOverride},
        Key{HKEY_USERS, ".Default\\Control Panel\\International", "Locale", readSystemLocale},
        Key{HKEY_CURRENT_USER, "Control Panel\\International", "Locale", readSystemLocale},
    };
    return keys;
}

eq::standin::HandleTable<const Key>& openKeys() {
    static eq::standin::HandleTable<const Key> table;
    return table;
}

bool isRoot(HKEY key) noexcept {
    return key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE || key == HKEY_USERS;
}

/// Returns a name in ASCII. Other characters become '?', so that such a name finds nothing.
std::string narrow(LPCWSTR text) {
    std::string result;
    for (; *text != 0; ++text) {
        const bool ascii = *text > 0 && *text < 0x80;
        result += ascii ? static_cast<char>(*text) : '?';
    }
    return result;
}

LSTATUS open(HKEY root, std::string_view path, HKEY* opened) {
    if (!isRoot(root)) return openKeys().find(root) ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_HANDLE;
    for (const Key& key : allKeys()) {
        if (key.root != root || !eq::standin::equalNoCase(key.path, path)) continue;
        // The keys are static, so this pointer owns nothing.
        const std::shared_ptr<const Key> reference(std::shared_ptr<void>(), &key);
        *opened = static_cast<HKEY>(openKeys().add(reference));
        return ERROR_SUCCESS;
    }
    return ERROR_FILE_NOT_FOUND;
}

std::optional<Value> readValue(const Key& key, std::string_view name) {
    return eq::standin::equalNoCase(key.valueName, name) ? key.read() : std::nullopt;
}

LSTATUS give(const Value& value, LPDWORD type, LPBYTE data, LPDWORD size) noexcept {
    const auto needed = static_cast<DWORD>(value.bytes.size());
    if (type) *type = value.type;
    if (!size) return data ? ERROR_INVALID_PARAMETER : ERROR_SUCCESS;
    const bool fits = *size >= needed;
    *size = needed;
    if (!data) return ERROR_SUCCESS;
    if (!fits) return ERROR_MORE_DATA;
    value.bytes.copy(reinterpret_cast<char*>(data), needed);
    return ERROR_SUCCESS;
}

enum class TextForm { Narrow, Wide };

LSTATUS query(HKEY key, std::string_view name, TextForm form, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (data && !size) return ERROR_INVALID_PARAMETER;
    const auto opened = openKeys().find(key);
    if (!opened) return isRoot(key) ? ERROR_FILE_NOT_FOUND : ERROR_INVALID_HANDLE;
    const auto value = readValue(*opened, name);
    const bool readable = value && (form == TextForm::Narrow || value->type == REG_DWORD);
    return readable ? give(*value, type, data, size) : ERROR_FILE_NOT_FOUND;
}

} // namespace

LSTATUS WINAPI RegCreateKeyExW(HKEY root, LPCWSTR path, DWORD /*reserved*/, LPWSTR /*keyClass*/, DWORD /*options*/,
                               REGSAM /*access*/, LPSECURITY_ATTRIBUTES /*security*/, HKEY* key,
                               LPDWORD disposition) noexcept try {
    const LSTATUS result = open(root, narrow(path), key);
    if (result == ERROR_SUCCESS && disposition) *disposition = REG_OPENED_EXISTING_KEY;
    return result;
} catch (...) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LSTATUS WINAPI RegOpenKeyExA(HKEY root, LPCSTR path, DWORD /*options*/, REGSAM /*access*/, HKEY* key) noexcept try {
    return open(root, path, key);
} catch (...) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD /*reserved*/, LPDWORD type, LPBYTE data,
                                LPDWORD size) noexcept try {
    return query(key, narrow(name ? name : L""), TextForm::Wide, type, data, size);
} catch (...) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD /*reserved*/, LPDWORD type, LPBYTE data,
                                LPDWORD size) noexcept try {
    return query(key, name ? name : "", TextForm::Narrow, type, data, size);
} catch (...) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LSTATUS WINAPI RegCloseKey(HKEY key) noexcept {
    return isRoot(key) || openKeys().remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}
