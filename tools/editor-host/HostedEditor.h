#pragma once

#include "plugin/base/AEffect.h"
#include "tools/editor-host/EffectFile.h"

#include <string>

namespace eq {

/// An effect and its editor, as a host uses them. Only one object may exist at a time, because the host callback cannot
/// distinguish between objects.
class HostedEditor {
public:
    /// Loads the library and creates an effect. With `log`, prints each call of the effect to its host. Throws
    /// FileError if there is no library, no effect or no editor.
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
    /// Returns the name and the value of a parameter: "Volume = 0.2500: +6.0 dB".
    [[nodiscard]] std::string describe(int index) const;

private:
    intptr dispatch(int32 opcode, void* ptr = nullptr, int32 index = 0) const;

    const EffectFile m_library;
    AEffect* m_effect = nullptr;
};

} // namespace eq
