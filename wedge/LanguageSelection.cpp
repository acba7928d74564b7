#include "wedge/LanguageSelection.h"

#include "platform/Paths.h"
#include "platform/SystemHandles.h"
#include "wedge/CLanguageFile.h"
#include "wedge/NocaseString.h"

#include <cstdlib>
#include <exception>
#include <string_view>

namespace eq {

namespace {

constexpr wchar_t SettingsPath[] = L"Software\\Tavrin\\TuneBench\\2.0";
constexpr wchar_t LanguageValue[] = L"Language";
constexpr WORD EnglishUnitedStates = 1033;
constexpr std::string_view Digits = "0123456789";
/// The system's 8-bit file functions refuse paths that do not fit into this size with their terminator.
constexpr std::size_t PathCapacity = MAX_PATH;

RegistryKey openSettings() noexcept {
    RegistryKey key;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, SettingsPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.receive(), nullptr);
    return key;
}

/// The key of the settings. It stays open while the library is loaded.
const RegistryKey Settings = openSettings();

/// A registry value that contains a language id as text.
struct LocaleValue {
    const char* key;
    const char* name;
};

LocaleValue localeValue() {
    if (IsWindowsNt()) return {"Control Panel\\International", "Locale"};
    return {"Control Panel\\desktop\\ResourceLocale", ""};
}

/// Returns the language id in the registry for a context, or 0.
WORD registeredLanguage(uilanguage_context context) {
    const LocaleValue value = localeValue();
    const HKEY root = context == uilanguage_user ? HKEY_CURRENT_USER : HKEY_USERS;
    const std::string path = (context == uilanguage_user ? "" : ".Default\\") + std::string(value.key);
    RegistryKey key;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, key.receive()) != ERROR_SUCCESS) return 0;

    constexpr DWORD Capacity = 32;
    char digits[Capacity + 1] = {}; // the registry does not guarantee a terminator
    DWORD size = Capacity;
    BYTE* const data = reinterpret_cast<BYTE*>(digits);
    if (RegQueryValueExA(key.get(), value.name, nullptr, nullptr, data, &size) != ERROR_SUCCESS) return 0;
    return static_cast<WORD>(std::strtol(digits, nullptr, 16) & 0xFFFF);
}

} // namespace

WORD g_language_override = ReadLanguageOverride();

WORD ReadLanguageOverride() {
    if (!Settings) return 0;

    DWORD type = 0;
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS status =
        RegQueryValueExW(Settings.get(), LanguageValue, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
    const bool isNumber = status == ERROR_SUCCESS && type == REG_DWORD && size == sizeof value;
    return isNumber ? LOWORD(value) : WORD{0};
}

WORD ReadUiLanguage(uilanguage_context context) {
    try {
        const WORD language = registeredLanguage(context);
        if (language == 0 && context == uilanguage_user) return ReadUiLanguage(uilanguage_default);
        return language;
    } catch (const std::exception&) {
        return 0;
    }
}

bool IsWindowsNt() {
    static const bool isNt = [] {
        OSVERSIONINFOA version{};
        version.dwOSVersionInfoSize = sizeof version;
        return GetVersionExA(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
    }();
    return isNt;
}

UINT DefaultCodepage(WORD language) {
    if (language == 0) return 0;

    char digits[6] = {};
    if (GetLocaleInfoA(language, LOCALE_IDEFAULTANSICODEPAGE, digits, sizeof digits) == 0) return 0;
    return static_cast<UINT>(std::strtoul(digits, nullptr, 10));
}

WORD ParseLanguageFileName(const std::string& name, const std::string& prefix, const std::string& extension) {
    const auto first = name.find_first_of(Digits);
    if (first == name.npos || first < prefix.size()) return 0;
    if (CompareNoCase(name.substr(first - prefix.size(), prefix.size()), prefix) != 0) return 0;

    const auto end = name.find_first_not_of(Digits, first);
    if (end == name.npos) return 0;
    if (CompareNoCase(name.substr(end + 1, extension.size()), extension) != 0) return 0;
    return languageOfDigits(std::string_view(name).substr(first, end - first));
}

int CompareNoCase(const std::string& a, const std::string& b) {
    return asNocase(a).compare(asNocase(b));
}

std::array<WORD, 4> languageOrder(WORD overrideLanguage, WORD systemLanguage) {
    return {overrideLanguage, systemLanguage, PRIMARYLANGID(systemLanguage), EnglishUnitedStates};
}

std::vector<std::string> languageFilesOf(const std::string& folder, WORD language) {
    std::vector<std::string> paths;
    const std::string start = folder + pathSeparator;
    WIN32_FIND_DATAA entry;
    const FileSearch search(FindFirstFileA((start + "*.lng").c_str(), &entry));
    if (!search) return paths;
    do {
        const std::string name = entry.cFileName;
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isTooLong = start.size() + 1 + name.size() >= PathCapacity;
        if (isFolder || isTooLong || ParseLanguageFileName(name, "", "lng") != language) continue;
        paths.push_back(start + name);
    } while (FindNextFileA(search.get(), &entry));
    return paths;
}

std::string secondFolder(const std::string& folder) {
    const auto cut = folder.rfind(pathSeparator);
    if (cut == folder.npos) return folder;

    const std::string_view name = std::string_view(folder).substr(cut + 1);
    const bool isBuildFolder = equalNoCase(name.substr(0, 5), "debug") || equalNoCase(name.substr(0, 7), "release");
    return isBuildFolder ? folder.substr(0, cut) : folder;
}

} // namespace eq
