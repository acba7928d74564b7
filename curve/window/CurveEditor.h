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
    /// Opens the editor in the host's window. `hostWindow` is the id of an X11 window. Returns null if no display can
    /// show the editor, or if the window does not exist. The editor shows the response of filters that are designed for
    /// `designRate` Hz. `port` must outlive the editor.
    [[nodiscard]] static std::unique_ptr<CurveEditor> open(ParameterPort& port, std::uint32_t hostWindow,
                                                           double designRate);
    ~CurveEditor();

    /// Handles the events since the last call, reads the parameters, and draws the changes. The host can lose the
    /// window or the display at any time; `idle` then does nothing.
    void idle();

    [[nodiscard]] std::uint32_t window() const noexcept { return curveWindow.id(); }
    [[nodiscard]] std::pair<int, int> size() const noexcept { return {curveWindow.width(), curveWindow.height()}; }
    void resize(int width, int height);

    /// Returns the width and the height of a new editor on the display, in pixels, or 0 and 0 if there is no display.
    [[nodiscard]] static std::pair<int, int> defaultSize();

private:
    CurveEditor(std::unique_ptr<XConnection> connection, ParameterPort& port, std::uint32_t hostWindow,
                double designRate);

    void handle(const xcb_generic_event_t& event);
    void handleButton(const xcb_button_press_event_t& event, bool isPress);
    void handleKey(const xcb_key_press_event_t& event, bool isPress);
    void handleMessage(const xcb_client_message_event_t& event);
    /// Arranges the editor again if the window has a new size. Returns false if there is no memory for the picture.
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
    std::vector<std::uint8_t> hostKeys; ///< keys whose press was sent to the host, so that their release is sent, too
    bool isResized = true;
};

} // namespace eq
