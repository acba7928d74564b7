#include "curve/model/DisplayScale.h"
#include "curve/model/EditorGeometry.h"
#include "curve/model/KeyControl.h"
#include "curve/model/PointerControl.h"
#include "curve/model/ResponseCurves.h"
#include "parameters/DisplayText.h"
#include "tests/support/EngineInput.h"
#include "tests/support/FakePort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <numbers>

// Tests the editor without a screen. CurveEditorTest.cpp tests the user's gestures.

namespace eq {

namespace {

constexpr FieldNeeds Needs = {FieldNeed{60, 60}, FieldNeed{50, 70}, FieldNeed{60, 30}, FieldNeed{30, 60}};

TEST(ResponseCurves, EqualTheResponseOfTheEngine) {
    const Values values = {-3, 60, 500, 4000, 15000, 9, -7, 5, -10, 1, 2.5F, 10, 5};
    for (const double rate : {44100.0, 96000.0}) {
        FourBandEqualizer engine(rate);
        Samples impulse(1 << 17, 0.0F);
        engine.setParameters(values.data());
        engine.process(impulse.data(), impulse.data(), 2 * BlockSize, FourBandEqualizer::Process); // fades in
        std::ranges::fill(impulse, 0.0F);
        impulse[0] = 1.0F;
        engine.process(impulse.data(), impulse.data(), static_cast<int>(impulse.size()), FourBandEqualizer::Process);

        constexpr int Places = 31;
        ResponseCurves curves(rate);
        curves.resize(Places);
        float array[ParameterCount];
        std::ranges::copy(values, array);
        curves.update(array);
        for (int i = 0; i < Places; ++i) {
            const double hertz = 20.0 * std::pow(1000.0, static_cast<double>(i) / (Places - 1));
            const auto turn = std::polar(1.0, -2.0 * std::numbers::pi * hertz / rate);
            std::complex<double> sum;
            for (auto sample = impulse.rbegin(); sample != impulse.rend(); ++sample)
                sum = sum * turn + static_cast<double>(*sample);
            EXPECT_NEAR(curves.sum()[static_cast<std::size_t>(i)], 20.0 * std::log10(std::abs(sum)), 0.01) << hertz;
        }
    }
}

TEST(EditorLayout, KeepsAllPartsApartAndInsideTheWindow) {
    for (const double scale : {0.75, 1.0, 1.25, 2.0}) {
        for (const auto& [width, height] : {std::pair{1, 1}, {480, 300}, {760, 300}, {900, 500}, {3000, 2000}}) {
            SCOPED_TRACE(testing::Message() << width << "x" << height << " at " << scale);
            const EditorLayout layout =
                layoutOf(static_cast<int>(width * scale), static_cast<int>(height * scale), scale, Needs, true);
            std::vector<Rect> parts(layout.cards.begin(), layout.cards.end());
            parts.insert(parts.end(), {layout.plot, layout.volume, layout.bypass});
            for (std::size_t i = 0; i < parts.size(); ++i) {
                EXPECT_TRUE(parts[i].width > 0 && parts[i].height > 0 && parts[i].x >= 0 && parts[i].y >= 0);
                EXPECT_TRUE(parts[i].right() <= layout.window.width && parts[i].bottom() <= layout.window.height);
                for (std::size_t j = 0; j < i; ++j)
                    EXPECT_TRUE(parts[i].right() <= parts[j].x || parts[j].right() <= parts[i].x ||
                                parts[i].bottom() <= parts[j].y || parts[j].bottom() <= parts[i].y);
            }
            for (int band = 0; band < BandCount; ++band) {
                const Rect& gain = layout.fields[static_cast<std::size_t>(gainIndex(band))];
                const Rect& q = layout.fields[static_cast<std::size_t>(qIndex(band))];
                EXPECT_GE(gain.width, Needs[2].value);
                EXPECT_TRUE(gain.right() <= q.x && q.right() <= layout.cards[static_cast<std::size_t>(band)].right());
            }
        }
    }
}

TEST(PlotAxes, GrowBySixDecibelsAboveTheLargestValue) {
    const auto rangesOf = [](std::vector<double> values) {
        std::ranges::transform(values, values.begin(), decibelRangeFor);
        return values;
    };
    EXPECT_EQ(rangesOf({0, 11.9, 12, 17.9, 18, 52}), (std::vector<double>{12, 12, 18, 18, 24, 54}));
}

TEST(EditorGeometry, FindsTheFocusedOrElseTheNearestNode) {
    FakePort port;
    port.values[1] = port.values[2] - 0.003F; // nodes 1 and 2 are two pixels apart
    EditorModel model(port);
    const EditorGeometry geometry{layoutOf(900, 500, 1, Needs, true)};
    const Point node = geometry.nodeOf(model, 0);
    const auto at = [&](double dx, EditorTarget focus) {
        return geometry.at(static_cast<int>(node.x + dx), static_cast<int>(node.y), model, focus);
    };
    EXPECT_EQ(at(4, VolumeTarget), nodeTarget(0));
    EXPECT_EQ(at(-8, VolumeTarget), nodeTarget(1));
    EXPECT_EQ(at(-8, nodeTarget(0)), nodeTarget(0));
    EXPECT_EQ(at(40, nodeTarget(0)), EditorTarget{});
    const Rect& q = geometry.layout.fields[12];
    EXPECT_EQ(geometry.at(q.x, q.y, model, {}), fieldTarget(12));
}

TEST(EditorTexts, ReadsItsDisplayTextsAndTypedTexts) {
    struct Row {
        int parameter;
        const char* text;
        double value;
    };
    constexpr double None = -1e9;
    FakePort port;
    port.texts = {{"IDS_DB", "дБ"}, {"IDS_Hz", "Гц"}, {"IDS_kHz", "кГц"}, {"IDD_Options_Freq", "Частота"}};
    const EditorTexts russian(port, ',');
    EXPECT_EQ(russian.label(ParameterKind::Frequency), "Частота");
    EXPECT_EQ(russian.label(ParameterKind::Gain), "Gain"); // English, without a translation
    EXPECT_EQ(russian.display(3, 0.4074F), "1,2 кГц");
    EXPECT_EQ(russian.display(5, 0.675F), "-3,5 дБ");
    EXPECT_EQ(russian.display(9, 0.0F), "10,0");
    for (const auto& [parameter, text, value] : {Row{3, "1,2 кГц", 1200},
                                                 {3, "80 Гц", 80},
                                                 {3, "1.2k", 1200},
                                                 {3, " 1200 ", 1200},
                                                 {3, "60Hz", 60},
                                                 {5, "-3,5", -3.5},
                                                 {5, "-3.5 дБ", -3.5},
                                                 {5, "+3dB", 3},
                                                 {9, "1,5", 1.5},
                                                 {0, "99", 99},
                                                 {3, "abc", None},
                                                 {3, "", None},
                                                 {5, "3 Hz", None},
                                                 {9, "3 dB", None},
                                                 {5, "1,2,3", None},
                                                 {5, "inf", None},
                                                 {3, "k", None},
                                                 {5, "3дБдБ", None}}) {
        EXPECT_DOUBLE_EQ(russian.parse(parameter, text).value_or(None), value) << text;
    }
}

TEST(EditorTexts, ShowsTheEffectsDisplayTexts) {
    FakePort port;
    for (const char* const key : {DecibelKey, HertzKey, KilohertzKey}) port.texts[key] = key;
    const EditorTexts texts(port, '.');
    for (int i = 0; i < ParameterCount; ++i) {
        for (int step = -7; step < 20; ++step) {
            const float p = static_cast<float>(step) * 0.07F;
            char shown[DisplayCapacity];
            writeDisplay(Parameters[i], p, shown); // without language files, the text of a unit is its key
            EXPECT_EQ(texts.display(i, p), shown);
        }
    }
}

TEST(TextEntry, EditsWholeCharacters) {
    TextEntry entry(3, "20 Гц");
    entry.moveRight(); // to the end of the selected text
    entry.eraseBefore();
    entry.moveLeft();
    entry.insert("±");
    EXPECT_EQ(entry.text, "20 ±Г");
    entry.eraseAfter();
    entry.eraseAfter();
    EXPECT_EQ(entry.text, "20 ±");
    entry.insert(std::string(40, '9'));
    EXPECT_EQ(entry.text, "20 ±"); // too long
}

/// The state and the controls of an editor in a window of the default size.
class CurveModel : public testing::Test {
protected:
    CurveModel() { state.geometry.layout = layoutOf(900, 500, 1, Needs, false); }
    void press(EditorKey key, std::uint32_t time = 0) { EXPECT_TRUE(keys.press({key, false, time, {}})); }

    FakePort port;
    EditorModel model{port};
    EditorTexts texts{port, '.'};
    EditorState state{model, texts};
    KeyControl keys{state};
    PointerControl pointer{state};
};

TEST_F(CurveModel, UndoesADragOrARunOfStepsAsOneChange) {
    const NormalisedParameters before = port.values;
    pointer.press({52, 214, false, false, 0});
    for (int i = 1; i <= 30; ++i) pointer.move({52 + 2 * i, 214 - i, false, false, 0});
    pointer.release();
    const NormalisedParameters dragged = port.values;
    for (std::uint32_t time = 1000; time <= 1400; time += 100) press(EditorKey::Up, time);
    const NormalisedParameters stepped = port.values;
    press(EditorKey::Up, 5000);
    press(EditorKey::PageUp, 5100);
    EXPECT_TRUE(before != dragged && dragged != stepped);
    press(EditorKey::Undo);
    press(EditorKey::Undo);
    EXPECT_EQ(port.values, stepped);
    press(EditorKey::Undo);
    EXPECT_EQ(port.values, dragged);
    press(EditorKey::Undo);
    press(EditorKey::Undo); // nothing is left to undo
    EXPECT_EQ(port.values, before);
    EXPECT_EQ(port.openGestures, 0);
    EXPECT_FALSE(port.isSetOutsideGesture);
}

TEST_F(CurveModel, IgnoresSmallMovesInAClickAndLimitsADragToTheRange) {
    pointer.press({52, 214, false, false, 0});
    pointer.move({54, 213, false, false, 0});
    pointer.release();
    EXPECT_EQ(port.setCount, 0);
    pointer.press({52, 214, false, false, 1000});
    pointer.move({52, -800, false, false, 1000});
    EXPECT_EQ(port.values[5], 0.0F);
    pointer.move({52, 214, false, false, 1000});
    pointer.release();
    EXPECT_NEAR(port.values[5], 0.5F, 1e-6F);
}

TEST_F(CurveModel, IgnoresAnUnchangedTextAndAnUnreadableText) {
    port.values[1] = 0.12345F; // the text is a rounded value
    model.refresh();
    state.openEntry(1);
    press(EditorKey::Enter);
    EXPECT_FALSE(state.entry);
    state.openEntry(1);
    EXPECT_TRUE(keys.press({EditorKey::Text, false, 0, "x"}));
    press(EditorKey::Enter);
    ASSERT_TRUE(state.entry && state.entry->isInvalid);
    press(EditorKey::Escape);
    EXPECT_EQ(port.setCount, 0);
    state.openEntry(1);
    for (const int next : {5, 9, 2}) {
        press(EditorKey::Tab);
        EXPECT_EQ(state.entry->parameter, next);
    }
}

TEST(EditorTarget, TabVisitsTheBypassOnlyIfThereIsABypass) {
    EXPECT_EQ(nextFocus(VolumeTarget, false, false), nodeTarget(0));
    EXPECT_EQ(nextFocus(VolumeTarget, false, true), BypassTarget);
    EXPECT_EQ(nextFocus(BypassTarget, false, true), nodeTarget(0));
    EXPECT_EQ(nextFocus(nodeTarget(0), true, true), BypassTarget);
    EXPECT_EQ(nextFocus(nodeTarget(0), true, false), VolumeTarget);
}

TEST(DisplayScale, FollowsTheResolutionOfTheFonts) {
    EXPECT_EQ(displayScaleOf("Xft.antialias:\t1\nXft.dpi:\t192\nXcursor.size:\t24\n"), 2.0);
    for (const char* const text : {"", "Xft.dpi:\t", "Xft.dpi: -5", "Xft.dpiX: 192", "x.Xft.dpi: 192"})
        EXPECT_EQ(displayScaleOf(text), 1.0) << text;
    EXPECT_EQ(displayScaleOf("Xft.dpi: 100000"), 4.0);
}

} // namespace

} // namespace eq
