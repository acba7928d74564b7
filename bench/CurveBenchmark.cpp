// Measures the Linux editor: a full redraw, the redraw during a drag, an idle call, and opening together with closing.
// The idle call and the opening need a display.

#include "curve/window/CurveEditor.h"
#include "tests/support/FakePort.h"

#include <benchmark/benchmark.h>

namespace eq {

namespace {

constexpr int Width = DefaultEditorWidth;
constexpr int Height = DefaultEditorHeight;

struct Picture {
    Picture() {
        for (std::size_t i = 1; i < ParameterCount; ++i) port.values[i] = static_cast<float>(i) / ParameterCount;
        model.refresh();
    }

    FakePort port;
    EditorModel model{port};
    EditorTexts texts{port, '.'};
    EditorState state{model, texts};
    EditorPainter painter{texts, FilterDesign::DefaultRate, 1.0};
};

void fullRedraw(benchmark::State& run) {
    Picture picture;
    for (auto _ : run) {
        if (!picture.painter.resize(picture.state, Width, Height)) return run.SkipWithError("no memory");
        picture.painter.paint(picture.state);
    }
}
BENCHMARK(fullRedraw)->Unit(benchmark::kMillisecond);

void redrawOfADrag(benchmark::State& run) {
    Picture picture;
    if (!picture.painter.resize(picture.state, Width, Height)) return run.SkipWithError("no memory");
    float p = 0.0F;
    for (auto _ : run) {
        picture.port.values[3] = p = p < 1.0F ? p + 0.01F : 0.0F;
        picture.model.refresh();
        picture.painter.paint(picture.state);
    }
}
BENCHMARK(redrawOfADrag)->Unit(benchmark::kMillisecond);

/// A host's window on the display.
struct Host {
    Host() {
        // Some X servers restart when their last client disconnects, and then lose the next client. This connection
        // prevents the restart.
        static const XConnection lasting;
        if (!x.isAlive()) return;
        window = xcb_generate_id(x.get());
        xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.screen().root, 0, 0, Width, Height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(x.get(), window);
        // Wait until the server has mapped the window.
        const XOwned<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
    }
    [[nodiscard]] std::unique_ptr<CurveEditor> open() {
        return CurveEditor::open(port, window, FilterDesign::DefaultRate);
    }

    XConnection x;
    xcb_window_t window = XCB_NONE;
    FakePort port;
};

void idleWithoutAnEvent(benchmark::State& run) {
    Host host;
    const auto editor = host.open();
    if (!editor) return run.SkipWithError("there is no display");
    for (int i = 0; i < 100; ++i) editor->idle();
    for (auto _ : run) editor->idle();
}
BENCHMARK(idleWithoutAnEvent)->Unit(benchmark::kMicrosecond);

void openAndClose(benchmark::State& run) {
    Host host;
    for (auto _ : run)
        if (!host.open()) return run.SkipWithError("there is no display");
}
BENCHMARK(openAndClose)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

} // namespace eq
