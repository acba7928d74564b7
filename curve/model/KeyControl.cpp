#include "curve/model/KeyControl.h"

namespace eq {

namespace {

/// Returns the parameter of the next read-out, in the order of the cards: the three read-outs of each band, then the
/// volume.
int nextField(int parameter, bool backward) noexcept {
    constexpr int Count = ParameterCount;
    const int place =
        parameter == VolumeIndex ? Count - 1 : (parameter - 1) % BandCount * 3 + (parameter - 1) / BandCount;
    const int next = (place + (backward ? Count - 1 : 1)) % Count;
    return next == Count - 1 ? VolumeIndex : 1 + next / 3 + next % 3 * BandCount;
}

} // namespace

bool KeyControl::press(const KeyInput& input) {
    if (state.entry) return pressInEntry(input);
    switch (input.key) {
    case EditorKey::Tab:
        state.focus = nextFocus(state.focus, input.shift, state.model.host().hasBypass());
        return true;
    case EditorKey::Undo:
        state.model.undo();
        return true;
    default:
        break;
    }
    if (state.focus.kind == TargetKind::Node) return pressOnNode(input);
    if (state.focus.kind == TargetKind::Volume) return pressOnVolume(input);
    if (input.key != EditorKey::Enter && input.text != " ") return false;
    state.model.host().setBypassed(!state.model.host().bypassed());
    return true;
}

bool KeyControl::pressOnNode(const KeyInput& input) {
    const int band = state.focus.index;
    switch (input.key) {
    case EditorKey::Left:
        step(frequencyIndex(band), -1, input);
        return true;
    case EditorKey::Right:
        step(frequencyIndex(band), 1, input);
        return true;
    case EditorKey::Up:
        step(gainIndex(band), 1, input);
        return true;
    case EditorKey::Down:
        step(gainIndex(band), -1, input);
        return true;
    case EditorKey::PageUp:
        step(qIndex(band), 1, input);
        return true;
    case EditorKey::PageDown:
        step(qIndex(band), -1, input);
        return true;
    case EditorKey::Home:
        state.model.enter(gainIndex(band), GainRange.highest);
        return true;
    case EditorKey::End:
        state.model.enter(gainIndex(band), GainRange.lowest);
        return true;
    case EditorKey::Delete:
        state.model.enter(gainIndex(band), 0.0);
        return true;
    default:
        return false;
    }
}

bool KeyControl::pressOnVolume(const KeyInput& input) {
    switch (input.key) {
    case EditorKey::Up:
        step(VolumeIndex, 1, input);
        return true;
    case EditorKey::Down:
        step(VolumeIndex, -1, input);
        return true;
    case EditorKey::Home:
        state.model.enter(VolumeIndex, VolumeRange.highest);
        return true;
    case EditorKey::End:
        state.model.enter(VolumeIndex, VolumeRange.lowest);
        return true;
    case EditorKey::Delete:
        state.model.enter(VolumeIndex, 0.0);
        return true;
    default:
        return false;
    }
}

bool KeyControl::pressInEntry(const KeyInput& input) {
    TextEntry& entry = *state.entry;
    switch (input.key) {
    case EditorKey::Text:
        entry.insert(input.text);
        return true;
    case EditorKey::Backspace:
        entry.eraseBefore();
        return true;
    case EditorKey::Delete:
        entry.eraseAfter();
        return true;
    case EditorKey::Left:
        entry.moveLeft();
        return true;
    case EditorKey::Right:
        entry.moveRight();
        return true;
    case EditorKey::Home:
        entry.moveTo(0);
        return true;
    case EditorKey::End:
        entry.moveTo(entry.text.size());
        return true;
    case EditorKey::Enter:
        state.takeEntry();
        return true;
    case EditorKey::Escape:
        state.closeEntry();
        return true;
    case EditorKey::Tab: {
        const int next = nextField(entry.parameter, input.shift);
        if (state.takeEntry()) state.openEntry(next);
        return true;
    }
    default:
        return false;
    }
}

void KeyControl::step(int parameter, int steps, const KeyInput& input) {
    const double value = stepped(Parameters[parameter].kind, state.model.limitedValue(parameter), steps, input.shift);
    state.model.step(parameter, value, input.time);
}

} // namespace eq
