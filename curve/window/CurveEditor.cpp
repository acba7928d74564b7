#include "curve/window/CurveEditor.h"

#include "curve/window/SigpipeGuard.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace eq {

namespace {

constexpr std::uint8_t EventTypeBits = 0x7F; ///< without the bit that marks events from another program

// Messages of the XEmbed protocol.
constexpr std::uint32_t EmbeddedFocusIn = 4;
constexpr std::uint32_t EmbeddedFocusOut = 5;

PointerInput pointerInput(int x, int y, unsigned modifiers, std::uint32_t time) {
    return {x, y, (modifiers & XCB_MOD_MASK_SHIFT) != 0, (modifiers & XCB_MOD_MASK_1) != 0, time};
}

/// Returns a copy of an event as a structure of the event's type.
template <typename Event>
Event as(const xcb_generic_event_t& event) noexcept {
    static_assert(sizeof(Event) <= 32);
    Event result;
    std::memcpy(&result, &event, sizeof result);
    return result;
}

} // namespace

std::unique_ptr<CurveEditor> CurveEditor::open(ParameterPort& port, std::uint32_t hostWindow, double designRate) {
    const SigpipeGuard guard;
    auto connection = std::make_unique<XConnection>();
    if (!connection->isAlive() || !connection->canShow() || hostWindow == XCB_NONE) return nullptr;
    std::unique_ptr<CurveEditor> editor(new CurveEditor(std::move(connection), port, hostWindow, designRate));
    if (!editor->curveWindow.isOpen()) return nullptr;
    editor->draw();
    return editor;
}

CurveEditor::CurveEditor(std::unique_ptr<XConnection> connection, ParameterPort& port, std::uint32_t hostWindow,
                         double designRate)
    : x(std::move(connection)),
      scale(x->scale()),
      model(port),
      texts(port, userDecimalSeparator()),
      painter(texts, designRate, scale),
      keyboard(*x),
      curveWindow(*x, hostWindow, scale) {
    constexpr std::string_view Name = "_XEMBED";
    const auto cookie = xcb_intern_atom(x->get(), 0, Name.size(), Name.data());
    const XOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x->get(), cookie, nullptr));
    if (reply) embeddingMessage = reply->atom;
}

CurveEditor::~CurveEditor() {
    pointer.release();
}

std::pair<int, int> CurveEditor::defaultSize() {
    const SigpipeGuard guard;
    const XConnection connection;
    if (!connection.isAlive() || !connection.canShow()) return {0, 0};
    const double factor = connection.scale();
    return {static_cast<int>(std::lround(DefaultEditorWidth * factor)),
            static_cast<int>(std::lround(DefaultEditorHeight * factor))};
}

void CurveEditor::idle() {
    const SigpipeGuard guard;
    while (curveWindow.isOpen() && x->isAlive()) {
        const XOwned<xcb_generic_event_t> event(xcb_poll_for_event(x->get()));
        if (!event) break;
        handle(*event);
    }
    if (!curveWindow.isOpen() || !x->isAlive()) return;
    model.refresh();
    draw();
}

void CurveEditor::resize(int width, int height) {
    const SigpipeGuard guard;
    curveWindow.resize(width, height);
    xcb_flush(x->get());
}

void CurveEditor::handle(const xcb_generic_event_t& event) {
    if (keyboard.handle(event)) return;
    switch (event.response_type & EventTypeBits) {
    case XCB_EXPOSE: {
        const auto expose = as<xcb_expose_event_t>(event);
        exposed.push_back({expose.x, expose.y, expose.width, expose.height});
        break;
    }
    case XCB_CONFIGURE_NOTIFY:
        if (curveWindow.configure(as<xcb_configure_notify_event_t>(event))) isResized = true;
        break;
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(event).window == curveWindow.id()) curveWindow.forget();
        break;
    case XCB_BUTTON_PRESS:
        handleButton(as<xcb_button_press_event_t>(event), true);
        break;
    case XCB_BUTTON_RELEASE:
        handleButton(as<xcb_button_press_event_t>(event), false);
        break;
    case XCB_MOTION_NOTIFY: {
        const auto motion = as<xcb_motion_notify_event_t>(event);
        pointer.move(pointerInput(motion.event_x, motion.event_y, motion.state, motion.time));
        break;
    }
    case XCB_LEAVE_NOTIFY:
        pointer.leave();
        break;
    case XCB_KEY_PRESS:
        handleKey(as<xcb_key_press_event_t>(event), true);
        break;
    case XCB_KEY_RELEASE:
        handleKey(as<xcb_key_press_event_t>(event), false);
        break;
    case XCB_FOCUS_IN:
        state.hasKeyboard = true;
        break;
    case XCB_FOCUS_OUT:
        state.hasKeyboard = false;
        break;
    case XCB_CLIENT_MESSAGE:
        handleMessage(as<xcb_client_message_event_t>(event));
        break;
    default:
        break;
    }
}

void CurveEditor::handleButton(const xcb_button_press_event_t& event, bool isPress) {
    constexpr xcb_button_t WheelUp = 4;
    constexpr xcb_button_t WheelDown = 5;
    const PointerInput input = pointerInput(event.event_x, event.event_y, event.state, event.time);
    arrange(); // the window may have been resized since the last picture
    if (event.detail == 1 && !isPress) {
        pointer.move(input);
        pointer.release();
    } else if (event.detail == 1) {
        curveWindow.takeKeyboard(event.time);
        pointer.press(input);
    } else if (isPress && event.detail == WheelUp) {
        pointer.wheel(input, 1);
    } else if (isPress && event.detail == WheelDown) {
        pointer.wheel(input, -1);
    }
}

void CurveEditor::handleKey(const xcb_key_press_event_t& event, bool isPress) {
    const bool isHosts = isPress ? !keys.press(keyboard.inputOf(event)) : std::erase(hostKeys, event.detail) > 0;
    if (!isHosts) return;
    if (isPress) hostKeys.push_back(event.detail);
    curveWindow.sendToHost(event);
}

void CurveEditor::handleMessage(const xcb_client_message_event_t& event) {
    if (event.type != embeddingMessage || event.format != 32) return;
    const std::uint32_t message = event.data.data32[1];
    if (message == EmbeddedFocusIn) state.hasKeyboard = true;
    if (message == EmbeddedFocusOut) state.hasKeyboard = false;
}

bool CurveEditor::arrange() {
    isResized = isResized && !painter.resize(state, curveWindow.width(), curveWindow.height());
    return !isResized;
}

void CurveEditor::draw() {
    if (!arrange()) return;
    for (const Rect& part : painter.paint(state)) exposed.push_back(part);
    for (const Rect& part : exposed) curveWindow.show(painter.pixels(), painter.bytesPerRow(), part);
    exposed.clear();
    xcb_flush(x->get()); // also sends the requests that the event handlers made
}

} // namespace eq
