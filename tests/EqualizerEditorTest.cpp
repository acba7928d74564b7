#include "plugin/base/AEffect.h"

#include "platform/SystemHandles.h"
#include "platform/win32.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/HostedEffect.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/TestWindows.h"
#include "tests/support/Threads.h"

#ifdef _WIN32
#include "tests/support/LoadedLibrary.h"
#else
#include "platform/desktop/TestHooks.h"
#include "plugin/ParametricEqualizer.h"
#include "tests/support/LanguageSettings.h"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

// Calls the editor through the effect's record, as a host does. On Windows the record belongs to the built library.
// On Linux the effect is in this program, because only this program sees the windows of its stand-in for Win32.

namespace eq {

namespace {

// The index is the number of the parameter.
constexpr std::array<int, 13> SliderIds = {1012, 1014, 1016, 1018, 1023, 1020, 1022,
                                           1029, 1033, 1044, 1046, 1048, 1050};
constexpr std::array<int, 13> ReadoutIds = {1013, 1015, 1017, 1019, 1024, 1021, 1025,
                                            1030, 1034, 1045, 1047, 1049, 1051};
const std::vector<int> DefaultPositions = {50, 100, 66, 33, 0, 50, 50, 50, 50, 55, 55, 55, 55};

constexpr std::size_t Volume = 0, Frequency3 = 3, Gain1 = 5;

AEffect* makeEffect(audioMasterCallback callback) {
#ifdef _WIN32
    static const LoadedLibrary library(EQ_LIBRARY_PATH);
    return library.find<EffectMainProc>("main")(callback);
#else
    return (new ParametricEqualizer(callback))->getAeffect();
#endif
}

/// An effect, with functions that call its editor as a host does.
struct EditedEffect : HostedEffect {
    explicit EditedEffect(audioMasterCallback host = ScriptedHost::callback) : HostedEffect(makeEffect(host)) {}

    /// Opens the editor in `parent`, and returns the dialog.
    HWND open(HWND parent) const {
        EXPECT_EQ(dispatch(effEditOpen, parent), 1);
        return GetWindow(parent, GW_CHILD);
    }
    void idle() const { dispatch(effEditIdle); }
};

class Editor : public testing::Test {
protected:
    Editor() { open(ScriptedHost::callback); }

    void open(audioMasterCallback callback) {
        readyCommonControls();
        effect = std::make_unique<EditedEffect>(callback);
        dialog = effect->open(window.get());
        EXPECT_NE(dialog, nullptr);
    }

    HWND slider(std::size_t parameter) const { return GetDlgItem(dialog, SliderIds[parameter]); }
    std::wstring readout(std::size_t parameter) const { return textOf(GetDlgItem(dialog, ReadoutIds[parameter])); }
    int position(std::size_t parameter) const {
        return static_cast<int>(SendMessageW(slider(parameter), TBM_GETPOS, 0, 0));
    }
    std::vector<int> positions() const {
        std::vector<int> all;
        for (std::size_t i = 0; i < 13; ++i) all.push_back(position(i));
        return all;
    }
    /// Moves a slider as a user does, and sends a scroll message with the code.
    void scroll(std::size_t parameter, int pos, unsigned code, UINT message = WM_VSCROLL) const {
        SendMessageW(slider(parameter), TBM_SETPOS, TRUE, pos);
        SendMessageW(dialog, message, MAKEWPARAM(code, pos), reinterpret_cast<LPARAM>(slider(parameter)));
    }
    /// Adds the buttons that a dialog may lack.
    void addButtons() const {
        for (const int id : {1004, 1005, 1006})
            CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 9, 9, dialog,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    }
    void click(int id, unsigned notification = 0) const {
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, notification),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
    }
    /// Returns the changes that the host has received since the last call, as (parameter, value).
    std::vector<std::pair<int, float>> automations() {
        std::vector<std::pair<int, float>> found;
        for (; callsSeen < host.calls().size(); ++callsSeen) {
            const HostCall& call = host.calls()[callsSeen];
            if (call.opcode == audioMasterAutomate) found.emplace_back(call.index, call.opt);
        }
        return found;
    }

    using Automations = std::vector<std::pair<int, float>>;

    ScriptedHost host{2400};
    Window window{makeHostWindow()};
    std::unique_ptr<EditedEffect> effect;
    HWND dialog = nullptr;
    std::size_t callsSeen = 0;
};

TEST_F(Editor, OpensWithTheEffectsValuesInTheReportedSizeAndChangesNothing) {
    // The update flag is set, but the editor has nothing to update.
    effect->set(2, effect->get(2));
    effect->idle();
    EXPECT_EQ(positions(), DefaultPositions);
    EXPECT_EQ(automations(), Automations{});
    EXPECT_EQ(effect->get(2), 2.0f / 3.0f);
    EXPECT_EQ(readout(Volume) + readout(1) + readout(Frequency3) + readout(12), L"+0.0 dB20 Hz2.0 kHz5.0");
    // The second control shows {IDD_Options_Q}.
    EXPECT_EQ(textOf(GetWindow(GetWindow(dialog, GW_CHILD), GW_HWNDNEXT)), L"Q");
    EXPECT_NE(GetWindowLongW(dialog, GWL_STYLE) & WS_VISIBLE, 0U);

    const EditedEffect closed;
    RECT client{};
    GetClientRect(dialog, &client);
    EXPECT_TRUE(client.right > 318 && client.bottom > 247);
    const ERect* const rect = closed.rect();
    EXPECT_EQ(std::tuple(rect->left, rect->top, rect->right, rect->bottom),
              std::tuple(0, 0, client.right, client.bottom));
    EXPECT_EQ(closed.rect(), rect); // the host may keep the address
}

TEST_F(Editor, ShowsEachParameterInItsSliderAndItsReadout) {
    std::vector<int> expected(13);
    const auto expectAllToBeShown = [&] {
        EXPECT_EQ(positions(), expected);
        for (std::size_t i = 0; i < 13; ++i) {
            const std::string text = effect->display(static_cast<int32>(i));
            EXPECT_EQ(readout(i), std::wstring(text.begin(), text.end())) << i;
        }
    };
    for (int i = 0; i < 13; ++i) {
        scroll(static_cast<std::size_t>(i), expected[i] = 20 + 5 * i, TB_ENDTRACK);
        EXPECT_EQ(automations(), (Automations{{i, static_cast<float>(expected[i]) * 0.01f}}));
    }
    expectAllToBeShown();
    for (int i = 0; i < 13; ++i) effect->set(i, (static_cast<float>(expected[i] = 95 - 7 * i) + 0.5f) / 100);
    effect->idle();
    expectAllToBeShown();
}

TEST_F(Editor, LimitsTheSliderButNotTheParameterToTheRange) {
    for (const auto& [given, pos] :
         {std::pair(NAN, 0), {1.5f, 150}, {-0.5f, -50}, {1e30f, 1000000000}, {-1e30f, -1000000000}}) {
        effect->set(Volume, given);
        effect->idle();
        EXPECT_EQ(position(Volume), std::clamp(pos, 0, 100)) << given;
        EXPECT_EQ(effect->get(Volume), static_cast<float>(pos) * 0.01f) << given;
        EXPECT_EQ(automations().size(), 1U);
    }
}

/// If this window is set, the host of `closingCallback` opens the editor in this window once.
HWND windowToReopenIn = nullptr;
/// The callback of a host that closes the editor when it is notified of a change, and then calls idle.
intptr closingCallback(AEffect* effect, int32 opcode, int32, intptr, void*, float) {
    if (opcode != audioMasterAutomate) return 2400;
    effect->dispatcher(effect, effEditClose, 0, 0, nullptr, 0.0f);
    if (const HWND parent = std::exchange(windowToReopenIn, nullptr))
        effect->dispatcher(effect, effEditOpen, 0, 0, parent, 0.0f);
    effect->dispatcher(effect, effEditIdle, 0, 0, nullptr, 0.0f);
    return 0;
}

TEST_F(Editor, ChangesNothingMoreAfterTheHostClosesItDuringANotification) {
    open(closingCallback);
    std::vector<float> expected = effect->all();
    scroll(Volume, 25, TB_ENDTRACK);
    expected[Volume] = 25 * 0.01f;
    EXPECT_EQ(effect->all(), expected);

    dialog = effect->open(window.get());
    effect->set(Volume, expected[Volume] = 75 * 0.01f);
    effect->idle();
    EXPECT_EQ(effect->all(), expected);
    EXPECT_EQ(GetWindow(window.get(), GW_CHILD), nullptr);
}

TEST_F(Editor, MayBeClosedAndOpenedAgainDuringANotification) {
    open(closingCallback);
    const HWND first = dialog;
    windowToReopenIn = window.get();
    scroll(Volume, 25, TB_ENDTRACK);
    EXPECT_FALSE(IsWindow(first));
    dialog = GetWindow(window.get(), GW_CHILD);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(position(Volume), 25);
    effect->dispatch(effEditClose);
    EXPECT_FALSE(IsWindow(dialog));
}

#ifndef _WIN32
TEST_F(Editor, ReportsASizeAndIgnoresCallsIfNoDialogCanBeCreated) {
    effect.reset();
    standin::unregisterCommonControls();
    effect = std::make_unique<EditedEffect>();
    EXPECT_EQ(effect->open(window.get()), nullptr);
    effect->set(Volume, 0.123f);
    effect->idle();
    EXPECT_EQ(effect->get(Volume), 0.123f);
    const ERect& rect = *effect->rect();
    // The dialog has 318 units of 6/4 pixels by 247 units of 13/8 pixels.
    EXPECT_EQ(std::tuple(rect.left, rect.top, rect.right, rect.bottom), std::tuple(0, 0, 477, 401));
    effect->dispatch(effEditClose);
    readyCommonControls();
    EXPECT_NE(effect->open(window.get()), nullptr);
}

TEST_F(Editor, ShowsTheUsersDecimalSeparatorAndTheHostADecimalPoint) {
    EnvironmentVariable locale("LC_ALL");
    locale.set("de_DE.UTF-8");
    scroll(Gain1, 33, TB_THUMBTRACK);
    EXPECT_EQ(readout(Gain1), L"+3,4 dB");
    EXPECT_EQ(effect->display(Gain1), "+3.4 dB");

    struct PointedEffect : ParametricEqualizer {
        using ParametricEqualizer::ParametricEqualizer;
        void getParameterDisplay(int32, char* text) override { std::strcpy(text, "3.4 d.B."); }
    };
    effect->dispatch(effEditClose);
    const HostedEffect pointed((new PointedEffect(nullptr))->getAeffect());
    pointed.dispatch(effEditOpen, window.get());
    dialog = GetWindow(window.get(), GW_CHILD);
    EXPECT_EQ(readout(Gain1), L"3,4 d.B.");
}
#endif

TEST_F(Editor, AppliesDragsAtEachStepAndOtherMovementsAtTheirEnd) {
    for (const UINT message : {WM_VSCROLL, WM_HSCROLL}) {
        for (const unsigned code : {0U, 1U, 2U, 3U, 4U, 6U, 7U}) scroll(Gain1, 10, code, message);
        EXPECT_EQ(automations(), Automations{});
        scroll(Gain1, 15, TB_THUMBTRACK, message);
        scroll(Gain1, 20, TB_ENDTRACK, message);
        EXPECT_EQ(automations(), (Automations{{Gain1, 15 * 0.01f}, {Gain1, 20 * 0.01f}}));
        EXPECT_EQ(effect->get(Gain1), 20 * 0.01f);
        EXPECT_EQ(readout(Gain1), L"+6.0 dB");
    }
    SendMessageW(dialog, WM_VSCROLL, TB_ENDTRACK, 0);
    SendMessageW(dialog, WM_VSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(dialog));
    EXPECT_EQ(automations(), Automations{});
}

TEST_F(Editor, ReadsBackEachPositionOrOnePositionLower) {
    const std::vector<int> exact = {0, 7, 14, 17, 25, 28, 31, 34, 37, 50, 55, 56, 61, 62, 68, 74, 75, 81, 87, 93, 100};
    for (int pos = 0; pos <= 100; ++pos) {
        scroll(Volume, pos, TB_ENDTRACK);
        // The slider stays where the user left it until another caller raises the flag.
        effect->idle();
        EXPECT_EQ(position(Volume), pos);
        effect->set(Gain1, effect->get(Gain1));
        effect->idle();
        EXPECT_EQ(position(Volume), std::ranges::binary_search(exact, pos) ? pos : pos - 1) << pos;
    }
    for (const auto& [beyond, end] : {std::pair(-1, 0.0f), {101, 1.0f}}) {
        scroll(Volume, beyond, TB_ENDTRACK);
        EXPECT_EQ(effect->get(Volume), end);
    }
}

TEST_F(Editor, RoundsTheHostsValuesToTheSlidersStepsAtTheNextIdle) {
    effect->set(Volume, 0.123f);
    EXPECT_EQ(position(Volume), 50);
    effect->idle();
    EXPECT_EQ(position(Volume), 12);
    EXPECT_EQ(effect->get(Volume), 12 * 0.01f);
    EXPECT_EQ(automations(), (Automations{{Volume, 12 * 0.01f}}));
    effect->idle();
    EXPECT_EQ(automations(), Automations{}) << "the editor followed its own change";

    effect->set(Volume, 0.129f); // the slider already has this position
    effect->idle();
    EXPECT_EQ(effect->get(Volume), 0.129f);
    EXPECT_EQ(automations(), Automations{});
    EXPECT_EQ(readout(Volume), L"+9.1 dB");
}

TEST_F(Editor, HandlesTheMessagesOfItsControlsUntilItsDestruction) {
    addButtons();
    using Answer = std::pair<INT_PTR, LONG_PTR>;
    EXPECT_EQ(answerOf(dialog, WM_INITDIALOG), Answer(1, 7));
    for (const UINT message : {WM_HSCROLL, WM_VSCROLL, WM_COMMAND})
        EXPECT_EQ(answerOf(dialog, message), Answer(1, 0)) << message;
    EXPECT_EQ(answerOf(dialog, WM_COMMAND, MAKEWPARAM(0, 1)), Answer(0, 7));
    EXPECT_EQ(answerOf(dialog, WM_NOTIFY), Answer(0, 7));
    EXPECT_EQ(answerOf(dialog, WM_DESTROY), Answer(1, 1));
    scroll(Volume, 10, TB_ENDTRACK);
    for (const int id : {1004, 1005, 1006}) click(id);
    effect->set(Volume, 0.25f);
    effect->idle();
    EXPECT_EQ(automations(), Automations{});
    EXPECT_TRUE(IsWindow(window.get()));
}

TEST_F(Editor, ServesTheButtonsThatADialogMayHave) {
    addButtons();
    const std::vector<float> defaults = effect->all();
    effect->set(Volume, 0.25f);
    SendMessageW(dialog, WM_INITDIALOG, 0, 0); // as if a dialog with these buttons opened now
    effect->set(Gain1, 0.75f);

    click(1005, 1); // a notification other than a click
    for (const WPARAM key : {IDOK, IDCANCEL}) SendMessageW(dialog, WM_COMMAND, key, 0); // Return and Escape
    EXPECT_EQ(effect->get(Gain1), 0.75f);
    click(1005); // back to the values at the opening
    EXPECT_TRUE(effect->get(Gain1) == 0.5f && effect->get(Volume) == 0.25f && position(Volume) == 25);
    click(1004); // back to the values at the construction
    EXPECT_EQ(effect->all(), defaults);
    EXPECT_EQ(positions(), DefaultPositions);
    EXPECT_EQ(automations().size(), 26U);

    click(1006); // closes the host's window
    EXPECT_FALSE(IsWindow(window.get()) || IsWindow(dialog));
    effect->dispatch(effEditClose);
}

TEST_F(Editor, ContinuesAfterACloseOrAnOpeningOnAnotherThread) {
    const HWND first = dialog;
    std::thread([this] {
        const Window another(makeHostWindow());
        effect->dispatch(effEditClose);
        EXPECT_EQ(effect->open(another.get()), nullptr);
    }).join();
    EXPECT_EQ(GetWindow(window.get(), GW_CHILD), first);
    scroll(Volume, 25, TB_ENDTRACK);
    effect->set(Gain1, 0.75f);
    effect->idle();
    EXPECT_EQ(automations(), (Automations{{Volume, 25 * 0.01f}, {Gain1, 0.75f}}));
    EXPECT_EQ(position(Gain1), 75);
}

TEST_F(Editor, DisconnectsADialogOfAnotherThreadInItsDestructor) {
    std::thread([this] { effect.reset(); }).join();
    EXPECT_TRUE(IsWindow(dialog));
    scroll(Volume, 25, TB_ENDTRACK);
    EXPECT_EQ(automations(), Automations{});
}

#ifdef _WIN32
TEST_F(Editor, IsClosedWhenTheThreadOfItsDialogEnds) {
    effect->dispatch(effEditClose);
    std::thread([this] { dialog = effect->open(makeHostWindow()); }).join();
    EXPECT_FALSE(IsWindow(dialog));
    effect->set(Gain1, 0.75f);
    effect->idle();
    EXPECT_EQ(automations(), Automations{});
    EXPECT_NE(effect->open(window.get()), nullptr);
}
#endif

TEST_F(Editor, MayBeCreatedOnSeveralThreadsTogether) {
#ifdef _WIN32
    constexpr int Turns = 10; // a real window system is slow
#else
    constexpr int Turns = 100;
#endif
    onThreads(3, [](int) {
        for (int turn = 0; turn < Turns; ++turn) {
            const EditedEffect own([](AEffect*, int32, int32, intptr, void*, float) -> intptr { return 1; });
            const Window parent(makeHostWindow());
            EXPECT_EQ(SendMessageW(GetDlgItem(own.open(parent.get()), SliderIds[1]), TBM_GETPOS, 0, 0), 100);
        }
    });
}

TEST_F(Editor, LeaksNothingWhenItIsOpenedRepeatedly) {
    long before = 0;
    for (int i = 0; i < 70; ++i) {
        if (i == 10) before = heapInUse();
        effect->open(window.get());
        effect->dispatch(effEditClose);
    }
    EXPECT_LT(heapInUse() - before, 60); // a leak at each opening would be larger
    EXPECT_EQ(GetWindow(window.get(), GW_CHILD), nullptr);
}

} // namespace

} // namespace eq
