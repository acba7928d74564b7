#include "platform/standin/CodePages.h"

#include "platform/standin/CodePageTable.h"
#include "platform/standin/Refuse.h"
#include "platform/standin/TestHooks.h"
#include "platform/standin/Utf8.h"

#include <atomic>
#include <cstring>
#include <cwchar>

namespace {

using eq::standin::refuse;

constexpr UINT CP_THREAD_ACP_NUMBER = 3;

std::atomic<UINT> ansiCodepage = CP_UTF8;

UINT numberOf(UINT codePage) noexcept {
    const bool ansi = codePage == CP_ACP || codePage == CP_THREAD_ACP_NUMBER;
    return ansi ? ansiCodepage.load() : codePage;
}

/// Writes to the caller's buffer, or only counts the units if the size of the buffer is 0.
template <typename Unit>
class Output {
public:
    Output(Unit* buffer, int size) noexcept : m_buffer(buffer), m_size(size) {}

    /// Writes all units of one character. Writes nothing if the buffer has no space for all units.
    template <typename Source>
    void put(const Source* units, int count) noexcept {
        if (m_size == 0) {
            m_count += count;
            return;
        }
        if (m_full || count > m_size - m_count) {
            m_full = true;
            return;
        }
        for (int i = 0; i < count; ++i) m_buffer[m_count++] = static_cast<Unit>(units[i]);
    }

    int finish() const noexcept { return m_full ? refuse(ERROR_INSUFFICIENT_BUFFER) : m_count; }

private:
    Unit* m_buffer;
    int m_size;
    int m_count = 0;
    bool m_full = false;
};

template <typename Text, typename Unit>
bool argumentsFit(const Text* text, int textSize, const Unit* buffer, int bufferSize) noexcept {
    return text && textSize != 0 && bufferSize >= 0 && (buffer || bufferSize == 0);
}

/// Decodes a text. `decode` returns the first character of a text.
template <typename Decode>
int decodeText(std::string_view text, bool strict, Output<wchar_t> output, Decode decode) {
    while (!text.empty()) {
        const auto character = decode(text);
        if (strict && !character.valid) return refuse(ERROR_NO_UNICODE_TRANSLATION);
        output.put(character.units.data(), character.unitCount);
        text.remove_prefix(static_cast<std::size_t>(character.size));
    }
    return output.finish();
}

int decodeUtf8(std::string_view text, bool strict, Output<wchar_t> output) {
    return decodeText(text, strict, output, eq::standin::decodeUtf8);
}

int decodeTable(const eq::standin::CodePageTable& table, std::string_view text, bool strict, Output<wchar_t> output) {
    return decodeText(text, strict, output, [&table](std::string_view rest) {
        const auto character = table.decode(rest);
        return eq::standin::DecodedCharacter{{character.unit}, 1, character.size, character.valid};
    });
}

int encodeUtf8(std::wstring_view text, bool strict, Output<char> output) {
    while (!text.empty()) {
        const auto character = eq::standin::encodeUtf8(text);
        if (strict && !character.valid) return refuse(ERROR_NO_UNICODE_TRANSLATION);
        output.put(character.bytes.data(), character.byteCount);
        text.remove_prefix(static_cast<std::size_t>(character.unitCount));
    }
    return output.finish();
}

/// Returns the caller's default character, or the question mark, which every page has.
eq::standin::CodePageTable::Encoded defaultCharacterOf(const eq::standin::CodePageTable& table,
                                                       LPCSTR chosen) noexcept {
    if (!chosen) return {{'?'}, 1};
    if (!table.isLeadByte(static_cast<BYTE>(chosen[0]))) return {{chosen[0]}, 1};
    return {{chosen[0], chosen[1]}, 2};
}

int encodeTable(const eq::standin::CodePageTable& table, std::wstring_view text, Output<char> output,
                LPCSTR defaultCharacter, LPBOOL usedDefaultCharacter) {
    const auto substitute = defaultCharacterOf(table, defaultCharacter);
    BOOL substituted = FALSE;
    for (const wchar_t unit : text) {
        const auto character = table.encode(static_cast<char16_t>(unit));
        if (!character) substituted = TRUE;
        const auto& written = character ? *character : substitute;
        output.put(written.bytes.data(), written.size);
    }
    if (usedDefaultCharacter) *usedDefaultCharacter = substituted;
    return output.finish();
}

} // namespace

namespace eq::standin {

void setAnsiCodepage(UINT codePage) noexcept {
    ansiCodepage = codePage;
}

} // namespace eq::standin

UINT WINAPI GetACP() noexcept {
    return ansiCodepage;
}

BOOL WINAPI IsDBCSLeadByte(BYTE byte) noexcept {
    return IsDBCSLeadByteEx(CP_ACP, byte);
}

BOOL WINAPI IsDBCSLeadByteEx(UINT codePage, BYTE byte) noexcept try {
    const auto* const table = eq::standin::CodePageTable::find(numberOf(codePage));
    return table && table->isLeadByte(byte);
} catch (...) {
    return FALSE;
}

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int textSize, LPWSTR buffer,
                               int bufferSize) noexcept try {
    if (!argumentsFit(text, textSize, buffer, bufferSize)) return refuse(ERROR_INVALID_PARAMETER);
    const UINT page = numberOf(codePage);
    const auto* const table = eq::standin::CodePageTable::find(page);
    if (!table && page != CP_UTF8) return refuse(ERROR_INVALID_PARAMETER);
    const DWORD knownFlags = table ? MB_PRECOMPOSED | MB_ERR_INVALID_CHARS : MB_ERR_INVALID_CHARS;
    if ((flags & ~knownFlags) != 0) return refuse(ERROR_INVALID_FLAGS);

    const std::string_view source(text, textSize < 0 ? std::strlen(text) + 1 : static_cast<std::size_t>(textSize));
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    const Output output(buffer, bufferSize);
    return table ? decodeTable(*table, source, strict, output) : decodeUtf8(source, strict, output);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int textSize, LPSTR buffer, int bufferSize,
                               LPCSTR defaultCharacter, LPBOOL usedDefaultCharacter) noexcept try {
    if (!argumentsFit(text, textSize, buffer, bufferSize)) return refuse(ERROR_INVALID_PARAMETER);
    const UINT page = numberOf(codePage);
    const auto* const table = eq::standin::CodePageTable::find(page);
    if (!table && page != CP_UTF8) return refuse(ERROR_INVALID_PARAMETER);
    // UTF-8 has every character, so a default character is refused.
    if (!table && (defaultCharacter || usedDefaultCharacter)) return refuse(ERROR_INVALID_PARAMETER);
    if ((flags & ~(table ? WC_NO_BEST_FIT_CHARS : WC_ERR_INVALID_CHARS)) != 0) return refuse(ERROR_INVALID_FLAGS);

    const std::wstring_view source(text, textSize < 0 ? std::wcslen(text) + 1 : static_cast<std::size_t>(textSize));
    const Output output(buffer, bufferSize);
    if (!table) return encodeUtf8(source, (flags & WC_ERR_INVALID_CHARS) != 0, output);
    return encodeTable(*table, source, output, defaultCharacter, usedDefaultCharacter);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

std::wstring eq::standin::wideFromAnsi(LPCSTR text) {
    const int size = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), size);
    wide.resize(wide.size() - 1);
    return wide;
}
