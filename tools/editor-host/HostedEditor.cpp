#include "tools/editor-host/HostedEditor.h"

#include "tools/common/Errors.h"

#include <array>
#include <cstdio>

namespace eq {

namespace {

constexpr int32 HostVersion = 2400;

bool logCalls = false;

intptr hostCallback(AEffect* /*effect*/, int32 opcode, int32 index, intptr /*value*/, void* /*ptr*/, float opt) {
    if (opcode == audioMasterVersion) return HostVersion;
    if (logCalls) {
        if (opcode == audioMasterAutomate)
            std::printf("audioMasterAutomate: parameter %d = %.4f\n", static_cast<int>(index), opt);
        else
            std::printf("host call %d, index %d\n", static_cast<int>(opcode), static_cast<int>(index));
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

HostedEditor::HostedEditor(const std::string& libraryPath, bool log) : m_library(libraryPath) {
    logCalls = log;
    const EffectMainProc entry = m_library.entry();
    m_effect = entry ? entry(hostCallback) : nullptr;
    if (m_effect && (m_effect->flags & effFlagsHasEditor) != 0) return;

    if (m_effect) dispatch(effClose);
    throw FileError(libraryPath + (entry == nullptr      ? ": this is not an effect: it has no export \"main\""
                                   : m_effect == nullptr ? ": the library creates no effect"
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

bool HostedEditor::open(void* parent) {
    return dispatch(effEditOpen, parent) != 0;
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
