#include "curve/drawing/EditorPainter.h"
#include "tests/support/FakePort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace eq {

namespace {

struct Editor {
    FakePort port;
    EditorModel model{port};
    EditorTexts texts{port, '.'};
    EditorState state{model, texts};
    EditorPainter painter{texts, 44100.0, 1.0};
};

void changeSomething(Editor& editor, std::mt19937& random) {
    const auto pick = [&random](unsigned count) { return static_cast<int>(random() % count); };
    const EditorTarget targets[] = {nodeTarget(pick(4)), VolumeTarget, BypassTarget};
    switch (pick(8)) {
    case 0:
        editor.state.focus = targets[pick(3)];
        break;
    case 1:
        editor.state.hover = pick(2) == 0 ? targets[pick(3)] : fieldTarget(pick(13));
        break;
    case 2:
        editor.state.openEntry(pick(13));
        break;
    case 3:
        if (editor.state.entry) editor.state.entry->insert("7");
        break;
    case 4:
        editor.state.closeEntry();
        break;
    case 5:
        editor.port.isBypassed = pick(2) == 0;
        editor.state.hasKeyboard = pick(2) == 0;
        break;
    default:
        editor.port.values[random() % 13] = static_cast<float>(pick(101)) / 100.0F;
        editor.model.refresh();
    }
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

// The input has extreme sizes of the window, a character that no font has, and values out of range.
TEST(CurvePicture, IsPaintedForExtremeInput) {
    Editor editor;
    editor.port.texts["IDD_Options_Freq"] = "\xF3\xB0\x80\x80\xE0\xA4\x95";
    editor.port.values = {-3, 7, -7, NAN, 2, 5, -5, NAN, 0, 9, -9, NAN, 0};
    editor.model.refresh();
    const EditorTexts odd(editor.port, ',');
    for (const auto& [width, height] : {std::pair{1, 1}, {3000, 2}, {900, 500}}) {
        EditorPainter painter(odd, 44100.0, 1.0);
        ASSERT_TRUE(painter.resize(editor.state, width, height));
        EXPECT_EQ(painter.paint(editor.state).front(), editor.state.geometry.layout.window);
    }
}

} // namespace

} // namespace eq
