#pragma once

#include "plugin/base/AEffect.h"
#include "tools/editor-host/EffectFile.h"

#include <string>

namespace eq {

/// An effect of the library, and its editor, as a host holds them. Throws FileError when there is none.
///
/// The callback that the library gets knows no host of its own, so there is one such object at a time.
class HostedEditor {
public:
    /// With `log`, each call of the effect to its host is printed.
    HostedEditor(const std::string& libraryPath, bool log);
    ~HostedEditor();
    HostedEditor(const HostedEditor&) = delete;
    HostedEditor& operator=(const HostedEditor&) = delete;

    [[nodiscard]] ERect size() const;
    /// Opens the editor in a window of the platform. Returns the effect's result.
    bool open(void* parent);
    void idle();
    void close();

    [[nodiscard]] int parameterCount() const { return m_effect->numParams; }
    /// Sets a parameter as a host's automation does.
    void setParameter(int index, float value);
    /// "Volume = 0.2500: +6.0 dB"
    [[nodiscard]] std::string describe(int index) const;

private:
    intptr dispatch(int32 opcode, void* ptr = nullptr, int32 index = 0) const;

    const EffectFile m_library;
    AEffect* m_effect = nullptr;
};

} // namespace eq
