#include "curve/model/DisplayScale.h"
#include "curve/model/EditorGeometry.h"
#include "curve/model/KeyControl.h"
#include "curve/model/PointerControl.h"
#include "curve/model/ResponseCurves.h"
#include "parameters/DisplayText.h"
#include "tests/support/EngineInput.h"
#include "tests/support/FakePort.h"
#include "tests/support/LanguageSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <complex>
#include <numbers>
#include <numeric>
#include <random>
#include <sstream>
#include <tuple>
#include <utility>

// Tests the editor without a screen. CurveEditorTest.cpp tests gestures in a window.

namespace eq {

namespace {

/// Returns a random number from `low` to `high`.
int pick(std::mt19937& random, int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
}

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

TEST(ResponseCurves, AreTheCurvesOfTheBandsAndTheirSumAfterAnyChanges) {
    std::mt19937 random(5);
    ResponseCurves curves(48000.0);
    curves.resize(1); // becomes the least number of positions
    EXPECT_EQ(curves.sum().size(), 2U);
    curves.resize(9);
    float values[ParameterCount] = {0, 20, 200, 2000, 20000, 0, 0, 0, 0, 5, 5, 5, 5};
    for (int turn = 0; turn < 200; ++turn) {
        curves.update(values);
        std::vector<double> sum(9, static_cast<double>(values[0]));
        for (int band = 0; band < BandCount; ++band) {
            float single[ParameterCount] = {0, 99, 99, 99, 99, 0, 0, 0, 0, 9, 9, 9, 9};
            for (const int index : {frequencyIndex(band), gainIndex(band), qIndex(band)}) single[index] = values[index];
            ResponseCurves fresh(48000.0);
            fresh.resize(9);
            fresh.update(single);
            for (std::size_t i = 0; i < 9; ++i) EXPECT_NEAR(curves.band(band)[i], fresh.sum()[i], 1e-9);
            std::ranges::transform(sum, fresh.sum(), sum.begin(), std::plus());
        }
        for (std::size_t i = 0; i < 9; ++i) EXPECT_NEAR(curves.sum()[i], sum[i], 1e-9);
        EXPECT_NEAR(curves.largest(), std::max(std::ranges::max(sum), -std::ranges::min(sum)), 1e-9);
        const auto changed = static_cast<std::size_t>(pick(random, 0, ParameterCount - 1));
        if (const float value = randomValues(random)[changed]; !std::isnan(value)) values[changed] = value;
    }
}

TEST(EditorLayout, HasTheLengthsOfTheDesign) {
    const auto partsOf = [](const EditorLayout& l) {
        std::ostringstream text;
        for (const Rect& r : {l.window, l.graph, l.plot, l.volume, l.track, l.bypass, l.cards[0], l.cards[1],
                              l.cards[2], l.cards[3], l.cards[4], l.fields[0], l.fields[1], l.fields[5], l.fields[9]})
            text << r.x << " " << r.y << " " << r.width << " " << r.height << ", ";
        return text.str();
    };
    // In the cards of the first window, the captions have 31 of the missing 50 pixels.
    EXPECT_EQ(partsOf(layoutOf(900, 500, 1, Needs, false)),
              "0 0 900 500, 2 2 816 432, 52 12 752 404, 824 12 64 422, 824 26 64 376, 0 0 0 0, 12 442 197 46, "
              "215 442 197 46, 418 442 197 46, 621 442 197 46, 824 442 64 46, 824 442 64 46, 38 442 62 46, "
              "100 442 60 46, 160 442 49 46, ");
    EXPECT_EQ(partsOf(layoutOf(0, 0, 2, Needs, true)),
              "0 0 960 600, 4 4 792 360, 104 24 664 304, 808 96 128 268, 808 124 128 176, 844 24 56 56, "
              "24 380 380 92, 416 380 380 92, 24 484 380 92, 416 484 380 92, 808 380 128 196, 808 380 128 196, "
              "76 380 116 92, 192 380 106 92, 298 380 106 92, ");
    EXPECT_EQ(layoutOf(833, 500, 1, Needs, true).cards[0].y, 390); // the cards have two rows
    EXPECT_EQ(layoutOf(834, 500, 1, Needs, true).cards[0].y, 442);
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

TEST(EditorGeometry, FindsTheFocusedOrElseTheNearestNodeAndThenTheOtherParts) {
    std::mt19937 random(9);
    FakePort port;
    EditorModel model(port);
    int found[5] = {};
    for (int turn = 0; turn < 6000; ++turn) {
        for (std::size_t i = 1; i < 9; ++i) port.values[i] = static_cast<float>(pick(random, -1, 11)) / 10.0F;
        for (const std::size_t i : {2U, 6U}) port.values[i] = port.values[i - 1] + 0.01F; // nodes 1 and 2 overlap
        model.refresh();
        const double scale = turn % 2 == 0 ? 1.0 : 1.5;
        const EditorGeometry geometry{layoutOf(900, 500, scale, Needs, true), 18.0};
        const auto& [plot, volume, bypass, fields] =
            std::tie(geometry.layout.plot, geometry.layout.volume, geometry.layout.bypass, geometry.layout.fields);
        const Point around = geometry.nodeOf(model, pick(random, 0, 3));
        const bool isNear = turn % 3 != 0;
        const int x = isNear ? static_cast<int>(around.x) + pick(random, -30, 30) : pick(random, 0, 899);
        const int y = isNear ? static_cast<int>(around.y) + pick(random, -30, 30) : pick(random, 0, 499);
        const int focus = pick(random, 0, 5);
        EditorTarget expected = bypass.contains(x, y)   ? BypassTarget
                                : volume.contains(x, y) ? VolumeTarget
                                                        : EditorTarget{};
        const auto* const field = std::ranges::find_if(fields, [&](const Rect& r) { return r.contains(x, y); });
        if (field != fields.end() && expected == EditorTarget{})
            expected = fieldTarget(static_cast<int>(field - fields.begin()));
        double least = 14.0 * scale;
        for (std::size_t band = 0; band < BandCount; ++band) {
            const double right = std::clamp(port.values[1 + band], 0.0F, 1.0F); // a part of the width
            const double decibels = 10.0 - 20.0 * std::clamp(port.values[5 + band], 0.0F, 1.0F);
            const double distance = std::hypot(x + 0.5 - (plot.x + (plot.width - 1) * (1.0 - right)),
                                               y + 0.5 - (plot.y + plot.height * (18.0 - decibels) / 36.0));
            const bool isFocus = static_cast<int>(band) == focus;
            if (distance > (isFocus ? 14.0 * scale : least)) continue;
            least = isFocus ? -1.0 : distance;
            expected = nodeTarget(static_cast<int>(band));
        }
        EXPECT_EQ(geometry.at(x, y, model, nodeTarget(focus)), expected) << x << ", " << y << ", focus " << focus;
        ++found[static_cast<int>(expected.kind)];
    }
    EXPECT_GT(std::ranges::min(found), 5);
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

TEST(EditorTexts, UseTheDecimalSeparatorOfTheLocale) {
    EnvironmentVariable locale("LC_ALL");
    locale.set("de_DE.UTF-8");
    EXPECT_EQ(userDecimalSeparator(), ',');
    locale.set("C");
    EXPECT_EQ(userDecimalSeparator(), '.');
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

/// The state and the controls of an editor in a window of the default size.
class CurveModel : public testing::Test {
protected:
    CurveModel() { state.geometry.layout = layoutOf(900, 500, 1, Needs, true); }
    bool press(EditorKey key, bool shift = false, const std::string& text = "") {
        return keys.press({key, shift, 0, text});
    }
    void type(const std::string& text) { EXPECT_TRUE(press(EditorKey::Text, false, text)); }
    /// Sets the normalised values in the port, as the host does.
    void hostSets(const NormalisedParameters& values) {
        port.values = values;
        model.refresh();
    }
    void hostSets(std::size_t index, float p) {
        port.values[index] = p;
        model.refresh();
    }
    void expect(const NormalisedParameters& values, const testing::Message& message) const {
        for (std::size_t i = 0; i < ParameterCount; ++i)
            EXPECT_NEAR(port.values[i], values[i], 1e-5) << message << ", parameter " << i;
    }

    const NormalisedParameters defaults = FakePort().values;
    FakePort port;
    EditorModel model{port};
    EditorTexts texts{port, '.'};
    EditorState state{model, texts};
    KeyControl keys{state};
    PointerControl pointer{state};
};

TEST_F(CurveModel, ChangesOneValueWithEachKeyAndLeavesTheOtherKeysToTheHost) {
    struct Row {
        EditorKey key;
        int index;     ///< of the parameter of the first band; 0 if the key has no effect on a node
        bool onVolume; ///< the key also changes the volume
        int steps;
        float end; ///< the normalised value, if there are no steps
    };
    using enum EditorKey;
    for (const auto& [key, firstIndex, onVolume, steps, end] : {Row{Left, 1, false, -1, 0},
                                                                {Right, 1, false, 1, 0},
                                                                {Up, 5, true, 1, 0},
                                                                {Down, 5, true, -1, 0},
                                                                {PageUp, 9, false, 1, 0},
                                                                {PageDown, 9, false, -1, 0},
                                                                {Home, 5, true, 0, 0},
                                                                {End, 5, true, 0, 1},
                                                                {Delete, 5, true, 0, 0.5F},
                                                                {Other, 0, false, 0, 0},
                                                                {Text, 0, false, 0, 0},
                                                                {Backspace, 0, false, 0, 0},
                                                                {Enter, 0, false, 0, 0},
                                                                {Escape, 0, false, 0, 0}}) {
        for (int place = 0; place < 12; ++place) {
            const bool isFine = place % 2 != 0;
            const int band = place / 2; // 4 is the volume, and 5 is the bypass
            NormalisedParameters expected;
            expected.fill(0.3F);
            hostSets(expected);
            port.isBypassed = false;
            state.focus = band < 4 ? nodeTarget(band) : band == 4 ? VolumeTarget : BypassTarget;
            const bool isUsed = firstIndex > 0 && (band < 4 || (band == 4 && onVolume));
            const bool isBypassKey = band == 5 && key == Enter;
            const int index = band == 4 ? 0 : firstIndex + band;
            const double span = index == 0 ? 24.0 : index < 5 ? std::log2(1000.0) * 6.0 : index < 9 ? 20.0 : 9.0;
            const double step = (isFine ? 0.1 : 0.5) / span; // half of a sixth of an octave is a semitone
            float& p = expected[static_cast<std::size_t>(isUsed ? index : 0)];
            if (isUsed) p = steps == 0 ? end : p - static_cast<float>(steps * step);
            EXPECT_EQ(press(key, isFine, "a"), isUsed || isBypassKey);
            EXPECT_EQ(port.isBypassed, isBypassKey);
            expect(expected, testing::Message() << "band " << band << ", key " << static_cast<int>(key));
        }
    }
    EXPECT_TRUE(press(Text, false, " ") && port.isBypassed);
    EXPECT_TRUE(press(Enter) && !port.isBypassed);
}

TEST_F(CurveModel, UndoesTheLastHundredChangesAndMergesFastSteps) {
    std::mt19937 random(3);
    std::vector<NormalisedParameters> snapshots; // before each change that can be undone
    int lastStep = -1;
    std::uint32_t lastTime = 0;
    std::uint32_t time = 0U - 20000U; // wraps around
    for (int turn = 0; turn < 900; ++turn) {
        const NormalisedParameters before = port.values;
        const int index = pick(random, 0, 3) == 0 ? 9 : 5;
        const double value = pick(random, 1, 5);
        const int action = turn < 700 ? pick(random, 0, 15) : 0;
        time += static_cast<std::uint32_t>(pick(random, 0, 2) * 250 + pick(random, 0, 1));
        const bool isMerged = action > 2 && lastStep == index && time - lastTime <= 500;
        if (action == 0) {
            EXPECT_TRUE(press(EditorKey::Undo));
            EXPECT_EQ(port.values, snapshots.empty() ? before : snapshots.back());
            if (!snapshots.empty()) snapshots.pop_back();
            lastStep = -1;
            continue;
        }
        if (action == 1) {
            model.beginDrag({2, 5});
            for (int i = 0; i < 3; ++i) model.change(i % 2 == 0 ? 5 : 2, value + i);
            model.endDrag();
        } else if (action == 2) {
            model.enter(index, value);
        } else {
            model.step(index, value, time);
        }
        if (port.values == before) continue;
        lastStep = action > 2 ? index : -1;
        lastTime = time;
        if (!isMerged) snapshots.push_back(before);
        if (snapshots.size() > 100) snapshots.erase(snapshots.begin());
    }
    EXPECT_TRUE(snapshots.empty());
}

TEST_F(CurveModel, EnclosesEachChangeInAGestureAndChangesOnlyTheUsersParameters) {
    model.beginDrag({2, 6});
    for (int i = 0; i < 2; ++i) model.change(6, 3.0);
    model.endDrag();
    for (const double value : {99.0, 10.0}) model.enter(9, value); // both are the highest value
    model.step(0, NAN, 0);
    EXPECT_EQ(port.calls, "(2(6=6)2)6(9=9)9(0=0)0");
    EXPECT_TRUE(port.values[9] == 0.0F && model.limitedValue(0) == -12.0);
    hostSets(2, 0.9F);
    for (int i = 0; i < 3; ++i) model.undo();
    EXPECT_EQ(port.values[2], 0.9F);
    EXPECT_EQ(port.calls, "(2(6=6)2)6(9=9)9(0=0)0(0=0)0(9=9)9(6=6)6");
    for (const auto& [p, limited] : {std::pair(-7.0F, 10.0), {0.5F, 5.5}, {7.0F, 1.0}, {NAN, 1.0}}) {
        hostSets(9, p);
        EXPECT_EQ(model.limitedValue(9), limited);
    }
    EXPECT_TRUE(std::isnan(model.value(9)));
}

TEST_F(CurveModel, MovesADraggedValueByTheSumOfTheMovements) {
    std::mt19937 random(11);
    for (std::uint32_t turn = 0; turn < 120; ++turn) {
        const int band = pick(random, 0, 3);
        const bool isNode = turn % 3 == 0;
        const bool isQ = turn % 3 == 1; // or the volume
        const double scale = turn % 2 == 0 ? 1.0 : 2.0;
        const EditorLayout layout = layoutOf(1800, 1000, scale, Needs, true);
        state.geometry = {layout, turn % 4 < 2 ? 12.0 : 24.0};
        state.focus = nodeTarget(band);
        NormalisedParameters expected;
        for (float& p : expected) p = static_cast<float>(pick(random, 0, 100)) / 100.0F;
        hostSets(expected);
        float& across = expected[static_cast<std::size_t>(frequencyIndex(band))];
        float& upright = expected[static_cast<std::size_t>(isNode ? gainIndex(band) : isQ ? qIndex(band) : 0)];
        double x = across; // x and y may leave the range
        double y = isQ ? 1.0 - std::log10(10.0 - 9.0 * upright) : upright;
        const double height = isNode ? layout.plot.height * 10.0 / state.geometry.range
                              : isQ  ? layout.plot.height * 0.75
                                     : layout.track.height;
        const Point node = state.geometry.nodeOf(model, band);
        PointerInput first = {static_cast<int>(node.x), static_cast<int>(node.y), false, isQ, turn * 1000};
        if (!isNode && !isQ) first.x = layout.volume.x;
        port.calls.clear();
        pointer.press(first);
        PointerInput last = first;
        bool hasMoved = false;
        for (int i = 0; i < 12; ++i) {
            PointerInput next = last;
            const int most = i < 4 ? 2 : pick(random, 0, 1) * 150;
            next.x += pick(random, -most, most);
            next.y += pick(random, 0, 2) == 0 ? 0 : pick(random, -most, most);
            next.shift = pick(random, 0, 1) == 0;
            pointer.move(next);
            hasMoved = hasMoved || std::hypot(next.x - first.x, next.y - first.y) >= 3.0 * scale;
            const double part = !hasMoved ? 0.0 : next.shift ? 0.2 : 1.0;
            x -= (next.x - last.x) * part / (layout.plot.width - 1);
            y += (next.y - last.y) * part / height;
            const double p = isQ ? (10.0 - std::pow(10.0, 1.0 - y)) / 9.0 : y;
            if (isNode && hasMoved && next.x != last.x) across = static_cast<float>(std::clamp(x, 0.0, 1.0));
            if (hasMoved && next.y != last.y) upright = static_cast<float>(std::clamp(p, 0.0, 1.0));
            if (hasMoved) last = next;
            expect(expected, testing::Message() << "turn " << turn << ", step " << i);
        }
        EXPECT_TRUE(state.isDragging);
        pointer.release();
        EXPECT_FALSE(state.isDragging);
        const std::string one = std::to_string(isNode ? frequencyIndex(band) : isQ ? qIndex(band) : 0);
        const std::string two = isNode ? std::to_string(gainIndex(band)) : "";
        EXPECT_TRUE(port.calls.starts_with("(" + one + (isNode ? "(" : "") + two)) << port.calls;
        EXPECT_TRUE(port.calls.ends_with(")" + one + (isNode ? ")" : "") + two)) << port.calls;
    }
}

TEST_F(CurveModel, ResetsAValueByADoubleClickWithoutAMovement) {
    struct Press {
        std::uint32_t time;
        int move;    ///< the distance by which the pointer moves, and returns, before the release
        bool isDrag; ///< false for the second click of a double click
    };
    for (const auto& [time, move, isDrag] : {Press{0, 0, true},
                                             {400, 0, false},
                                             {500, 0, true},
                                             {901, 0, true},
                                             {1000, 0, false},
                                             {2000, 4, true},
                                             {2100, 2, true},
                                             {2200, 0, false}}) {
        const std::uint32_t wrapped = time - 200;
        pointer.press({302, 214, false, false, wrapped});
        EXPECT_EQ(state.isDragging, isDrag) << time;
        for (const int x : {302 + move, 302}) pointer.move({x, 214, false, false, wrapped});
        pointer.release();
    }
    for (const auto& [x, y, index] : {std::tuple(302, 130, 6U), {842, 100, 0U}}) {
        hostSets(index, 0.25F);
        for (const std::uint32_t time : {5000U, 5100U}) pointer.press({x, y, false, false, time});
        EXPECT_EQ(port.values[index], 0.5F);
        EXPECT_EQ(state.focus, focusOfParameter(static_cast<int>(index)));
    }
}

TEST_F(CurveModel, TurnsTheWheelOnANodeTheVolumeOrAReadOut) {
    struct Row {
        int x, y, index; ///< the changed parameter, or -1
        EditorTarget target, focus;
    };
    const Row rows[] = {{553, 214, 11, nodeTarget(2), nodeTarget(2)},
                        {300, 220, 10, nodeTarget(1), nodeTarget(1)},
                        {842, 200, 0, VolumeTarget, VolumeTarget},
                        {856, 460, 0, fieldTarget(0), VolumeTarget},
                        {450, 460, 3, fieldTarget(3), nodeTarget(2)},
                        {125, 460, 5, fieldTarget(5), nodeTarget(0)},
                        {400, 60, -1, {}, BypassTarget},
                        {856, 26, -1, BypassTarget, BypassTarget}};
    for (const auto& [x, y, index, target, focus] : rows) {
        for (const int steps : {1, -2}) {
            hostSets(defaults);
            state.focus = BypassTarget;
            pointer.move({x, y});
            EXPECT_EQ(state.hover, target);
            state.entry.emplace(9, "1");
            pointer.wheel({x, y, steps < 0}, steps);
            EXPECT_EQ(state.entry.has_value(), index < 0);
            EXPECT_EQ(state.focus, focus);
            NormalisedParameters expected = defaults;
            const double span = index == 0 ? 24 : index == 3 ? std::log2(1000.0) * 6 : index == 5 ? 20 : 9;
            const double change = steps > 0 ? 0.5 : -0.2; // two fine steps down
            if (index >= 0) expected[static_cast<std::size_t>(index)] -= static_cast<float>(change / span);
            expect(expected, testing::Message() << x << ", " << y);
            pointer.leave();
            EXPECT_EQ(state.hover, EditorTarget{});
        }
    }
    for (const bool isAlt : {false, true}) { // during a drag, the wheel changes the dragged node
        hostSets(defaults);
        pointer.press({302, 214, false, isAlt, isAlt ? 9000U : 0U});
        pointer.move({302, 215, false, isAlt, 0});
        pointer.wheel({553, 214}, 1);
        pointer.release();
        EXPECT_TRUE(port.values[10] < 0.53F && port.values[11] == defaults[11] && state.hover == EditorTarget{});
    }
    pointer.press({842, 200});
    pointer.wheel({553, 214}, 1);
    EXPECT_EQ(state.focus, nodeTarget(2));
}

TEST_F(CurveModel, OpensAndTakesAReadOutByClicks) {
    pointer.press({125, 460});
    ASSERT_TRUE(state.entry && state.entry->parameter == 5 && state.entry->isSelected && !state.isDragging);
    type("3");
    EXPECT_TRUE(press(EditorKey::Home));
    pointer.press({125, 460}); // moves the cursor to the end
    EXPECT_EQ(state.entry->cursor, 1U);
    pointer.press({185, 460}); // applies the value, and opens the next read-out
    EXPECT_TRUE(port.values[5] == 0.35F && state.entry->parameter == 9);
    type("x");
    pointer.press({856, 460}); // drops the text
    EXPECT_TRUE(port.values[9] == defaults[9] && state.entry->parameter == 0 && state.focus == VolumeTarget);
    type("-6");
    pointer.press({856, 26});
    EXPECT_TRUE(port.values[0] == 0.75F && !state.entry && state.focus == BypassTarget && port.isBypassed);
    pointer.press({856, 26});
    EXPECT_FALSE(port.isBypassed);
}

TEST_F(CurveModel, EditsTheTextOfAReadOutByWholeCharacters) {
    std::mt19937 random(13);
    using enum EditorKey;
    constexpr EditorKey Keys[] = {Text, Text, Text,   Text,      Text, Text,     Left, Right,
                                  Home, End,  Delete, Backspace, Up,   PageDown, Undo, Other};
    for (int turn = 0; turn < 60; ++turn) {
        state.openEntry(pick(random, 0, ParameterCount - 1));
        std::vector<std::string> text; // its characters
        for (const char c : state.entry->text) text.emplace_back(1, c);
        std::size_t cursor = text.size();
        bool isSelected = true;
        for (int i = 0; i < 60; ++i) {
            const EditorKey key = Keys[random() % std::size(Keys)];
            const std::string typed = std::array{"7", "Г", "±", "𝄞", "."}[random() % 5];
            const bool isEdit = key == Text || key == Delete || key == Backspace;
            const bool isUsed = isEdit || key == Left || key == Right || key == Home || key == End;
            const bool hadSelection = isSelected;
            isSelected = hadSelection && !isUsed;
            if (hadSelection && isEdit) text.clear();
            cursor = std::min(cursor, text.size());
            const auto place = text.begin() + static_cast<std::ptrdiff_t>(cursor);
            const bool isTooLong = key == Text && std::accumulate(text.begin(), text.end(), typed).size() > 32;
            if (key == Text && !isTooLong) text.insert(place, typed), ++cursor;
            if (key == Backspace && cursor > 0) text.erase(place - 1), --cursor;
            if (key == Delete && !hadSelection && cursor < text.size()) text.erase(place);
            if (key == Home || (key == Left && hadSelection)) cursor = 0;
            if (key == End || (key == Right && hadSelection)) cursor = text.size();
            if (key == Left && cursor > 0) --cursor;
            if (key == Right && cursor < text.size()) ++cursor;
            state.entry->isInvalid = true;
            EXPECT_EQ(press(key, false, typed), isUsed);
            TextEntry expected(state.entry->parameter, std::accumulate(text.begin(), text.end(), std::string()));
            const auto end = text.begin() + static_cast<std::ptrdiff_t>(cursor);
            expected.cursor = std::accumulate(text.begin(), end, std::string()).size();
            expected.isSelected = isSelected;
            expected.isInvalid = !isEdit || isTooLong;
            ASSERT_EQ(*state.entry, expected) << state.entry->text << ", " << expected.text;
        }
    }
}

TEST_F(CurveModel, IgnoresAnUnchangedTextAndAnUnreadableText) {
    hostSets(1, 0.12345F); // the text is a rounded value
    state.openEntry(1);
    EXPECT_TRUE(press(EditorKey::Enter) && !state.entry);
    state.openEntry(1);
    type("x");
    EXPECT_TRUE(press(EditorKey::Enter));
    ASSERT_TRUE(state.entry && state.entry->isInvalid);
    EXPECT_TRUE(press(EditorKey::Escape) && !state.entry);
    EXPECT_EQ(port.calls, "");
}

TEST_F(CurveModel, TabVisitsAllReadOutsOrTheNodesTheVolumeAndTheBypass) {
    state.openEntry(1);
    for (const int next : {5, 9, 2, 6, 10, 3, 7, 11, 4, 8, 12, 0, 1}) {
        const int last = state.entry->parameter;
        EXPECT_TRUE(press(EditorKey::Tab) && state.entry->parameter == next);
        EXPECT_TRUE(press(EditorKey::Tab, true) && state.entry->parameter == last);
        state.openEntry(next);
    }
    state.closeEntry();
    for (const EditorTarget next :
         {nodeTarget(1), nodeTarget(2), nodeTarget(3), VolumeTarget, BypassTarget, nodeTarget(0)}) {
        const EditorTarget last = state.focus;
        EXPECT_TRUE(press(EditorKey::Tab) && state.focus == next);
        EXPECT_TRUE(press(EditorKey::Tab, true) && state.focus == last);
        state.focus = next;
    }
    EXPECT_EQ(nextFocus(VolumeTarget, false, false), nodeTarget(0)); // without a bypass
    EXPECT_EQ(nextFocus(nodeTarget(0), true, false), VolumeTarget);
}

TEST(DisplayScale, FollowsTheResolutionOfTheFonts) {
    EXPECT_EQ(displayScaleOf("Xft.antialias:\t1\nXft.dpi:\t192\nXcursor.size:\t24\n"), 2.0);
    for (const char* const text : {"", "Xft.dpi:\t", "Xft.dpi: -5", "Xft.dpiX: 192", "x.Xft.dpi: 192"})
        EXPECT_EQ(displayScaleOf(text), 1.0) << text;
    EXPECT_EQ(displayScaleOf("Xft.dpi: 0"), 1.0);
    EXPECT_EQ(displayScaleOf("Xft.dpi: 24"), 0.75);
    EXPECT_EQ(displayScaleOf("Xft.dpi: 100000"), 4.0);
}

} // namespace

} // namespace eq
