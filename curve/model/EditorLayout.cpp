#include "curve/model/EditorLayout.h"

#include <algorithm>
#include <cmath>

namespace eq {

namespace {

// Lengths at a scale factor of 1.
constexpr int Margin = 12;
constexpr int Gap = 8;
constexpr int DecibelLabels = 26;
constexpr int FrequencyLabels = 18;
constexpr int NodeMargin = 14; ///< space for the nodes beside the plot, and for the thumb at the ends of the track
constexpr int CardGap = 6;
constexpr int VolumeWidth = 64;
constexpr int CardHeight = 46;
constexpr int BadgeWidth = 26;      ///< the band's number in its card
constexpr int WideCardsWidth = 740; ///< the least width for all bands' cards in one row
constexpr int BypassSize = 28;

constexpr std::array FieldKinds = {ParameterKind::Frequency, ParameterKind::Gain, ParameterKind::Q};

/// Divides the width of a card among its fields. Each field gets the width of its value. Fields whose caption is wider
/// than the value then share the remaining width, until the captions fit. All fields share the width that is still left
/// equally.
void placeFields(EditorLayout& layout, const Rect& card, int band, const FieldNeeds& needs, int left) {
    std::array<double, std::size(FieldKinds)> widths{};
    double rest = card.right() - left;
    double missing = 0.0;
    const auto needOf = [&needs](ParameterKind kind) { return needs[static_cast<std::size_t>(kind)]; };
    const auto shortage = [&](ParameterKind kind) { return std::max(0, needOf(kind).caption - needOf(kind).value); };
    for (std::size_t i = 0; i < widths.size(); ++i) {
        widths[i] = needOf(FieldKinds[i]).value;
        rest -= widths[i];
        missing += shortage(FieldKinds[i]);
    }
    rest = std::max(rest, 0.0);
    const double part = missing > 0.0 ? std::min(1.0, rest / missing) : 0.0;
    double x = left;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        widths[i] += shortage(FieldKinds[i]) * part + (rest - missing * part) / static_cast<double>(widths.size());
        const int begin = static_cast<int>(x);
        x += widths[i];
        layout.fields[static_cast<std::size_t>(indexOf(FieldKinds[i], band + 1))] = {
            begin, card.y, std::min(static_cast<int>(x), card.right()) - begin, card.height};
    }
}

} // namespace

EditorLayout layoutOf(int width, int height, double scale, const FieldNeeds& needs, bool hasBypass) {
    const auto px = [scale](int length) { return static_cast<int>(std::lround(length * scale)); };
    EditorLayout layout;
    layout.scale = scale;
    layout.window = {0, 0, std::max(width, px(LeastEditorWidth)), std::max(height, px(LeastEditorHeight))};
    const int right = layout.window.width - px(Margin);
    const int bottom = layout.window.height - px(Margin);

    const int volumeLeft = right - px(VolumeWidth);
    const int bandsWidth = volumeLeft - px(CardGap) - px(Margin);
    const int columns = bandsWidth >= px(WideCardsWidth) ? BandCount : BandCount / 2;
    const int rows = BandCount / columns;
    const int cardsTop = bottom - rows * px(CardHeight) - (rows - 1) * px(CardGap);
    for (int band = 0; band < BandCount; ++band) {
        const int column = band % columns;
        const int row = band / columns;
        const int left = px(Margin) + column * (bandsWidth + px(CardGap)) / columns;
        const int end = px(Margin) + (column + 1) * (bandsWidth + px(CardGap)) / columns - px(CardGap);
        const Rect card = {left, cardsTop + row * (px(CardHeight) + px(CardGap)), end - left, px(CardHeight)};
        layout.cards[static_cast<std::size_t>(band)] = card;
        placeFields(layout, card, band, needs, card.x + px(BadgeWidth));
    }
    const Rect volumeCard = {volumeLeft, cardsTop, right - volumeLeft, bottom - cardsTop};
    layout.cards[EditorLayout::VolumeCard] = volumeCard;
    layout.fields[VolumeIndex] = volumeCard;

    const int graphBottom = cardsTop - px(Gap);
    layout.graph = {px(2), px(2), px(Margin - 2) + bandsWidth, graphBottom - px(2)};
    const int plotLeft = px(Margin + DecibelLabels + NodeMargin);
    layout.plot = {plotLeft, px(Margin), layout.graph.right() - px(NodeMargin) - plotLeft,
                   graphBottom - px(FrequencyLabels) - px(Margin)};

    int trackTop = px(Margin);
    if (hasBypass) {
        const int left = volumeLeft + (px(VolumeWidth) - px(BypassSize)) / 2;
        layout.bypass = {left, px(Margin), px(BypassSize), px(BypassSize)};
        trackTop = layout.bypass.bottom() + px(Gap);
    }
    layout.volume = {volumeLeft, trackTop, right - volumeLeft, graphBottom - trackTop};
    layout.track = {volumeLeft, trackTop + px(NodeMargin), right - volumeLeft,
                    layout.plot.bottom() - trackTop - 2 * px(NodeMargin)};
    return layout;
}

} // namespace eq
