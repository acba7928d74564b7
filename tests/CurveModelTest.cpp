#include "curve/model/DisplayScale.h"
#include "curve/model/EditorGeometry.h"
#include "curve/model/KeyControl.h"
#include "curve/model/PointerControl.h"
#include "curve/model/ResponseCurves.h"
#include "support/AsciiText.h"
#include "tests/support/EngineInput.h"
#include "tests/support/FakePort.h"
#include "tests/support/LanguageSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <complex>
#include <cstdio>
#include <iomanip>
#include <numbers>
#include <sstream>
#include <tuple>
#include <utility>

// Tests the editor without a screen. CurveEditorTest.cpp tests gestures in a window.

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
        const auto [lowest, highest] = std::ranges::minmax(curves.sum());
        EXPECT_EQ(curves.largest(), std::max(-lowest, highest));
        ASSERT_EQ(curves.band(3).size(), std::size_t{Places});
        EXPECT_NEAR(curves.band(1)[0] + curves.band(3)[0], 0.0, 0.1);      // far from their frequencies
        EXPECT_NEAR(*std::ranges::min_element(curves.band(1)), -7.0, 0.5); // near its frequency
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

TEST(PlotAxes, GrowBySixDecibelsAboveTheLargestValue) {
    constexpr std::pair<double, double> Rows[] = {{0, 12}, {11.9, 12}, {12, 18}, {17.9, 18}, {18, 24}, {52, 54}};
    for (const auto& [largest, range] : Rows) EXPECT_EQ(decibelRangeFor(largest), range);
}

TEST(EditorTexts, ReadsItsDisplayTextsAndTypedTexts) {
    using Row = std::tuple<int, const char*, double>; // the parameter, the text, and the value
    constexpr double None = -1e9;
    FakePort port;
    port.texts = {{"IDS_DB", "дБ"}, {"IDS_Hz", "Гц"}, {"IDS_kHz", "кГц"}, {"IDD_Options_Freq", "Частота"}};
    const EditorTexts russian(port, ',');
    EXPECT_EQ(russian.label(ParameterKind::Frequency), "Частота");
    EXPECT_EQ(russian.label(ParameterKind::Gain), "Gain"); // English, without a translation
    EXPECT_EQ(russian.display(3, 0.4074F), "1,2 кГц");
    EXPECT_EQ(russian.display(5, 0.675F), "-3,5 дБ");
    EXPECT_EQ(russian.display(9, 0.0F), "10,0");
    // clang-format off
    constexpr Row Rows[] = {
        {3, "1,2 кГц", 1200}, {3, "80 Гц", 80}, {3, "1.2k", 1200}, {3, " 1200 ", 1200}, {3, "60Hz", 60},
        {5, "-3,5", -3.5}, {5, "-3.5 дБ", -3.5}, {5, "+3dB", 3}, {9, "1,5", 1.5}, {0, "99", 99}, {3, "abc", None},
        {3, "", None}, {5, "3 Hz", None}, {9, "3 dB", None}, {5, "1,2,3", None}, {5, "inf", None}, {3, "k", None},
        {5, "3дБдБ", None}};
    // clang-format on
    for (const auto& [parameter, text, value] : Rows)
        EXPECT_DOUBLE_EQ(russian.parse(parameter, text).value_or(None), value) << text;
}

TEST(EditorTexts, UseTheDecimalSeparatorOfTheLocale) {
    EnvironmentVariable locale("LC_ALL");
    locale.set("de_DE.UTF-8");
    EXPECT_EQ(userDecimalSeparator(), ',');
    locale.set("C");
    EXPECT_EQ(userDecimalSeparator(), '.');
}

/// An editor with a bypass in a window of the default size with two pixels per unit. Node 2 is at 605, 428, and node 3
/// at 1106, 428. The axes have 1503 pixels for three decades, and 808 pixels for 36 dB. The volume has 680 pixels.
class Hand {
public:
    Hand() { state.geometry = {layoutOf(1800, 1000, 2, Needs, true), 18.0}; }

    /// Performs a gesture, and returns its effects: the values that are no defaults, the focus (@) unless it is node 1,
    /// the part below the pointer (~), the entry with the cursor ([text^byte], * if selected, ! if invalid), a drag
    /// (D), a bypass (B), and the keys that the editor does not use (-). A gesture has these words: press, move: pX,Y
    /// mX,Y    release, leave: r l    wheel: wX,Y,STEPS    time: tMILLISECONDS    Shift, Alt down or up: s a    typed
    /// text, where _ is a blank: 'TEXT    the host sets a value: hINDEX,PERCENT    other keys: NAME
    std::string after(const std::string& gesture) {
        std::istringstream words(gesture);
        PointerInput input;
        std::string unused;
        for (std::string word; words >> word;) {
            int numbers[3] = {};
            std::sscanf(word.c_str() + 1, "%d,%d,%d", &numbers[0], &numbers[1], &numbers[2]);
            if (std::string_view("pmw").find(word[0]) != std::string_view::npos)
                input.x = numbers[0], input.y = numbers[1];
            const char kind = word[0];
            if (kind == 'p') pointer.press(input);
            if (kind == 'm') pointer.move(input);
            if (kind == 'r') pointer.release();
            if (kind == 'l') pointer.leave();
            if (kind == 'w') pointer.wheel(input, numbers[2]);
            if (kind == 't') input.time = static_cast<std::uint32_t>(numbers[0]);
            if (kind == 's') input.shift = !input.shift;
            if (kind == 'a') input.alt = !input.alt;
            if (kind == 'h')
                port.values[static_cast<std::size_t>(numbers[0])] = static_cast<float>(numbers[1]) / 100.0F;
            model.refresh();
            const char* const names[] = {"Other",    "Text", "Tab", "Left",   "Right",     "Up",    "Down",   "PageUp",
                                         "PageDown", "Home", "End", "Delete", "Backspace", "Enter", "Escape", "Undo"};
            const auto* const name = std::ranges::find(names, word);
            KeyInput key = {static_cast<EditorKey>(name - std::begin(names)), input.shift, input.time, ""};
            if (kind == '\'') key.key = EditorKey::Text, key.text = word == "'_" ? " " : word.substr(1);
            const bool isUsed = std::islower(kind) != 0 || keys.press(key);
            if (!isUsed) unused += " -" + word;
        }
        EXPECT_TRUE(port.isOrderly && port.touched.empty() == !state.isDragging) << gesture;
        return effects() + unused;
    }

private:
    [[nodiscard]] std::string effects() const {
        std::ostringstream text;
        text << std::fixed << std::setprecision(4);
        const NormalisedParameters defaults = FakePort().values;
        for (std::size_t i = 0; i < ParameterCount; ++i)
            if (!(std::fabs(port.values[i] - defaults[i]) < 1e-6F)) text << " " << i << "=" << port.values[i];
        const auto name = [](EditorTarget target) {
            return "-nVfB"[static_cast<int>(target.kind)] + std::to_string(target.index);
        };
        if (state.focus != nodeTarget(0)) text << " @" << name(state.focus);
        if (state.hover != EditorTarget{}) text << " ~" << name(state.hover);
        if (state.entry)
            text << " [" << state.entry->text << "^" << state.entry->cursor << (state.entry->isSelected ? "*" : "")
                 << (state.entry->isInvalid ? "!]" : "]");
        return text.str() + (state.isDragging ? " D" : "") + (port.isBypassed ? " B" : "");
    }

    FakePort port;
    EditorModel model{port};
    EditorTexts texts{port, '.'};
    EditorState state{model, texts};
    KeyControl keys{state};
    PointerControl pointer{state};
};

TEST(CurveModel, HasTheEffectsOfEachGesture) {
    // Each row has a gesture and its effects.
    constexpr std::string_view Rows =
        // Keys on a node, on the volume, and on the bypass. A semitone is 0.0084, and 0.5 dB of a gain are 0.025.
        R"(Tab Right s Right : 2=0.6566 @n1; Tab Left s Left : 2=0.6767 @n1; Left :; Up Up Down s Up : 5=0.4700;
Down s Down : 5=0.5300; PageUp s PageDown : 9=0.5111; PageDown s PageUp : 9=0.6000; Home : 5=0.0000; End : 5=1.0000;
h5,20 Delete :; Tab Tab Up Tab PageUp Tab Up s Down : 0=0.4833 7=0.4750 12=0.5000 @V0; s Tab Tab s Home : 0=0.0000 @V0;
s Tab Tab s End : 0=1.0000 @V0; h0,20 s Tab Tab s Delete : @V0; s Tab s Enter : @B0 B; s Tab s '_ : @B0 B;
s Tab s '_ Enter : @B0; s Tab s Tab :; Other 'a Enter Escape Backspace : -Other -'a -Enter -Escape -Backspace;
s Tab Tab Left Right PageUp PageDown Other Enter : @V0 -Left -Right -PageUp -PageDown -Other -Enter;
s Tab Up Home Escape Delete 'a : @B0 -Up -Home -Escape -Delete -'a;)"
        // Steps within 500 ms are one change.
        R"(Up Up t500 Up t1000 Up Undo :; Up t501 Up Undo : 5=0.4750; Up PageUp Undo : 5=0.4750;
t-100 Up t300 Up Undo :; Up Undo Undo :; Up PageUp Undo Up Undo : 5=0.4750; Down Delete Down Undo :;
Up Home Home Undo : 5=0.4750; p605,428 m655,328 r Undo : @n1; p605,428 m605,328 r h2,90 Undo : 2=0.9000 @n1;
Up p605,428 m605,430 r Undo : @n1;)"
        // Drags begin after a movement of 6 pixels, and may leave the range.
        R"(p605,428 m755,226 r : 2=0.5669 6=0.0500 @n1; p605,428 m609,424 : @n1 D; p605,428 m611,428 r : 2=0.6627 @n1;
p605,428 s m755,226 s m754,225 r : 2=0.6474 6=0.4078 @n1; p605,428 m605,-800 s m605,-900 : 6=0.0000 @n1 D;
p605,428 m605,-800 m605,428 r : @n1; p605,428 r m755,226 : @n1; a p605,428 m655,327 r : 10=0.2957 @n1;
a p605,428 s m655,327 r : 10=0.5112 @n1; p1700,500 m1800,568 r : 0=0.6000 @V0;
h0,20 p1700,500 s m1700,568 r : 0=0.2200 @V0; h6,-20 h2,120 p104,226 m304,327 r : 2=0.8669 6=0.2250 @n1;
h10,120 a p605,428 m605,327 r : 10=0.9480 @n1; h0,-20 p1700,500 m1700,568 r : 0=0.1000 @V0;)"
        // Double clicks.
        R"(h0,25 p1700,500 r t400 p1700,500 : @V0; h0,25 p1700,500 r t401 p1700,500 : 0=0.2500 @V0 D;
t-200 p1700,500 r t100 p1700,500 : @V0; h6,40 p605,383 r p605,383 : @n1; p605,428 r p605,428 p605,428 : @n1 D;
p605,428 m612,428 m605,428 r p605,428 : @n1 D; p605,428 m609,428 r p605,428 : @n1; p605,428 r p1106,428 : @n2 D;)"
        // The wheel, and the part below the pointer.
        R"(w1106,428,1 : 11=0.5000 @n2; s w605,428,-2 : 10=0.5778 @n1; w1700,500,1 : 0=0.4792 @V0;
w1700,930,-1 : 0=0.5208 @V0; w490,930,1 : 2=0.6583 @n1; w250,930,1 : 5=0.4750; w350,930,1 : 9=0.5000; w800,120,1 :;
w1712,52,1 :; p605,428 w1700,500,1 : 10=0.5000 @n1 D; a p605,428 w1700,500,1 : @n1 D; p1700,500 w1106,428,1 : @V0 D;
p250,930 w350,930,1 : 9=0.5000; p250,930 w800,120,1 : [+0.0 dB^7*]; m1106,428 : ~n2; m1106,428 l :;
p605,428 m1106,428 : 2=0.3333 @n1 D; m1712,52 : ~B0; m632,428 : ~n1; m633,428 :; m577,428 : ~n1; m576,428 :;
m605,455 : ~n1; m605,456 :; m605,400 : ~n1; m605,399 :; h1,68 m597,428 : 1=0.6800 ~n0;
h1,68 Tab Tab m591,428 : 1=0.6800 @n2 ~n0; h1,68 Tab Tab m598,428 : 1=0.6800 @n2 ~n1; h1,68 m610,428 : 1=0.6800 ~n0;
h1,68 m614,428 : 1=0.6800 ~n1; m1647,500 :; m1648,500 : ~V0; m350,930 : ~f9; m1700,500 : ~V0;)"
        // Read-outs.
        R"(p250,930 : [+0.0 dB^7*]; p250,930 '3 Home p250,930 : [3^1]; p250,930 '3 p350,930 : 5=0.3500 [5.0^3*];
p250,930 'x p1700,930 : @V0 [+0.0 dB^7*]; p250,930 '3 p1712,52 : 5=0.3500 @B0 B; p1712,52 p1712,52 : @B0;
p250,930 '3 p800,120 : 5=0.3500; p250,930 'x p800,120 :; p250,930 '3 Escape :; p250,930 '99 Enter : 5=0.0000;
h1,12 p100,930 Enter : 1=0.1200; p250,930 'x Enter : [x^1!]; p250,930 'x Enter 'y : [xy^2];
p250,930 'x Enter Backspace : [^0]; p250,930 'x Enter Home Delete : [^0];
p100,930 '50 Tab '1 Tab '2 Tab '60 Tab '3 Enter : 1=0.8674 2=0.8410 5=0.4500 6=0.3500 9=0.8889 @n1;
p750,930 '4 Tab '70 Enter : 3=0.8186 10=0.6667 @n2;
p1050,930 '5 Tab '6 Tab '80 Tab '7 Enter : 4=0.7993 7=0.2500 8=0.1500 11=0.4444 @n3;
p1580,930 '8 Tab '9 Tab : 0=0.1250 12=0.2222 [20 Hz^5*]; p250,930 s Tab : [20 Hz^5*]; p100,930 s Tab : @V0 [+0.0 dB^7*];
p1700,930 s Tab Tab Tab Tab : @n2 [5.0^3*]; p250,930 'x Tab : [x^1!]; p250,930 Left : [+0.0 dB^0];
p250,930 Right : [+0.0 dB^7]; p250,930 Home Right Right Delete Backspace : [+0 dB^1];
p250,930 'Гц Left Left 'ж Delete : [жц^2]; p250,930 'Гц Backspace : [Г^2]; p250,930 'Г Home Right : [Г^2];
p250,930 Home Left Backspace : [+0.0 dB^0]; p250,930 End Right Delete : [+0.0 dB^7]; p250,930 Backspace : [^0];
p250,930 Delete : [^0]; p250,930 Home End : [+0.0 dB^7];
p250,930 '12345678901234567890123456789012 : [12345678901234567890123456789012^32];
p250,930 '1 '12345678901234567890123456789012 : [1^1];
p250,930 Up Down PageUp PageDown Other Undo : [+0.0 dB^7*] -Up -Down -PageUp -PageDown -Other -Undo)";
    forEachPiece(Rows, ";", [](std::string_view row) {
        const std::size_t colon = row.find(" :");
        EXPECT_EQ(Hand().after(std::string(row.substr(0, colon))), row.substr(colon + 2)) << row;
    });
    std::string ups;
    for (int i = 0; i < 101; ++i) ups += i % 2 == 0 ? " Up t1000" : " Down t2000";
    for (int i = 0; i < 120; ++i) ups += " Undo"; // the last hundred changes
    EXPECT_EQ(Hand().after(ups), " 5=0.4750");
}

TEST(EditorModel, LimitsOnlyTheLimitedValue) {
    FakePort port;
    for (const auto& [p, limited] : {std::pair(-7.0F, 10.0), {0.5F, 5.5}, {7.0F, 1.0}, {NaN, 1.0}}) {
        port.values[9] = p;
        const EditorModel model(port);
        EXPECT_EQ(model.limitedValue(9), limited);
        EXPECT_TRUE(std::isnan(p) || model.value(9) == 10.0 - 9.0 * static_cast<double>(p));
    }
    EXPECT_FALSE(port.ParameterPort::hasBypass() || port.ParameterPort::bypassed());
    EXPECT_EQ(nextFocus(VolumeTarget, false, false), nodeTarget(0)); // without a bypass
    EXPECT_EQ(nextFocus(nodeTarget(0), true, false), VolumeTarget);
}

TEST(DisplayScale, FollowsTheResolutionOfTheFonts) {
    // clang-format off
    constexpr std::pair<const char*, double> Rows[] = {
        {"Xft.antialias:\t1\nXft.dpi:\t192\nXcursor.size:\t24\n", 2.0}, {"", 1.0}, {"Xft.dpi:\t", 1.0},
        {"Xft.dpi: -5", 1.0}, {"Xft.dpiX: 192", 1.0}, {"x.Xft.dpi: 192", 1.0}, {"Xft.dpi: 0", 1.0},
        {"Xft.dpi: 24", 0.75}, {"Xft.dpi: 100000", 4.0}};
    // clang-format on
    for (const auto& [text, scale] : Rows) EXPECT_EQ(displayScaleOf(text), scale) << text;
}

} // namespace

} // namespace eq
