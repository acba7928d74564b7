#include "curve/model/EditorState.h"

#include <cmath>

namespace eq {

namespace {

constexpr double StepsPerOctave = 12.0;
constexpr double LinearStep = 0.5;

} // namespace

void EditorState::openEntry(int parameter) {
    entry.emplace(parameter, texts.display(parameter, model.normalised()[static_cast<std::size_t>(parameter)]));
    focus = focusOfParameter(parameter);
}

bool EditorState::takeEntry() {
    if (!entry) return true;
    const int parameter = entry->parameter;
    // The shown text is a rounded value, so an unchanged text must not change the parameter.
    const std::string shown = texts.display(parameter, model.normalised()[static_cast<std::size_t>(parameter)]);
    const std::optional<double> value = texts.parse(parameter, entry->text);
    entry->isInvalid = !value;
    if (!value) return false;
    if (entry->text != shown) model.enter(parameter, *value);
    closeEntry();
    return true;
}

double stepped(ParameterKind kind, double value, double steps, bool isFine) noexcept {
    const double count = isFine ? steps * FinePart : steps;
    return kind == ParameterKind::Frequency ? value * std::exp2(count / StepsPerOctave) : value + count * LinearStep;
}

} // namespace eq
