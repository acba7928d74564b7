#include "curve/drawing/EditorPainter.h"

namespace eq {

namespace {

Surface makeSurface(int width, int height) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? std::move(surface) : nullptr;
}

} // namespace

EditorPainter::EditorPainter(const EditorTexts& texts, double designRate, double scaleFactor)
    : scale(scaleFactor),
      textPainter(scaleFactor),
      cardPainter(textPainter, texts),
      curves(designRate),
      fieldNeeds(cardPainter.fieldNeeds(scaleFactor)) {}

bool EditorPainter::resize(EditorState& state, int width, int height) {
    state.geometry.layout = layoutOf(width, height, scale, fieldNeeds, state.model.host().hasBypass());
    const Rect& window = state.geometry.layout.window;
    const Rect& graph = state.geometry.layout.graph;
    picture = makeSurface(window.width, window.height);
    grid = makeSurface(graph.width, graph.height);
    gridRange = 0.0;
    shown.reset();
    curves.resize(state.geometry.layout.plot.width);
    return picture && grid;
}

std::vector<Rect> EditorPainter::paint(EditorState& state) {
    if (!picture || !grid) return {};
    float values[ParameterCount];
    for (int i = 0; i < ParameterCount; ++i) values[i] = static_cast<float>(state.model.value(i));
    curves.update(values);
    // Keep the range of the axis during a drag: a new range would move the node away from the pointer.
    if (!state.isDragging || !shown) state.geometry.range = decibelRangeFor(curves.largest());

    const Shown now = shownOf(state);
    const EditorLayout& layout = state.geometry.layout;
    const Context cr(cairo_create(picture.get()));
    std::vector<Rect> changed;
    const auto part = [&](const Rect& r, const auto& draw) {
        if (r.width <= 0 || r.height <= 0) return;
        cairo_save(cr.get());
        cairo_rectangle(cr.get(), r.x, r.y, r.width, r.height);
        cairo_clip(cr.get());
        draw();
        cairo_restore(cr.get());
        if (shown) changed.push_back(r);
    };
    if (!shown) {
        fillRect(cr.get(), layout.window, palette::Window);
        changed.push_back(layout.window);
    }
    if (!shown || graphDiffers(now)) part(layout.graph, [&] { drawGraph(cr.get(), state, now); });
    const bool bypassDiffers = !shown || now.isBypassed != shown->isBypassed;
    if (bypassDiffers || now.values[VolumeIndex] != shown->values[VolumeIndex] || targetDiffers(now, VolumeTarget))
        part(layout.volume, [&] { volumePainter.drawSlider(cr.get(), state, now.isBypassed); });
    if (bypassDiffers || targetDiffers(now, BypassTarget))
        part(layout.bypass, [&] { volumePainter.drawBypass(cr.get(), state, now.isBypassed); });
    for (int card = 0; card <= EditorLayout::VolumeCard; ++card)
        if (!shown || cardDiffers(now, card))
            part(layout.cards[static_cast<std::size_t>(card)], [&] { cardPainter.draw(cr.get(), state, card); });
    cairo_surface_flush(picture.get());
    shown = now;
    return changed;
}

const unsigned char* EditorPainter::pixels() const noexcept {
    return picture ? cairo_image_surface_get_data(picture.get()) : nullptr;
}

int EditorPainter::bytesPerRow() const noexcept {
    return picture ? cairo_image_surface_get_stride(picture.get()) : 0;
}

int EditorPainter::width() const noexcept {
    return picture ? cairo_image_surface_get_width(picture.get()) : 0;
}

int EditorPainter::height() const noexcept {
    return picture ? cairo_image_surface_get_height(picture.get()) : 0;
}

EditorPainter::Shown EditorPainter::shownOf(const EditorState& state) const {
    return {state.model.normalised(),      state.focus, state.hover,         state.hasKeyboard,
            state.model.host().bypassed(), state.entry, state.geometry.range};
}

bool EditorPainter::graphDiffers(const Shown& now) const {
    bool differs = now.values != shown->values || now.range != shown->range || now.isBypassed != shown->isBypassed;
    for (int band = 0; band < BandCount; ++band) differs = differs || targetDiffers(now, nodeTarget(band));
    return differs;
}

bool EditorPainter::targetDiffers(const Shown& now, EditorTarget target) const {
    const bool isFocus = now.focus == target;
    return isFocus != (shown->focus == target) || (now.hover == target) != (shown->hover == target) ||
           (isFocus && now.hasKeyboard != shown->hasKeyboard);
}

bool EditorPainter::cardDiffers(const Shown& now, int card) const {
    const bool isVolume = card == EditorLayout::VolumeCard;
    const EditorTarget focus = isVolume ? VolumeTarget : nodeTarget(card);
    if ((now.focus == focus) != (shown->focus == focus)) return true;
    for (int i = 0; i < ParameterCount; ++i) {
        const auto place = static_cast<std::size_t>(i);
        if (focusOfParameter(i) != focus) continue;
        if (now.values[place] != shown->values[place]) return true;
        if ((now.hover == fieldTarget(i)) != (shown->hover == fieldTarget(i))) return true;
        const auto isEdited = [i](const Shown& s) { return s.entry && s.entry->parameter == i; };
        if (isEdited(now) != isEdited(*shown) || (isEdited(now) && now.entry != shown->entry)) return true;
    }
    return false;
}

void EditorPainter::drawGraph(cairo_t* cr, const EditorState& state, const Shown& now) {
    const Rect& graph = state.geometry.layout.graph;
    if (gridRange != now.range) {
        const Context gridContext(cairo_create(grid.get()));
        cairo_translate(gridContext.get(), -graph.x, -graph.y);
        plotPainter.drawGrid(gridContext.get(), state.geometry);
        gridRange = now.range;
    }
    cairo_set_source_surface(cr, grid.get(), graph.x, graph.y);
    cairo_paint(cr);
    plotPainter.drawCurves(cr, state, curves, now.isBypassed);
}

} // namespace eq
