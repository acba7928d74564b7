#pragma once

#include "curve/CurveModule.h"
#include "curve/model/ParameterPort.h"
#include "plugin/base/AEffEditor.h"

#include <string>

namespace eq {

/// The effect's user interface on Linux: the response curve in the host's X11 window. The curve is in a separate
/// module, because only the module needs graphics libraries. The module is loaded when the host first asks for the
/// editor's size or opens the editor.
///
/// The editor calls the host during `idle`, and the host may then call the editor again. In this case `close` takes
/// effect when `idle` ends, and `open` and `idle` do nothing.
class CurveHostEditor : public AEffEditor, private ParameterPort {
public:
    /// Registers the new editor with `owner`, which then owns the editor. `moduleFile` is the path of the module.
    CurveHostEditor(AudioEffect* owner, std::string moduleFile);
    ~CurveHostEditor() override;

    /// Stores the address of a new editor's size, in pixels, in `answer`. Always returns 1.
    int32 getRect(ERect** answer) override;
    /// Opens the editor in `window`, which is the id of an X11 window. Closes an open editor first. Returns 1, or 0 if
    /// the module, a display or the window is missing.
    int32 open(void* window) override;
    void close() override;
    void idle() override;

private:
    float get(int index) override;
    void set(int index, float p) override;
    std::string text(const char* key) override;

    /// Returns the functions of the module, and loads the module at the first call. Returns null if the module cannot
    /// be loaded.
    const CurveModule* module();

    const std::string path;
    const CurveModule* loaded = nullptr;
    CurveEditor* curve = nullptr;
    bool isBusy = false; // during `idle` and `close`, in which the host's callback may call the editor
    bool isCloseDue = false;
    ERect rect{};
};

} // namespace eq
