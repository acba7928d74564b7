#include "curve/drawing/CardPainter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace eq {

namespace {

// Lengths at a scale factor of 1.
constexpr double FieldPadding = 5.0; ///< left of the texts of a read-out
/// The caption is above the middle of the card, and the value is below, each by a fraction of this length.
constexpr double CaptionHeight = 14.0;
constexpr double BadgeRadius = 8.5;
constexpr double EntryHeight = 20.0;

/// The normalised value with the widest text for each kind, in the order of ParameterKind.
constexpr float WidestP[ParameterKindCount] = {0.0F, 0.1005F, 0.0F, 0.0F}; // 0.1005 is "10.0 kHz"

} // namespace

FieldNeeds CardPainter::fieldNeeds(double scale) const {
    FieldNeeds needs{};
    const int padding = static_cast<int>(std::lround(FieldPadding * scale));
    for (const ParameterKind kind : {ParameterKind::Frequency, ParameterKind::Gain, ParameterKind::Q}) {
        const auto i = static_cast<std::size_t>(kind);
        needs[i].value = painter.widthOf(Font::Value, texts.display(indexOf(kind, 1), WidestP[i])) + padding;
        needs[i].caption = painter.widthOf(Font::Caption, texts.label(kind)) + padding;
    }
    return needs;
}

void CardPainter::draw(cairo_t* cr, const EditorState& state, int card) const {
    const EditorLayout& layout = state.geometry.layout;
    const double scale = layout.scale;
    const Rect& r = layout.cards[static_cast<std::size_t>(card)];
    const bool isVolume = card == EditorLayout::VolumeCard;
    const bool isFocus = state.focus == (isVolume ? VolumeTarget : nodeTarget(card));
    const Colour& colour = isVolume ? palette::Sum : palette::Bands[static_cast<std::size_t>(card)];
    fillRect(cr, r, palette::Window);
    addRoundRect(cr, r.x, r.y, r.width, r.height, Corner * scale);
    setColour(cr, palette::Card);
    cairo_fill(cr);
    if (isFocus) {
        addRoundRect(cr, r.x + 0.75 * scale, r.y + 0.75 * scale, r.width - 1.5 * scale, r.height - 1.5 * scale,
                     Corner * scale);
        setColour(cr, colour, 0.75);
        cairo_set_line_width(cr, 1.5 * scale);
        cairo_stroke(cr);
    }
    if (isVolume) return drawField(cr, state, VolumeIndex, Align::Centre);

    const double x = r.x + (Corner + BadgeRadius) * scale;
    const double y = r.y + r.height / 2.0;
    cairo_new_path(cr);
    cairo_arc(cr, x, y, BadgeRadius * scale, 0.0, 2.0 * std::numbers::pi);
    setColour(cr, colour);
    cairo_fill(cr);
    painter.draw(cr, Font::Badge, std::to_string(card + 1), x, y, Align::Centre, palette::Badge);
    for (const int parameter : {frequencyIndex(card), gainIndex(card), qIndex(card)})
        drawField(cr, state, parameter, Align::Left);
}

void CardPainter::drawField(cairo_t* cr, const EditorState& state, int parameter, Align align) const {
    const double scale = state.geometry.layout.scale;
    const Rect& r = state.geometry.layout.fields[static_cast<std::size_t>(parameter)];
    const double middle = r.y + r.height / 2.0;
    const double captionY = middle - CaptionHeight / 1.5 * scale;
    const double valueY = middle + CaptionHeight / 1.75 * scale;
    const double padding = FieldPadding * scale;
    const bool isLeft = align == Align::Left;
    const double x = isLeft ? r.x + padding : r.x + r.width / 2.0;
    const int most = static_cast<int>(r.width - (isLeft ? padding : 2.0 * padding)) + 1;
    const double height = EntryHeight * scale;
    const Rect box = {isLeft ? r.x + static_cast<int>(padding / 5.0) : r.x + static_cast<int>(padding),
                      static_cast<int>(std::round(valueY - height / 2.0)),
                      r.width - static_cast<int>(isLeft ? padding / 5.0 : 2.0 * padding), static_cast<int>(height)};

    painter.draw(cr, Font::Caption, texts.label(Parameters[parameter].kind), x, captionY, align, palette::Caption,
                 most);
    if (state.entry && state.entry->parameter == parameter) return drawEntry(cr, state, box);
    if (state.hover == fieldTarget(parameter)) {
        addRoundRect(cr, box.x, box.y, box.width, box.height, 3.0 * scale);
        setColour(cr, palette::CardHover);
        cairo_fill(cr);
    }
    const std::string text = texts.display(parameter, state.model.normalised()[static_cast<std::size_t>(parameter)]);
    painter.draw(cr, Font::Value, text, x, valueY, align, palette::Text, most);
}

void CardPainter::drawEntry(cairo_t* cr, const EditorState& state, const Rect& box) const {
    const double scale = state.geometry.layout.scale;
    const TextEntry& entry = *state.entry;
    const double y = box.y + box.height / 2.0;
    cairo_save(cr);
    addRoundRect(cr, box.x + 0.5, box.y + 0.5, box.width - 1.0, box.height - 1.0, 3.0 * scale);
    setColour(cr, palette::Entry);
    cairo_fill_preserve(cr);
    setColour(cr, entry.isInvalid ? palette::Invalid : palette::Caption);
    cairo_set_line_width(cr, (entry.isInvalid ? 2.0 : 1.0) * scale);
    cairo_stroke(cr);

    const double inset = 4.0 * scale;
    cairo_rectangle(cr, box.x + 2.0 * scale, box.y, box.width - inset, box.height);
    cairo_clip(cr);
    const double cursor = painter.placeOf(Font::Value, entry.text, entry.cursor);
    // A text that is too long moves to the left, so that the cursor stays in view.
    const double room = box.width - 2.0 * inset;
    const double x = box.x + inset - std::max(0.0, cursor - room);
    if (entry.isSelected && !entry.text.empty()) {
        cairo_rectangle(cr, x - scale, y - 8.0 * scale, painter.widthOf(Font::Value, entry.text) + 2.0 * scale,
                        16.0 * scale);
        setColour(cr, palette::Selection);
        cairo_fill(cr);
    }
    painter.draw(cr, Font::Value, entry.text, x, y, Align::Left, entry.isInvalid ? palette::Invalid : palette::Text);
    if (!entry.isSelected) {
        setColour(cr, palette::Text);
        cairo_rectangle(cr, std::round(x + cursor), y - 8.0 * scale, std::max(1.0, scale), 16.0 * scale);
        cairo_fill(cr);
    }
    cairo_restore(cr);
}

} // namespace eq
