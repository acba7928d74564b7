#include "curve/CurveModule.h"

#include "curve/window/CurveEditor.h"

namespace eq {

namespace {

bool defaultSize(int& width, int& height) noexcept try {
    const auto [w, h] = CurveEditor::defaultSize();
    if (w == 0) return false;
    width = w;
    height = h;
    return true;
} catch (...) {
    return false;
}

CurveEditor* open(ParameterPort& port, std::uint32_t hostWindow, double designRate) noexcept try {
    return CurveEditor::open(port, hostWindow, designRate).release();
} catch (...) {
    return nullptr;
}

// An exception means that there was no memory for an event or a picture. The next call of `idle` continues.
void idle(CurveEditor& editor) noexcept try { editor.idle(); } catch (...) {
}

void close(CurveEditor* editor) noexcept {
    delete editor;
}

constexpr CurveModule Module = {CurveModule::Version, defaultSize, open, idle, close};

} // namespace

} // namespace eq

extern "C" [[gnu::visibility("default")]] const eq::CurveModule* curveModule() {
    return &eq::Module;
}
