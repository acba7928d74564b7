#include "curve/drawing/EditorPainter.h"
#include "tests/support/FakePort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <sstream>

namespace eq {

namespace {

struct Editor {
    explicit Editor(double scale = 1.0) : painter(texts, 44100.0, scale) {}

    FakePort port;
    EditorModel model{port};
    EditorTexts texts{port, '.'};
    EditorState state{model, texts};
    EditorPainter painter;
};

void changeSomething(Editor& editor, std::mt19937& random) {
    const auto pick = [&random](unsigned count) { return static_cast<int>(random() % count); };
    const EditorTarget targets[] = {nodeTarget(pick(4)), VolumeTarget, BypassTarget};
    const int kind = pick(8);
    if (kind == 0) editor.state.focus = targets[pick(3)];
    if (kind == 1) editor.state.hover = pick(2) == 0 ? targets[pick(3)] : fieldTarget(pick(13));
    if (kind == 2) editor.state.openEntry(pick(13));
    if (kind == 3 && editor.state.entry) editor.state.entry->insert("7");
    if (kind == 4) editor.state.closeEntry();
    if (kind == 5) editor.port.isBypassed = pick(2) == 0;
    if (kind == 5) editor.state.hasKeyboard = pick(2) == 0;
    if (kind > 5) editor.port.values[random() % 13] = static_cast<float>(pick(101)) / 100.0F;
    editor.model.refresh();
}

// The rectangles that `paint` returns must contain all changes, and the picture must equal a newly painted picture.
TEST(CurvePicture, IsTheSameWhetherPaintedInPartsOrCompletely) {
    std::mt19937 random(21);
    Editor editor;
    ASSERT_TRUE(editor.painter.resize(editor.state, 480, 300));
    const int height = editor.painter.height();
    const auto rowBytes = static_cast<std::size_t>(editor.painter.bytesPerRow());
    std::vector<unsigned char> window(rowBytes * static_cast<std::size_t>(height));
    std::size_t partial = 0;
    for (int turn = 0; turn < 300; ++turn) {
        changeSomething(editor, random);
        for (const Rect& part : editor.painter.paint(editor.state)) {
            for (int y = part.y; y < part.bottom(); ++y) {
                const std::size_t place = static_cast<std::size_t>(y) * rowBytes + static_cast<std::size_t>(part.x) * 4;
                std::memcpy(&window[place], editor.painter.pixels() + place, static_cast<std::size_t>(part.width) * 4);
            }
            partial += part.width < editor.painter.width() ? 1 : 0;
        }
        EditorPainter fresh(editor.texts, 44100.0, 1.0);
        ASSERT_TRUE(fresh.resize(editor.state, 480, 300));
        fresh.paint(editor.state);
        ASSERT_TRUE(std::ranges::equal(window, std::span(fresh.pixels(), window.size()))) << "turn " << turn;
        ASSERT_TRUE(editor.painter.paint(editor.state).empty());
    }
    EXPECT_GT(partial, 200U);
}

// clang-format off
/// The colours of the design, and their blends with the colours below them.
constexpr std::pair<unsigned, const char*> Colours[] = {
    {0x24282D, "window"}, {0x1A1D21, "plot"}, {0x24292E, "octave"}, {0x363C43, "decade"}, {0x555D66, "zero"},
    {0x2D3238, "card"}, {0x383E45, "hover"}, {0x15181B, "dark"}, {0x3F5F86, "select"}, {0xE5604D, "invalid"},
    {0xE6E9EC, "text"}, {0x9AA3AC, "label"}, {0x6F7780, "grey"}, {0xF4F6F7, "sum"}, {0xFFFFFF, "white"},
    {0x8F99A3, "fill"}, {0xF2CB6C, "band1"}, {0x62C7AE, "band2"}, {0x6C9FE8, "band3"}, {0xCB6790, "band4"},
    {0x233434, "band2*0.14"}, {0x1D2427, "band2*0.04"}, {0x2F4F4B, "band2*0.3"}, {0x54A291, "band2*0.75"},
    {0x4B6B98, "band3*0.6"}, {0x5B5E61, "sum*0.3"}, {0x777A7E, "sum*0.4"}, {0xC2C6C7, "sum*0.75"},
    {0x464B51, "fill*0.4"}, {0x737476, "white*0.4"}, {0x7C7E81, "white*0.4"}, {0x232424, "band1*0.04"}};
// clang-format on

/// Returns the name of a colour, or an empty text. The colours of blends depend on the rounding of the drawing library.
std::string nameOf(unsigned colour) {
    for (const auto& [hex, name] : Colours) {
        int difference = 0;
        for (const unsigned shift : {0U, 8U, 16U})
            difference = std::max(
                difference, std::abs(static_cast<int>(hex >> shift & 255U) - static_cast<int>(colour >> shift & 255U)));
        if (difference <= (std::string_view(name).find('*') == std::string_view::npos ? 0 : 3)) return name;
    }
    return "";
}

/// An editor of the default size with three pixels per unit of the design. All lengths are in units.
class LargePicture : public testing::Test, protected Editor {
protected:
    static constexpr double Scale = 3.0;

    LargePicture() : Editor(Scale) {
        EXPECT_TRUE(painter.resize(state, 2700, 1500));
        port.values[0] = port.values[6] = 0.25F; // +6 dB and +5 dB
        port.values[10] = 1.0F;                  // a Q of 1
    }
    void show(EditorTarget focus, bool hasKeyboard, EditorTarget hover, bool isBypassed = false) {
        port.isBypassed = isBypassed;
        model.refresh();
        state.focus = focus;
        state.hasKeyboard = hasKeyboard;
        state.hover = hover;
        painter.paint(state);
    }
    static unsigned pixel(cairo_surface_t* surface, double x, double y) {
        const auto place =
            static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface) + static_cast<int>(x) * 4;
        unsigned value = 0;
        std::memcpy(&value, cairo_image_surface_get_data(surface) + place, 4);
        return value & 0xFFFFFF;
    }
    /// Compares lines of the picture. Each row has the start, the length and the direction of a line, and its colours
    /// with their lengths. Single pixels, and colours without a name, are the blends at edges. They are left out.
    void expectLines(const char* table) const {
        std::istringstream rows(table);
        for (std::string row; std::getline(rows >> std::ws, row, ';');) {
            std::istringstream words(row);
            double x, y, length;
            std::string direction, expected;
            words >> x >> y >> length >> direction;
            for (std::string word; words >> word;) expected += " " + word;
            std::ostringstream text;
            std::string name;
            int begin = 0;
            const int end = static_cast<int>(length * Scale);
            for (int i = 0; i <= end; ++i) {
                const auto [right, down] = direction == "down:" ? std::pair(0, i) : std::pair(i, 0);
                const unsigned colour = i < end ? pixel(painter.surface(), x * Scale + right, y * Scale + down) : 0;
                const std::string next = nameOf(colour);
                if (next == name) continue;
                if (i - begin > 1 && !name.empty())
                    text << " " << name << " " << std::round((i - begin) / Scale * 2.0) / 2.0 << ",";
                name = next;
                begin = i;
            }
            EXPECT_EQ(text.str(), expected + ",") << "from " << x << ", " << y;
        }
    }
    /// Compares texts of the picture with separate drawings. Each row has the font, the position, the alignment, where
    /// 1 is the right end of the text, the colours of the text and of its background, and the text.
    void expectTexts(const char* table) const {
        const std::map<std::string, const char*> fonts = {
            {"Axis", "Sans 31.5px"}, {"Caption", "Sans 30px"}, {"Value", "Sans 36px"}, {"Badge", "Sans Bold 34.5px"}};
        PangoContext* const context = pango_font_map_create_context(pango_cairo_font_map_get_default());
        std::istringstream rows(table);
        for (std::string row; std::getline(rows >> std::ws, row, ';');) {
            std::istringstream words(row);
            double x, y, align;
            std::string font, colour, background, text;
            words >> font >> x >> y >> align >> colour >> background >> std::ws;
            std::getline(words, text);
            PangoLayout* const layout = pango_layout_new(context);
            PangoFontDescription* const description = pango_font_description_from_string(fonts.at(font));
            pango_layout_set_font_description(layout, description);
            pango_layout_set_text(layout, text.c_str(), -1);
            int width = 0;
            int height = 0;
            pango_layout_get_pixel_size(layout, &width, &height);
            const Surface drawn(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
            const Context cr(cairo_create(drawn.get()));
            for (const std::string& name : {background, colour}) {
                const auto* const found = std::ranges::find(Colours, name, &std::pair<unsigned, const char*>::second);
                setColour(cr.get(), eq::colour(found->first));
                name == background ? cairo_paint(cr.get()) : pango_cairo_show_layout(cr.get(), layout);
            }
            cairo_surface_flush(drawn.get());
            const double left = std::round(x * Scale - width * align);
            const double top = std::round(y * Scale - height / 2.0);
            int differences = 0;
            for (int i = 0; i < width * height; ++i) {
                const unsigned shown = pixel(painter.surface(), left + i % width, top + i / width);
                if (pixel(drawn.get(), i % width, i / width) != shown) ++differences;
            }
            EXPECT_EQ(differences, 0) << text << " at " << x << ", " << y;
            pango_font_description_free(description);
            g_object_unref(layout);
        }
        g_object_unref(context);
    }
};

TEST(CardPainter, NeedsRoomForTheWidestValueAndForTheCaption) {
    const Editor editor(3.0);
    const TextPainter painter(3.0);
    const FieldNeeds needs = CardPainter(painter, editor.texts).fieldNeeds(3.0);
    for (const int index : {1, 5, 9}) {
        std::set<std::string> shown;
        for (int i = 0; i <= 2000; ++i) shown.insert(editor.texts.display(index, static_cast<float>(i) / 2000.0F));
        int widest = 0;
        for (const std::string& text : shown) widest = std::max(widest, painter.widthOf(Font::Value, text));
        const auto& [value, caption] = needs[static_cast<std::size_t>(Parameters[index].kind)];
        EXPECT_EQ(value, widest + 15) << index;
        EXPECT_EQ(caption, painter.widthOf(Font::Caption, editor.texts.label(Parameters[index].kind)) + 15) << index;
    }
    EXPECT_NEAR(painter.placeOf(Font::Value, "+6.0 dB", 2), painter.widthOf(Font::Value, "+6"), 3.0);
}

TEST_F(LargePicture, HasTheLengthsAndTheColoursOfTheDesign) {
    // Node 2 at 302.6, 129.8 has the focus. Node 3 at 553.1, 214 is below the pointer.
    show(nodeTarget(1), true, nodeTarget(2));
    expectLines(R"(
262 137 80 right: plot 17.5, band2*0.14 8.5, white 1.5, plot 1.5, band2 14.5, plot 1.5, white 1.5, band2*0.14 9,
    octave 1, plot 14.5;
309 2 432 down: window 10, plot 16.5, sum 1.5, plot 82, decade 1, plot 4, white 1.5, plot 1.5, band2 15.5, plot 1.5,
    white 1.5, band2*0.14 72, zero 0.5, plot 100, decade 1, plot 100.5, window 18;
200 2 432 down: window 10, plot 76.5, sum 1.5, plot 21.5, decade 1, plot 76, band2*0.14 22.5, zero 0.5, plot 100,
    decade 1, plot 100.5, window 18;
332 100 120 down: plot 12.5, decade 1, plot 15.5, band2 1, plot 10.5, band2*0.14 70.5, zero 0.5, plot 5.5;
240 133 130 right: plot 9.5, band2 1, octave 1, plot 34.5, white 1.5, plot 1, band2 6.5, plot 6, band2 6.5, plot 1.5,
    white 1, plot 7.5, octave 1, plot 26.5, band2 1.5, plot 14;
513 221 80 right: plot 28.5, band3*0.6 1.5, plot 1.5, band3 14.5, plot 1.5, band3*0.6 1.5, plot 28.5;
560 174 80 down: plot 28.5, band3*0.6 1.5, plot 1.5, band3 14.5, plot 1.5, band3*0.6 1.5, plot 28.5;
530 217 50 right: plot 9.5, band3*0.6 1.5, plot 1.5, band3 6.5, plot 5, band3 7.5, plot 1, band3*0.6 1, plot 13.5;
22 221 60 right: window 18.5, plot 3.5, band1 14.5, plot 22;
59 174 80 down: plot 32, band1 14.5, plot 32;
0 70 900 right: window 52, plot 48, octave 1, plot 74.5, octave 1, plot 50.5, decade 1, plot 6, sum 2.5, plot 13,
    octave 1, plot 74.5, octave 1, plot 40.5, sum 2.5, plot 29.5, octave 1, plot 74.5, decade 1, plot 74.5, octave 1,
    plot 74.5, octave 1, plot 74.5, octave 1, plot 23.5, decade 1, plot 50.5, octave 1, plot 24, window 36, dark 4,
    window 56; 52 12.4 20 right: window 3, plot 16;
842 0 442 down: window 60, dark 79.5, sum 6, plot 1.5, sum 6, fill 78, dark 171.5, window 38;
824 180 64 right: window 16, fill 4, window 44;
0 447 900 right: window 12, card 196.5, window 6, band2*0.75 1.5, card 193, band2*0.75 1.5, window 6, card 196.5,
    window 6, card 196.5, window 6, card 63.5, window 12; 213 443 20 right: window 4, band2*0.75 14.5;
20 430 70 down: window 12, card 17, band1 10.5, card 17, window 12;
235 430 70 down: window 12, band2*0.75 1.5, card 14.5, band2 12, card 14.5, band2*0.75 1.5, window 12;
12 470 30 right: card 7.5, band1 13, card 8.5;
856 10 35 down: window 3, card 5, band2 7.5, card 5.5, band2 1.5, card 5, window 6;
838 26 36 right: window 5, card 6, band2 1.5, card 9.5, band2 1.5, card 6, window 5;
840 15 34 right: window 4, card 22.5, window 6;
850 22 13 right: card 0.5, band2 1.5, card 1.5, band2 2, card 1.5, band2 1.5, card 1.5;
)");
    expectTexts(R"(
Axis 38 18 1 label window +12; Axis 38 214.17 1 label window 0; Axis 38 410 1 label window -12;
Axis 38 315.17 1 label window -6; Axis 52 426 0.5 label window 20; Axis 227.1 426 0.5 label window 100;
Axis 477.7 426 0.5 label window 1k; Axis 728.2 426 0.5 label window 10k; Axis 803.67 426 0.5 label window 20k;
Axis 100.56 426 0.5 grey window 31; Axis 175.98 426 0.5 grey window 63; Axis 628.53 426 0.5 grey window 4k;
Badge 52 214 0.5 plot band1 1; Badge 26.5 465 0.5 plot band1 1; Axis 860 62 0 grey window +12;
Axis 860 232 0 label window 0; Axis 860 402 0 grey window -12; Caption 43 455.67 0 label card Frequency;
Value 43 473 0 text card 20 Hz; Caption 856 455.67 0.5 label card Master; Value 856 473 0.5 text card +6.0 dB;
)");
    port.values[0] = port.values[5] = 0.75F; // -6 dB and -5 dB
    show(BypassTarget, true, VolumeTarget, true);
    expectLines(R"(
262 137 80 right: plot 17.5, band2*0.04 9, plot 3.5, band2*0.3 14.5, plot 3.5, band2*0.04 9, octave 1, plot 14.5;
309 2 432 down: window 10, plot 100.5, decade 1, plot 7.5, band2*0.3 15.5, plot 3, band2*0.04 71.5, plot 15.5, sum*0.3
    1.5, plot 82, decade 1, plot 100.5, window 18;
824 317 40 right: window 1, white*0.4 1.5, window 2, sum*0.4 6, plot 14, sum*0.4 6, window 2, white*0.4 1.5, window 1.5, window 0.5;
842 200 242 down: dark 32, fill*0.4 74, fill*0.4 2, sum*0.4 6, plot 1.5, sum*0.4 6, dark 2, white*0.4 1.5, dark 75.5,
    window 38; 824 305 64 right: window 16, fill*0.4 4, window 44; 70 205 40 down: plot 6, band2*0.04 1,
    band1*0.04 30.5;
838 26 36 right: window 4, white 1.5, card 5, grey 1.5, card 9.5, grey 1.5, card 5, white 1.5, window 4;
856 10 35 down: window 2, white 1.5, card 4, grey 7.5, card 5.5, grey 1.5, card 4, white 1.5, window 5;
)");
    state.openEntry(2);
    show(VolumeTarget, true, fieldTarget(1));
    expectLines(R"(
30 467 30 right: band1 4.5, card 4, hover 21; 41 460 28 down: card 3, hover 19.5, card 5;
236 467 25 right: band2 1.5, card 3.5, label 1, dark 2.5, select 16;
245.5 460 28 down: card 2.5, label 1, dark 1.5, select 16, dark 1.5, label 1, card 4.5;
842 290 40 down: fill 16, white 1.5, fill 2, sum 6, plot 1.5, sum 6, dark 2, white 1.5, dark 2;
824 446 64 right: sum*0.75 1.5, card 59.5, sum*0.75 1.5;
)");
    state.openEntry(0);
    state.entry->moveTo(0);
    show(BypassTarget, false, BypassTarget);
    expectLines(R"(
824 467 64 right: card 4.5, label 1, dark 3.5, text 1, dark 48.5, label 1, card 4.5;
831 442 46 down: card 20.5, label 0.5, dark 18, label 0.5, card 4.5;
856 10 35 down: window 2, white*0.4 0.5, hover 4, band2 7.5, hover 5.5, band2 1.5, hover 4, white*0.4 0.5, window 5;
)");
    state.entry->insert(std::string(25, '8')); // the cursor stays in view
    state.entry->isInvalid = true;
    show(VolumeTarget, false, {});
    expectLines(R"(
824 467 64 right: sum*0.75 1.5, card 2.5, invalid 1.5, dark 48.5, text 1, dark 1.5, invalid 1.5, card 2.5, sum*0.75
    1.5;
831 442 46 down: sum*0.75 1.5, card 18.5, invalid 1.5, dark 4.5, invalid 2.5, invalid 3.5, dark 4, invalid 1.5, card
    2.5, sum*0.75 1.5; 824 305 64 right: window 16, fill 4, window 44;
)");
}

// The input has extreme sizes of the window, a character that no font has, and values out of range.
TEST(CurvePicture, IsPaintedForExtremeInput) {
    Editor editor;
    editor.port.texts["IDD_Options_Freq"] = "\xF3\xB0\x80\x80\xE0\xA4\x95";
    editor.port.values = {-3, 7, -7, NAN, 2, 5, -5, NAN, 0, 9, -9, NAN, 0};
    editor.model.refresh();
    const EditorTexts odd(editor.port, ',');
    for (const auto& [width, height] : {std::pair{1, 1}, {3000, 2}, {900, 500}}) {
        EditorPainter painter(odd, 44100.0, 1.0);
        EXPECT_TRUE(painter.pixels() == nullptr && painter.bytesPerRow() + painter.width() + painter.height() == 0);
        ASSERT_TRUE(painter.resize(editor.state, width, height));
        EXPECT_EQ(painter.paint(editor.state).front(), editor.state.geometry.layout.window);
    }
}

} // namespace

} // namespace eq
