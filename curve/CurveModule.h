#pragma once

#include <cstdint>

namespace eq {

class CurveEditor;
class ParameterPort;

/// The editor as a module that is loaded at run time, so that the library needs no graphics library. All functions
/// catch their exceptions.
struct CurveModule {
    /// Changes with each change of this record or of ParameterPort. A module of another number is not used.
    static constexpr int Version = 1;

    int version;
    /// Gives the size of a new editor in pixels. Returns false without a display.
    bool (*defaultSize)(int& width, int& height) noexcept;
    /// Opens an editor in the host's X11 window. Returns null without a display or without such a window. `port` must
    /// outlive the editor.
    CurveEditor* (*open)(ParameterPort& port, std::uint32_t hostWindow, double designRate) noexcept;
    void (*idle)(CurveEditor& editor) noexcept;
    /// Closes an editor and deletes it.
    void (*close)(CurveEditor* editor) noexcept;
};

/// The file beside the library. Hosts load each file that ends in ".so".
inline constexpr const char* CurveModuleFile = "Parametric Equalizer.editor";

/// The module's one export.
inline constexpr const char* CurveModuleEntry = "curveModule";
using CurveModuleProc = const CurveModule* (*)();

} // namespace eq
