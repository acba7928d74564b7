#include "curve/model/EditorModel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace eq {

EditorModel::EditorModel(ParameterPort& parameterPort) : port(parameterPort) {
    refresh();
}

void EditorModel::refresh() {
    for (int i = 0; i < ParameterCount; ++i) values[static_cast<std::size_t>(i)] = port.get(i);
}

double EditorModel::value(int index) const noexcept {
    return valueOf(Parameters[index].kind, static_cast<double>(values[static_cast<std::size_t>(index)]));
}

double EditorModel::limitedValue(int index) const noexcept {
    const auto [lowest, highest] = scaleOf(Parameters[index].kind).range;
    const double v = value(index);
    return v >= lowest ? std::min(v, highest) : lowest; // a NaN counts as the lowest value
}

void EditorModel::beginDrag(std::initializer_list<int> indexes) {
    drag.before.clear();
    for (const int index : indexes) {
        drag.before.push_back(before(index));
        port.beginGesture(index);
    }
}

void EditorModel::change(int index, double value) {
    send(index, normalisedOf(Parameters[index].kind, value));
}

void EditorModel::endDrag() {
    for (const auto& [index, p] : drag.before) port.endGesture(index);
    std::erase_if(drag.before, [this](const Change::Before& old) { return before(old.index) == old; });
    if (!drag.before.empty()) history.add(std::exchange(drag, {}));
}

void EditorModel::enter(int index, double value) {
    Change change{{before(index)}};
    if (sendAlone(index, normalisedOf(Parameters[index].kind, value))) history.add(std::move(change));
}

void EditorModel::step(int index, double value, std::uint32_t time) {
    Change change{{before(index)}};
    if (sendAlone(index, normalisedOf(Parameters[index].kind, value))) history.addStep(std::move(change), time);
}

void EditorModel::undo() {
    const std::optional<Change> latest = history.takeLatest();
    if (!latest) return;
    for (const auto& [index, p] : latest->before) sendAlone(index, p);
}

Change::Before EditorModel::before(int index) const {
    return {index, values[static_cast<std::size_t>(index)]};
}

void EditorModel::send(int index, float p) {
    float& present = values[static_cast<std::size_t>(index)];
    if (present == p) return;
    present = p;
    port.set(index, p);
}

bool EditorModel::sendAlone(int index, float p) {
    if (values[static_cast<std::size_t>(index)] == p) return false;
    port.beginGesture(index);
    send(index, p);
    port.endGesture(index);
    return true;
}

} // namespace eq
