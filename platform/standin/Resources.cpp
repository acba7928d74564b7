#include "platform/standin/Resources.h"

#include "platform/standin/CodePages.h"
#include "platform/standin/Locale.h"
#include "platform/standin/LocaleTable.h"
#include "platform/standin/ModuleResources.h"
#include "platform/standin/Modules.h"
#include "platform/standin/Refuse.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <mutex>
#include <optional>
#include <string>

namespace {

using eq::standin::refuse;

// A resource file is a sequence of entries, each at a multiple of four bytes:
//
//   data size (4) | header size (4) | type | name | padding to 4 | version (4) | flags (2) | language (2) | ... | data
//
// The type and the name are each 0xFFFF and a number, or 16-bit units up to a zero. An HRSRC is the address of its
// entry.

constexpr unsigned NumberMark = 0xFFFF;
constexpr std::size_t LanguageOffset = 6; // after the padding

template <typename Number>
Number numberAt(const std::byte* place) noexcept {
    Number number;
    std::memcpy(&number, place, sizeof number);
    return number;
}

std::size_t alignedTo4(std::size_t size) noexcept {
    return (size + 3) & ~std::size_t{3};
}

std::wstring wide(LPCSTR text) {
    return eq::standin::wideFromAnsi(text);
}
std::wstring wide(LPCWSTR text) {
    return text;
}

/// A type or name in a search: a number, a text, or "#" and the decimal digits of a number.
class Wanted {
public:
    template <typename Unit>
    explicit Wanted(const Unit* name) {
        const auto value = reinterpret_cast<std::uintptr_t>(name);
        if (value <= 0xFFFF) {
            m_number = value;
            return;
        }
        m_text = wide(name);
        if (m_text.starts_with(L'#')) m_number = std::wcstoul(m_text.c_str() + 1, nullptr, 10);
    }

    /// Returns false for a number of more than 16 bits.
    bool isValid() const noexcept { return m_number.value_or(0) <= 0xFFFF; }

    bool isAt(const std::byte* element) const noexcept {
        const auto first = numberAt<std::uint16_t>(element);
        if (m_number) return first == NumberMark && numberAt<std::uint16_t>(element + 2) == *m_number;
        return first != NumberMark && isTextAt(element);
    }

private:
    // Names are compared in upper case. Only ASCII letters are converted.
    static unsigned capital(unsigned unit) noexcept { return unit >= 'a' && unit <= 'z' ? unit - 'a' + 'A' : unit; }

    bool isTextAt(const std::byte* element) const noexcept {
        for (const wchar_t* wanted = m_text.c_str();; ++wanted, element += 2) {
            const unsigned unit = numberAt<std::uint16_t>(element);
            if (capital(unit) != capital(static_cast<std::uint16_t>(*wanted))) return false;
            if (unit == 0) return true;
        }
    }

    std::wstring m_text;
    std::optional<std::uintptr_t> m_number;
};

std::size_t sizeOfElement(const std::byte* element) noexcept {
    if (numberAt<std::uint16_t>(element) == NumberMark) return 4;
    std::size_t size = 2;
    while (numberAt<std::uint16_t>(element + size - 2) != 0) size += 2;
    return size;
}

class Entry {
public:
    explicit Entry(const std::byte* address) noexcept : m_address(address) {}
    explicit Entry(HRSRC handle) noexcept : m_address(reinterpret_cast<const std::byte*>(handle)) {}

    HRSRC handle() const noexcept { return reinterpret_cast<HRSRC>(const_cast<std::byte*>(m_address)); }
    DWORD dataSize() const noexcept { return numberAt<DWORD>(m_address); }
    const std::byte* data() const noexcept { return m_address + headerSize(); }
    const std::byte* next() const noexcept { return m_address + alignedTo4(headerSize() + dataSize()); }

    const std::byte* type() const noexcept { return m_address + 8; }
    const std::byte* name() const noexcept { return type() + sizeOfElement(type()); }
    WORD language() const noexcept {
        const std::size_t named = static_cast<std::size_t>(name() - m_address) + sizeOfElement(name());
        return numberAt<WORD>(m_address + alignedTo4(named) + LanguageOffset);
    }

private:
    DWORD headerSize() const noexcept { return numberAt<DWORD>(m_address + 4); }

    const std::byte* m_address;
};

std::mutex lock;
eq::standin::ModuleResources* registered = nullptr;

HMODULE holderOf(const eq::standin::ModuleResources& resources) noexcept {
    HMODULE holder = nullptr;
    const DWORD byAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    GetModuleHandleExA(byAddress, reinterpret_cast<LPCSTR>(resources.begin), &holder);
    return holder;
}

/// Calls `visit` with each entry of a module. A module may have several resource files.
template <typename Visit>
void forEachEntry(HMODULE module, const Visit& visit) noexcept {
    const std::lock_guard guard(lock);
    for (const auto* resources = registered; resources; resources = resources->next) {
        if (holderOf(*resources) != module) continue;
        for (const std::byte* place = resources->begin; place < resources->end; place = Entry(place).next())
            visit(Entry(place));
    }
}

WORD systemLanguage() noexcept {
    const auto* const language = eq::standin::environmentLanguage("LC_MESSAGES");
    return language ? language->id : WORD{0};
}

template <typename Unit>
HRSRC find(HMODULE module, const Unit* type, const Unit* name, WORD language) noexcept try {
    const Wanted wantedType(type);
    const Wanted wantedName(name);
    if (!wantedType.isValid() || !wantedName.isValid()) return refuse(ERROR_INVALID_PARAMETER);
    constexpr WORD UsEnglish = 0x0409;
    const bool neutral = PRIMARYLANGID(language) == 0;
    const WORD system = neutral ? systemLanguage() : WORD{0};
    // The languages in order of preference.
    const std::array<WORD, 5> languages = {language, PRIMARYLANGID(language), system, PRIMARYLANGID(system),
                                           neutral ? UsEnglish : WORD{0}};
    std::size_t bestRank = languages.size();
    HRSRC best = nullptr;
    bool named = false;
    forEachEntry(module ? module : GetModuleHandleA(nullptr), [&](const Entry& entry) {
        if (!wantedType.isAt(entry.type()) || !wantedName.isAt(entry.name())) return;
        named = true;
        const auto* const found = std::find(languages.begin(), languages.end(), entry.language());
        const auto rank = static_cast<std::size_t>(found - languages.begin());
        if (rank >= bestRank) return;
        bestRank = rank;
        best = entry.handle();
    });
    if (best) return best;
    return refuse(named ? ERROR_RESOURCE_LANG_NOT_FOUND : ERROR_RESOURCE_NAME_NOT_FOUND);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

} // namespace

namespace eq::standin {

ModuleResources::ModuleResources(const std::byte* first, const std::byte* last) noexcept
    : begin(first), end(last), next(nullptr) {
    const std::lock_guard guard(lock);
    next = registered;
    registered = this;
}

ModuleResources::~ModuleResources() {
    const std::lock_guard guard(lock);
    ModuleResources** place = &registered;
    while (*place != this) place = &(*place)->next;
    *place = next;
}

HRSRC WINAPI system::FindResourceExA(HMODULE module, LPCSTR type, LPCSTR name, WORD language) noexcept {
    return find(module, type, name, language);
}

HRSRC WINAPI system::FindResourceExW(HMODULE module, LPCWSTR type, LPCWSTR name, WORD language) noexcept {
    return find(module, type, name, language);
}

HGLOBAL WINAPI system::LoadResource(HMODULE /*module*/, HRSRC resource) noexcept {
    if (!resource) return refuse(ERROR_INVALID_HANDLE);
    return const_cast<std::byte*>(Entry(resource).data());
}

} // namespace eq::standin

LPVOID WINAPI LockResource(HGLOBAL resource) noexcept {
    return resource;
}

DWORD WINAPI SizeofResource(HMODULE /*module*/, HRSRC resource) noexcept {
    if (resource) return Entry(resource).dataSize();
    return refuse(ERROR_INVALID_HANDLE);
}
