#pragma once

#include "curve/drawing/EditorPainter.h"
#include "curve/model/KeyControl.h"
#include "curve/model/PointerControl.h"
#include "curve/window/CurveWindow.h"
#include "curve/window/Keyboard.h"
#include "curve/window/XConnection.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace eq {

/// The editor in a window of the host. All calls come from one thread.
///
///     idle: events --> PointerControl, KeyControl --> EditorModel --> ParameterPort
///           ParameterPort --> EditorModel --> EditorPainter --> window
class CurveEditor {
public:
    /// Opens the editor in the host's window, an X11 window id. Returns null if there is no display that can show it,
    /// or no such window. The curves are those of a design for `designRate` Hz. `port` must outlive the editor.
    [[nodiscard]] static std::unique_ptr<CurveEditor> open(ParameterPort& port, std::uint32_t hostWindow,
                                                           double designRate);
    ~CurveEditor();

    /// Handles the events since the last call, follows the parameters, and draws what has changed. The host can lose
    /// the window or the display at any time; the editor then does nothing.
    void idle();

    [[nodiscard]] std::uint32_t window() const noexcept { return curveWindow.id(); }
    [[nodiscard]] std::pair<int, int> size() const noexcept { return {curveWindow.width(), curveWindow.height()}; }
    void resize(int width, int height);

    /// Returns the size of a new editor for the display, in pixels; 0 without a display.
    [[nodiscard]] static std::pair<int, int> defaultSize();

private:
    CurveEditor(std::unique_ptr<XConnection> connection, ParameterPort& port, std::uint32_t hostWindow,
                double designRate);

    void handle(const xcb_generic_event_t& event);
    void handleButton(const xcb_button_press_event_t& event, bool isPress);
    void handleKey(const xcb_key_press_event_t& event, bool isPress);
    void handleMessage(const xcb_client_message_event_t& event);
    /// Adopts the size of the window. Returns false without memory for a picture of it.
    bool arrange();
    void draw();

    std::unique_ptr<XConnection> x;
    double scale;
    EditorModel model;
    EditorTexts texts;
    EditorState state{model, texts};
    PointerControl pointer{state};
    KeyControl keys{state};
    EditorPainter painter;
    Keyboard keyboard;
    CurveWindow curveWindow;
    xcb_atom_t embeddingMessage = XCB_ATOM_NONE;
    std::vector<Rect> exposed;
    std::vector<std::uint8_t> hostKeys; ///< keys whose press went to the host, which also gets their release
    bool isResized = true;
};

} // namespace eq
