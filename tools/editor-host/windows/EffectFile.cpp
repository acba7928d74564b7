#include "tools/editor-host/EffectFile.h"

#include "platform/win32.h"
#include "support/AsciiText.h"
#include "tools/common/Errors.h"

#include <array>
#include <string_view>

namespace eq {

namespace {

/// Returns the system's text for an error.
std::string errorText(DWORD code) {
    std::array<char, 256> text{};
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text.data(),
                   static_cast<DWORD>(text.size()), nullptr);
    const std::string_view result = trim_chars(text.data(), "\r\n");
    return result.empty() ? "error " + std::to_string(code) : std::string(result);
}

} // namespace

EffectFile::EffectFile(const std::string& path) : m_handle(LoadLibraryA(path.c_str())) {
    const DWORD error = GetLastError();
    if (!m_handle) throw FileError(path + ": " + errorText(error));
}

EffectFile::~EffectFile() {
    FreeLibrary(static_cast<HMODULE>(m_handle));
}

EffectMainProc EffectFile::entry() const noexcept {
    return reinterpret_cast<EffectMainProc>(
        reinterpret_cast<void (*)()>(GetProcAddress(static_cast<HMODULE>(m_handle), "main")));
}

} // namespace eq
