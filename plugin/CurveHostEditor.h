#pragma once

#include "curve/CurveModule.h"
#include "curve/model/ParameterPort.h"
#include "plugin/base/AEffEditor.h"

#include <string>

namespace eq {

/// The effect's user interface on Linux: the response curve in the host's X11 window. It is in a module that is loaded
/// when the host first asks for the editor's size or opens it, because only the module needs graphics libraries.
///
/// The host may call the editor in the middle of a call of its own callback. Calls during `idle` are harmless: a
/// `close` then takes effect when `idle` ends, and all else does nothing.
class CurveHostEditor : public AEffEditor, private ParameterPort {
public:
    /// Becomes the editor of `owner`.
    CurveHostEditor(AudioEffect* owner, std::string moduleFile);
    ~CurveHostEditor() override;

    /// The size of a new editor in pixels. Always 1.
    int32 getRect(ERect** answer) override;
    /// `window` is the id of an X11 window. Closes an editor that is open. Returns 1, or 0 if the module, a display or
    /// the window is missing.
    int32 open(void* window) override;
    void close() override;
    void idle() override;

private:
    float get(int index) override;
    void set(int index, float p) override;
    std::string text(const char* key) override;

    /// Loads the module. Returns null if that fails.
    const CurveModule* module();

    const std::string path;
    const CurveModule* loaded = nullptr;
    CurveEditor* curve = nullptr;
    bool isBusy = false; // in `idle` or `close`, in which the host's callback may call the editor
    bool isCloseDue = false;
    ERect rect{};
};

} // namespace eq
