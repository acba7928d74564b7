#include "curve/model/PointerControl.h"

#include <cmath>
#include <cstdlib>

namespace eq {

namespace {

constexpr std::uint32_t DoubleClickMilliseconds = 400;
constexpr double ClickReach = 3.0; ///< pixels at a scale factor of 1; a longer movement is not a click
/// The length of a drag over the whole range of Q, as a part of the plot's height.
constexpr double QWay = 0.75;

} // namespace

void PointerControl::press(const PointerInput& input) {
    const EditorTarget target = state.geometry.at(input.x, input.y, state.model, state.focus);
    // A click outside the entry applies a valid typed value, and drops an invalid one.
    if (state.entry && target != fieldTarget(state.entry->parameter) && !state.takeEntry()) state.closeEntry();

    const bool hasReset = target.kind == TargetKind::Node || target.kind == TargetKind::Volume;
    const bool isDouble =
        hasReset && target == pressedTarget && !hasMoved && input.time - pressed.time <= DoubleClickMilliseconds;
    pressedTarget = isDouble ? EditorTarget{} : target; // a third click is not part of another double click
    pressed = input;
    hasMoved = false;
    isDouble ? reset(target) : pressTarget(input, target);
}

void PointerControl::pressTarget(const PointerInput& input, EditorTarget target) {
    switch (target.kind) {
    case TargetKind::Node:
        state.focus = target;
        startDrag(input.alt ? Drag::Q : Drag::Node, input);
        break;
    case TargetKind::Volume:
        state.focus = target;
        startDrag(Drag::Volume, input);
        break;
    case TargetKind::Bypass:
        state.focus = target;
        state.model.host().setBypassed(!state.model.host().bypassed());
        break;
    case TargetKind::Field:
        if (state.entry)
            state.entry->moveTo(state.entry->text.size());
        else
            state.openEntry(target.index);
        break;
    case TargetKind::None:
        break;
    }
}

void PointerControl::reset(EditorTarget target) {
    if (target.kind == TargetKind::Node) state.model.enter(gainIndex(target.index), 0.0);
    if (target.kind == TargetKind::Volume) state.model.enter(VolumeIndex, 0.0);
}

void PointerControl::startDrag(Drag newDrag, const PointerInput& input) {
    present = newDrag;
    last = input;
    const int band = state.focus.index;
    switch (present) {
    case Drag::Node:
        place = state.geometry.nodeOf(state.model, band);
        state.model.beginDrag({frequencyIndex(band), gainIndex(band)});
        break;
    case Drag::Q:
        logarithm = std::log(state.model.limitedValue(qIndex(band)));
        state.model.beginDrag({qIndex(band)});
        break;
    case Drag::Volume:
        place = {0.0, state.geometry.volume().yOf(state.model.limitedValue(VolumeIndex))};
        state.model.beginDrag({VolumeIndex});
        break;
    case Drag::None:
        break;
    }
    state.isDragging = true;
}

void PointerControl::release() {
    if (present == Drag::None) return;
    present = Drag::None;
    state.isDragging = false;
    state.model.endDrag();
}

void PointerControl::move(const PointerInput& input) {
    if (present == Drag::None) {
        state.hover = state.geometry.at(input.x, input.y, state.model, state.focus);
        return;
    }
    const double reach = ClickReach * state.geometry.layout.scale;
    hasMoved = hasMoved || std::hypot(input.x - pressed.x, input.y - pressed.y) >= reach;
    if (hasMoved) drag(input);
}

void PointerControl::drag(const PointerInput& input) {
    const double part = input.shift ? FinePart : 1.0;
    const double dx = (input.x - last.x) * part;
    const double dy = (input.y - last.y) * part;
    last = input;
    place.x += dx;
    place.y += dy;
    const int band = state.focus.index;
    switch (present) {
    case Drag::Node: {
        const DecibelAxis axis = state.geometry.decibels();
        if (dx != 0.0) state.model.change(frequencyIndex(band), state.geometry.frequencies().hertzAt(place.x));
        if (dy != 0.0) state.model.change(gainIndex(band), axis.decibelsAt(place.y));
        break;
    }
    case Drag::Q: {
        const double way = QWay * state.geometry.layout.plot.height;
        logarithm -= dy / way * std::log(QRange.highest / QRange.lowest);
        if (dy != 0.0) state.model.change(qIndex(band), std::exp(logarithm));
        break;
    }
    case Drag::Volume:
        if (dy != 0.0) state.model.change(VolumeIndex, state.geometry.volume().decibelsAt(place.y));
        break;
    case Drag::None:
        break;
    }
}

void PointerControl::leave() {
    state.hover = {};
}

void PointerControl::wheel(const PointerInput& input, int steps) {
    // A step would end the host's gesture of the dragged parameter.
    if (present == Drag::Q || present == Drag::Volume) return;
    const EditorTarget target =
        present == Drag::Node ? state.focus : state.geometry.at(input.x, input.y, state.model, state.focus);
    int parameter = VolumeIndex;
    switch (target.kind) {
    case TargetKind::Node:
        parameter = qIndex(target.index);
        break;
    case TargetKind::Field:
        parameter = target.index;
        break;
    case TargetKind::Volume:
        break;
    default:
        return;
    }
    if (state.entry) state.closeEntry();
    const double value = stepped(Parameters[parameter].kind, state.model.limitedValue(parameter), steps, input.shift);
    state.model.step(parameter, value, input.time);
    state.focus = focusOfParameter(parameter);
}

} // namespace eq
