#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

// Tests the Linux editor in a window of editor-host. xdotool moves the pointer and presses keys, and the host prints
// the values that it receives.

namespace eq {

namespace {

/// Moves the pointer to the node of band 2 at its default values, in a window of the default size. In this window, the
/// three decades of the frequency axis have 751 pixels, and 24 dB have 404 pixels.
constexpr const char* Node2 = "mousemove 302 214 ";
constexpr double Decades = 751.0;
constexpr double DecibelsPerPixel = 24.0 / 404.0;

using Values = std::map<int, double>;

/// Each function returns the normalised value of a parameter for a value in dB or Hz, or for a Q.
constexpr auto gain = [](double decibels) { return 0.5 - decibels / 20.0; };
constexpr auto volume = [](double decibels) { return 0.5 - decibels / 24.0; };
constexpr auto quality = [](double q) { return (10.0 - q) / 9.0; };
constexpr auto frequency = [](double hertz) { return std::log10(20000.0 / hertz) / 3.0; };

class HostProcess {
public:
    explicit HostProcess(const std::string& options)
        : process("'" EQ_EDITOR_HOST_PATH "' --log " + options + " >'" + log + "' 2>&1") {
        const bool isShown = comesTrue([this] {
            const auto windows = x.children(x.root());
            window = windows.empty() ? 0 : windows.back();
            const auto editors = window != 0 ? x.children(window) : windows;
            return !editors.empty() && x.isShown(editors[0]);
        });
        EXPECT_TRUE(isShown) << said();
    }

    /// Runs xdotool for each command. Semicolons separate the commands. Before keys, waits until the editor has the
    /// keyboard focus.
    void act(const std::string& commands) const {
        std::istringstream stream(commands);
        for (std::string command; std::getline(stream, command, ';');) {
            const bool hasKeys = command.starts_with("key ") || command.starts_with("type ");
            EXPECT_TRUE(!hasKeys || comesTrue([this] { return x.focus() == x.children(window).at(0); }));
            EXPECT_EQ(std::system(("xdotool " + command).c_str()), 0) << command; // NOLINT(*-command-processor)
        }
    }
    [[nodiscard]] std::string said() const {
        std::ostringstream text;
        text << std::ifstream(log).rdbuf();
        return text.str();
    }
    /// Returns the last value that the host received for each parameter.
    [[nodiscard]] Values received() const {
        Values values;
        std::istringstream lines(said());
        for (std::string line; std::getline(lines, line);) {
            int parameter = 0;
            double value = 0.0;
            if (std::sscanf(line.c_str(), "audioMasterAutomate: parameter %d = %lf", &parameter, &value) == 2)
                values[parameter] = value;
        }
        return values;
    }
    [[nodiscard]] bool receives(const Values& expected) const {
        return comesTrue([&] {
            const Values values = received();
            return std::ranges::equal(values, expected, [](const auto& a, const auto& b) {
                return a.first == b.first && std::fabs(a.second - b.second) < 0.0002;
            });
        });
    }

    const TemporaryFolder folder;
    const std::string log = folder.path("log");
    ChildProcess process;
    XClient x;
    xcb_window_t window = 0;
};

struct Gesture {
    const char* name;
    std::string commands;
    Values expected;
    const char* options = "";
};

// Each row starts a new host, in which the first node has the focus.
const std::string TakeKeyboard = "mousemove 400 60 click 1;";
const std::string EditFrequency1 = "mousemove 60 473 click 1;";
const std::string EditGain1 = "mousemove 125 473 click 1;";
const std::string EditVolume = "mousemove 856 473 click 1;";
constexpr double Semitone = 0.0083619; // log10(2) / 12 / 3

const Gesture Gestures[] = {
    {"a node is dragged",
     std::string(Node2) + "mousedown 1 mousemove 340 170 mousemove 377 113 mouseup 1",
     {{2, 2.0 / 3.0 - 75 / Decades}, {6, gain(101 * DecibelsPerPixel)}}},
    {"with Alt, then the wheel",
     std::string(Node2) + "keydown alt mousedown 1 mousemove 350 164 mouseup 1 keyup alt mousemove 553 214 click 4 "
                          "mousemove 803 214 click 5 mousemove 52 214 keydown shift click 5 keyup shift",
     {{9, quality(4.9)}, {10, quality(5 * std::pow(10.0, 50 / (0.75 * 404)))}, {11, quality(5.5)}, {12, quality(4.5)}}},
    {"a double click", "mousemove 302 113 click --repeat 2 --delay 50 1", {{6, 0.5}}, "--set 6=0.2"},
    {"keys",
     TakeKeyboard + "key Right Up Up Down Prior Tab shift+Down shift+Right Next Tab Home Tab End Tab Home Delete",
     {{1, 1 - Semitone},
      {2, 2.0 / 3.0 - Semitone / 5},
      {5, gain(0.5)},
      {6, gain(-0.1)},
      {9, quality(5.5)},
      {10, quality(4.5)},
      {7, 0},
      {8, 1},
      {0, 0.5}}},
    {"keys of the number pad",
     TakeKeyboard + "key KP_Right KP_Up KP_Up KP_Down KP_Prior shift+Tab KP_Up KP_Home KP_End shift+Tab KP_Left "
                    "KP_Next KP_Home KP_Delete",
     {{0, 1}, {1, 1 - Semitone}, {4, Semitone}, {5, gain(0.5)}, {8, 0.5}, {9, quality(5.5)}, {12, quality(4.5)}}},
    {"undo", std::string(Node2) + "mousedown 1 mousemove 377 113 mouseup 1;key ctrl+z", {{2, 2.0 / 3.0}, {6, 0.5}}},
    {"a number is typed and edited",
     EditFrequency1 + "type 1200;key Home Right Left;type 1;key End BackSpace BackSpace KP_Enter;" + EditGain1 +
         "type abc;key Return BackSpace Home Delete Delete;type -- -3,5;key Tab;type 2;key Return;" + EditVolume +
         "type 5;key Escape Up",
     {{0, volume(0.5)}, {1, frequency(112)}, {5, gain(-3.5)}, {9, quality(2)}}},
};

TEST(CurveEditor, SendsTheValuesOfEachGestureToTheHost) {
    const XServer server;
    for (const Gesture& gesture : Gestures) {
        SCOPED_TRACE(gesture.name);
        const HostProcess host(gesture.options);
        host.act(gesture.commands);
        EXPECT_TRUE(host.receives(gesture.expected)) << host.said();
    }
}

TEST(CurveEditor, ReadsKeysInTheUsersKeyboardLayout) {
    const XServer server;
    XServer::useLayouts("us");
    const HostProcess host("");
    // Codes 10 to 12 are the keys of the digits 1 to 3. In the French layout, the digits need Shift.
    host.act(EditFrequency1 + "key 10 11 12 Return");
    EXPECT_TRUE(host.receives({{1, frequency(123)}})) << host.said();
    XServer::useLayouts("fr");
    host.act(EditFrequency1 + "key shift+11 shift+12 Return");
    EXPECT_TRUE(host.receives({{1, frequency(23)}})) << host.said();
}

TEST(CurveEditor, LeavesOtherKeysToTheHost) {
    const XServer server;
    const HostProcess host("");
    host.act(TakeKeyboard + "key a Tab space ctrl+s ctrl+Up alt+Up Up");
    EXPECT_TRUE(host.receives({{6, gain(0.5)}}));
    const auto keys = [&host] {
        std::string codes;
        std::istringstream lines(host.said());
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("key for the host: ")) codes += line.substr(17);
        return codes;
    };
    EXPECT_TRUE(comesTrue([&] { return keys() == " 38 65 37 39 37 111 64 111"; })) << keys();
}

TEST(CurveEditor, FollowsAutomationWithoutChangingAParameter) {
    const XServer server;
    const HostProcess host("--sweep 5 --seconds 2 --screenshot '" + TemporaryFolder().path("no such folder/x") + "'");
    EXPECT_TRUE(comesTrue([&] { return host.said().find("cannot be written") != std::string::npos; }));
    EXPECT_EQ(host.received(), Values{});
}

} // namespace

} // namespace eq
