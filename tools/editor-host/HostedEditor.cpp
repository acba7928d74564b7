#include "tools/editor-host/HostedEditor.h"

#include "support/AsciiText.h"
#include "tools/common/Errors.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace eq {

namespace {

constexpr int32 HostVersion = 2400;

bool log_calls = false;

intptr hostCallback(AEffect* /*effect*/, int32 opcode, int32 index, intptr /*value*/, void* /*ptr*/, float opt) {
    if (opcode == audioMasterVersion) return HostVersion;
    if (log_calls) {
        if (opcode == audioMasterAutomate)
            std::printf("audioMasterAutomate: parameter %d = %.4f\n", static_cast<int>(index), opt);
        else
            std::printf("host call %d, index %d\n", static_cast<int>(opcode), static_cast<int>(index));
        std::fflush(stdout);
    }
    return 0;
}

/// The system's text for an error.
std::string errorText(DWORD code) {
    std::array<char, 256> text{};
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text.data(),
                   static_cast<DWORD>(text.size()), nullptr);
    const std::string_view result = trim_chars(text.data(), "\r\n");
    return result.empty() ? "error " + std::to_string(code) : std::string(result);
}

} // namespace

HostedEditor::HostedEditor(const std::string& libraryPath, bool log) : m_library(LoadLibraryA(libraryPath.c_str())) {
    const DWORD error = GetLastError();
    if (!m_library) throw FileError(libraryPath + ": " + errorText(error));
    log_calls = log;
    const auto entry =
        reinterpret_cast<EffectMainProc>(reinterpret_cast<void (*)()>(GetProcAddress(m_library.get(), "main")));
    m_effect = entry ? entry(hostCallback) : nullptr;
    if (m_effect && (m_effect->flags & effFlagsHasEditor) != 0) return;

    if (m_effect) dispatch(effClose);
    throw FileError(libraryPath + (entry == nullptr      ? ": is no effect: it exports no \"main\""
                                   : m_effect == nullptr ? ": gives no effect"
                                                         : ": the effect has no editor"));
}

HostedEditor::~HostedEditor() {
    dispatch(effClose);
}

ERect HostedEditor::size() const {
    ERect* rect = nullptr;
    dispatch(effEditGetRect, &rect);
    return rect ? *rect : ERect{0, 0, 400, 400};
}

void HostedEditor::open(HWND parent) {
    dispatch(effEditOpen, parent);
}

void HostedEditor::idle() {
    dispatch(effEditIdle);
}

void HostedEditor::close() {
    dispatch(effEditClose);
}

void HostedEditor::setParameter(int index, float value) {
    m_effect->setParameter(m_effect, index, value);
}

std::string HostedEditor::describe(int index) const {
    std::array<char, 64> name{};
    std::array<char, 64> text{};
    dispatch(effGetParamName, name.data(), index);
    dispatch(effGetParamDisplay, text.data(), index);
    std::array<char, 256> line{};
    std::snprintf(line.data(), line.size(), "%s = %.4f: %s", name.data(),
                  static_cast<double>(m_effect->getParameter(m_effect, index)), text.data());
    return line.data();
}

intptr HostedEditor::dispatch(int32 opcode, void* ptr, int32 index) const {
    return m_effect->dispatcher(m_effect, opcode, index, 0, ptr, 0.0F);
}

} // namespace eq
