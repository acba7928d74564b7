#pragma once

#include <cstdint>

namespace eq {

class CurveEditor;
class ParameterPort;

/// The functions of the editor's module. The VST 2 library loads the module at run time, so that the library needs no
/// graphics libraries. No function throws.
struct CurveModule {
    /// The version of this interface. It changes with each change of this record or of ParameterPort. The library does
    /// not use a module of another version.
    static constexpr int Version = 1;

    int version;
    /// Stores the size of a new editor, in pixels, and returns true. Returns false if there is no display.
    bool (*defaultSize)(int& width, int& height) noexcept;
    /// Opens an editor in the host's X11 window. Returns null if there is no display, or if the window does not exist.
    /// The editor shows the response of filters that are designed for `designRate` Hz. `port` must outlive the editor.
    CurveEditor* (*open)(ParameterPort& port, std::uint32_t hostWindow, double designRate) noexcept;
    void (*idle)(CurveEditor& editor) noexcept;
    /// Closes an editor and deletes it.
    void (*close)(CurveEditor* editor) noexcept;
};

/// The name of the module's file, which is in the folder of the library. The name does not end in ".so", because hosts
/// try to load every such file as an effect.
inline constexpr const char* CurveModuleFile = "Parametric Equalizer.editor";

/// The name and the type of the module's only export.
inline constexpr const char* CurveModuleEntry = "curveModule";
using CurveModuleProc = const CurveModule* (*)();

} // namespace eq
