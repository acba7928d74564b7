#include "plugin/AEffect.h"

#include "platform/Owners.h"
#include "platform/win32.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UserSeparator.h"
#include "tests/support/WindowTexts.h"

#ifdef _WIN32
#include "tests/support/LoadedLibrary.h"
#else
#include "platform/standin/TestHooks.h"
#include "plugin/ParametricEqualizer.h"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// The editor as a host drives it, by the effect's record: on Windows that of the built library, elsewhere that of an
// effect in this program, whose windows the stand-in shows to this program alone.

namespace {

// By parameter.
constexpr std::array<int, 13> SliderIds = {1012, 1014, 1016, 1018, 1023, 1020, 1022,
                                           1029, 1033, 1044, 1046, 1048, 1050};
constexpr std::array<int, 13> ReadoutIds = {1013, 1015, 1017, 1019, 1024, 1021, 1025,
                                            1030, 1034, 1045, 1047, 1049, 1051};
constexpr std::array<int, 13> DefaultPositions = {50, 100, 66, 33, 0, 50, 50, 50, 50, 55, 55, 55, 55};

constexpr int Volume = 0;
constexpr int Frequency3 = 3;
constexpr int Gain1 = 5;

void readyTrackbars() {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
}

platform::Window makeHostWindow() {
    return platform::Window(CreateWindowExW(0, L"STATIC", L"host", WS_POPUP, 0, 0, 600, 500, nullptr, nullptr,
                                            GetModuleHandleW(nullptr), nullptr));
}

AEffect* makeEffect(audioMasterCallback callback) {
#ifdef _WIN32
    static const LoadedLibrary library(EQ_LIBRARY_PATH);
    return library.find<EffectMainProc>("main")(callback);
#else
    return (new ParametricEqualizer(callback))->getAeffect();
#endif
}

/// An effect as a host holds it.
class HostedEffect {
public:
    explicit HostedEffect(audioMasterCallback host = ScriptedHost::callback) : m_record(makeEffect(host)) {}
    ~HostedEffect() { dispatch(effClose); }
    HostedEffect(const HostedEffect&) = delete;
    HostedEffect& operator=(const HostedEffect&) = delete;

    intptr dispatch(int32 opcode, void* ptr = nullptr) const {
        return m_record->dispatcher(m_record, opcode, 0, 0, ptr, 0.0f);
    }
    /// The dialog that is opened in `parent`.
    HWND open(HWND parent) const {
        EXPECT_EQ(dispatch(effEditOpen, parent), 1);
        return GetWindow(parent, GW_CHILD);
    }
    ERect* rect() const {
        ERect* answer = nullptr;
        EXPECT_EQ(dispatch(effEditGetRect, &answer), 1);
        return answer;
    }
    void idle() const { dispatch(effEditIdle); }
    void set(int index, float value) const { m_record->setParameter(m_record, index, value); }
    float get(int index) const { return m_record->getParameter(m_record, index); }
    std::vector<float> all() const {
        std::vector<float> values;
        for (int i = 0; i < 13; ++i) values.push_back(get(i));
        return values;
    }
    AEffect* record() const { return m_record; }

private:
    AEffect* m_record;
};

/// What the process holds besides windows.
struct LiveObjects {
    long heap = heapInUse();
#ifdef _WIN32
    long graphics = nextGraphicsHandle();
    long executablePages = countExecutableRegions();

    /// Places in the table of graphics objects are used again, so it grows if objects are left behind.
    static long nextGraphicsHandle() {
        const HGDIOBJ object = CreateSolidBrush(0);
        DeleteObject(object);
        return static_cast<long>(reinterpret_cast<ULONG_PTR>(object) & 0xFFFF);
    }

    static long countExecutableRegions() {
        long count = 0;
        MEMORY_BASIC_INFORMATION region;
        const char* address = nullptr;
        while (VirtualQuery(address, &region, sizeof region) != 0) {
            count += region.Type == MEM_PRIVATE && region.Protect == PAGE_EXECUTE_READ;
            address = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
        }
        return count;
    }
#else
    long graphics = 0;        // it draws nothing
    long executablePages = 0; // the stand-in makes no code
#endif
};

class Editor : public testing::Test {
protected:
    Editor() {
        readyTrackbars();
        effect = std::make_unique<HostedEffect>();
        dialog = effect->open(window.get());
        EXPECT_NE(dialog, nullptr);
    }

    HWND slider(int parameter) const { return GetDlgItem(dialog, SliderIds[static_cast<std::size_t>(parameter)]); }
    std::wstring readout(int parameter) const {
        return textOf(GetDlgItem(dialog, ReadoutIds[static_cast<std::size_t>(parameter)]));
    }
    int position(int parameter) const { return static_cast<int>(SendMessageW(slider(parameter), TBM_GETPOS, 0, 0)); }
    std::vector<int> positions() const {
        std::vector<int> all;
        for (int i = 0; i < 13; ++i) all.push_back(position(i));
        return all;
    }
    /// Moves a slider as the user does, and notifies with the code.
    void scroll(int parameter, int pos, unsigned code, UINT message = WM_VSCROLL) const {
        SendMessageW(slider(parameter), TBM_SETPOS, TRUE, pos);
        SendMessageW(dialog, message, MAKEWPARAM(code, pos), reinterpret_cast<LPARAM>(slider(parameter)));
    }
    /// What the host was told since the last time, as (parameter, value).
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
    platform::Window window = makeHostWindow();
    std::unique_ptr<HostedEffect> effect;
    HWND dialog = nullptr;
    std::size_t callsSeen = 0;
};

TEST_F(Editor, OpensWithTheEffectsValuesAndChangesNothing) {
    // A raised flag finds nothing to do.
    effect->set(2, effect->get(2));
    effect->idle();
    EXPECT_TRUE(std::ranges::equal(positions(), DefaultPositions));
    EXPECT_EQ(automations(), Automations{});
    EXPECT_EQ(effect->get(2), 2.0f / 3.0f);
    EXPECT_EQ(readout(Volume), L"+0.0 dB");
    EXPECT_EQ(readout(1), L"20 Hz");
    EXPECT_EQ(readout(Frequency3), L"2.0 kHz");
    EXPECT_EQ(readout(12), L"5.0");
    EXPECT_NE(GetWindowLongW(dialog, GWL_STYLE) & WS_VISIBLE, 0U);
    // The second control shows {IDD_Options_Q}.
    EXPECT_EQ(textOf(GetWindow(GetWindow(dialog, GW_CHILD), GW_HWNDNEXT)), L"Q");
}

/// A host that closes the editor when it is told of a change for the first time, and opens it again in the window.
HWND windowToReopenIn = nullptr;
intptr reopeningCallback(AEffect* effect, int32 opcode, int32, intptr, void*, float) {
    if (opcode == audioMasterAutomate)
        if (const HWND parent = std::exchange(windowToReopenIn, nullptr)) {
            effect->dispatcher(effect, effEditClose, 0, 0, nullptr, 0.0f);
            effect->dispatcher(effect, effEditOpen, 0, 0, parent, 0.0f);
        }
    return 2400;
}

TEST(EditorInAHost, MayBeClosedAndOpenedAgainWhileItTellsOfAChange) {
    readyTrackbars();
    const platform::Window window = makeHostWindow();
    const HostedEffect effect(reopeningCallback);
    const HWND first = effect.open(window.get());
    windowToReopenIn = window.get();
    const HWND slider = GetDlgItem(first, SliderIds[Volume]);
    SendMessageW(slider, TBM_SETPOS, TRUE, 25);
    SendMessageW(first, WM_VSCROLL, MAKEWPARAM(TB_ENDTRACK, 25), reinterpret_cast<LPARAM>(slider));
    EXPECT_FALSE(IsWindow(first));
    const HWND second = GetWindow(window.get(), GW_CHILD);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(SendMessageW(GetDlgItem(second, SliderIds[Volume]), TBM_GETPOS, 0, 0), 25);
    effect.dispatch(effEditClose);
    EXPECT_FALSE(IsWindow(second));
}

TEST_F(Editor, ReportsTheSizeThatTheDialogWillHave) {
    EXPECT_EQ(effect->record()->flags, 0x19);
    const HostedEffect closed;
    const ERect* const rect = closed.rect();
    EXPECT_EQ(closed.rect(), rect);
    RECT client{};
    GetClientRect(dialog, &client);
    const std::array<LONG, 4> reported = {rect->left, rect->top, rect->right, rect->bottom};
    EXPECT_EQ(reported, (std::array{client.left, client.top, client.right, client.bottom}));
    EXPECT_GT(rect->right, 318);
}

#ifndef _WIN32
TEST_F(Editor, GivesASizeAndStaysCalmWhereNoDialogCanBeMade) {
    effect.reset();
    standin::unregisterCommonControls();
    effect = std::make_unique<HostedEffect>();
    EXPECT_EQ(effect->open(window.get()), nullptr);
    effect->set(Volume, 0.123f);
    effect->idle();
    EXPECT_EQ(effect->get(Volume), 0.123f);
    EXPECT_EQ(automations(), Automations{});
    EXPECT_EQ(effect->rect()->right, 477); // 318 units of 6 quarters of a pixel
    EXPECT_EQ(effect->rect()->bottom, 401);
    effect->dispatch(effEditClose);
    readyTrackbars();
    EXPECT_NE(effect->open(window.get()), nullptr);
}
#endif

TEST_F(Editor, TakesDragsAtEveryStepAndOtherMovementsAtTheirEnd) {
    for (const UINT message : {WM_VSCROLL, WM_HSCROLL}) {
        effect->set(Gain1, 0.5f);
        effect->idle();
        automations();
        for (const unsigned code : {0U, 1U, 2U, 3U, 4U, 6U, 7U}) scroll(Gain1, 10, code, message);
        EXPECT_EQ(automations(), Automations{});
        EXPECT_EQ(effect->get(Gain1), 0.5f);
        scroll(Gain1, 15, TB_THUMBTRACK, message);
        scroll(Gain1, 20, TB_ENDTRACK, message);
        EXPECT_EQ(automations(), (Automations{{Gain1, 15 * 0.01f}, {Gain1, 20 * 0.01f}}));
        EXPECT_EQ(effect->get(Gain1), 20 * 0.01f);
        EXPECT_EQ(readout(Gain1), L"+6.0 dB");
    }
    SendMessageW(dialog, WM_VSCROLL, TB_ENDTRACK, 0);
    SendMessageW(dialog, WM_VSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(dialog));
    EXPECT_EQ(automations(), Automations{});
    scroll(Frequency3, 44, TB_THUMBTRACK);
    EXPECT_EQ(readout(Frequency3), L"957 Hz");
    scroll(Frequency3, 43, TB_THUMBTRACK);
    EXPECT_EQ(readout(Frequency3), L"1.0 kHz");

    const UserSeparator comma(',');
    scroll(Gain1, 33, TB_THUMBTRACK);
    EXPECT_EQ(readout(Gain1), L"+3,4 dB");
    char text[64] = "";
    effect->record()->dispatcher(effect->record(), effGetParamDisplay, Gain1, 0, text, 0.0f);
    EXPECT_STREQ(text, "+3.4 dB");
}

TEST_F(Editor, ReadsPositionsBackAsThemselvesOrOneLower) {
    const std::vector<int> exact = {0, 7, 14, 17, 25, 28, 31, 34, 37, 50, 55, 56, 61, 62, 68, 74, 75, 81, 87, 93, 100};
    for (int pos = 0; pos <= 100; ++pos) {
        scroll(Volume, pos, TB_ENDTRACK);
        // The slider stays where the user left it until somebody raises the flag.
        effect->idle();
        EXPECT_EQ(position(Volume), pos);
        effect->set(Gain1, effect->get(Gain1));
        effect->idle();
        EXPECT_EQ(position(Volume), std::ranges::binary_search(exact, pos) ? pos : pos - 1) << pos;
    }
}

TEST_F(Editor, PutsAHostsValuesOnTheGridAtTheNextIdle) {
    effect->set(Volume, 0.123f);
    EXPECT_EQ(position(Volume), 50);
    effect->idle();
    EXPECT_EQ(position(Volume), 12);
    EXPECT_EQ(effect->get(Volume), 12 * 0.01f);
    EXPECT_EQ(automations(), (Automations{{Volume, 12 * 0.01f}}));

    effect->set(Volume, 0.129f); // its slider is there already
    effect->idle();
    EXPECT_EQ(effect->get(Volume), 0.129f);
    EXPECT_EQ(automations(), Automations{});
    EXPECT_EQ(readout(Volume), L"+9.1 dB");

    const float infinity = std::numeric_limits<float>::infinity();
    for (const float value : {-1.0f, 1.5f, infinity, -infinity, std::numeric_limits<float>::quiet_NaN()}) {
        effect->set(Volume, value);
        effect->idle();
        EXPECT_GE(position(Volume), 0);
        EXPECT_LE(position(Volume), 100);
    }
}

TEST_F(Editor, DoesNotChaseItsOwnChanges) {
    effect->set(Volume, 0.4f);
    effect->set(Gain1, 0.3f);
    effect->idle();
    EXPECT_EQ(automations().size(), 2U);
    effect->idle();
    EXPECT_EQ(automations(), Automations{});

    // A change of the host that waits for its idle call is passed over when the user moves a slider.
    effect->set(Gain1, 0.9f);
    scroll(Volume, 10, TB_THUMBTRACK);
    automations();
    effect->idle();
    EXPECT_EQ(automations(), Automations{});
    EXPECT_EQ(position(Gain1), 30);
    effect->set(Volume, effect->get(Volume));
    effect->idle();
    EXPECT_EQ(position(Gain1), 89); // 0.9 is a little less than 90 hundredths
}

#ifdef _WIN32
TEST_F(Editor, IsReachedByTabAndIgnoresReturnAndEscape) {
    std::vector<int> order;
    for (HWND control = GetNextDlgTabItem(dialog, nullptr, FALSE); order.size() < 14;
         control = GetNextDlgTabItem(dialog, control, FALSE))
        order.push_back(GetDlgCtrlID(control));
    EXPECT_EQ(order,
              (std::vector<int>{1044, 1046, 1048, 1050, 1014, 1016, 1018, 1023, 1020, 1022, 1029, 1033, 1012, 1044}));
    SendMessageW(slider(Gain1), WM_KEYDOWN, VK_NEXT, 1);
    SendMessageW(slider(Gain1), WM_KEYUP, VK_NEXT, static_cast<LPARAM>(0xC0000001));
    EXPECT_EQ(automations(), (Automations{{Gain1, 70 * 0.01f}}));

    const std::vector<float> changed = effect->all();
    for (const WPARAM command : {WPARAM{IDOK}, WPARAM{IDCANCEL}, WPARAM{1004}}) // of keys and of no control
        SendMessageW(dialog, WM_COMMAND, command, 0);
    for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_ESCAPE}}) {
        MSG message{};
        message.hwnd = slider(Gain1);
        message.message = WM_KEYDOWN;
        message.wParam = key;
        IsDialogMessageW(dialog, &message);
    }
    EXPECT_EQ(effect->all(), changed);
    EXPECT_NE(IsWindow(dialog), 0);
}
#endif

TEST_F(Editor, ServesTheButtonsThatADialogMayHave) {
    for (const int id : {1004, 1005, 1006})
        CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 9, 9, dialog,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    const auto click = [this](int id, unsigned notification = 0) {
        SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, notification),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)));
    };
    const std::vector<float> defaults = effect->all();
    effect->set(Volume, 0.25f);
    SendMessageW(dialog, WM_INITDIALOG, 0, 0); // as for a template with these buttons, opened now
    effect->set(Gain1, 0.75f);

    click(1005, 1); // a notification that is no click
    EXPECT_EQ(effect->get(Gain1), 0.75f);
    click(1005); // back to the values at the opening
    EXPECT_EQ(effect->get(Gain1), 0.5f);
    EXPECT_EQ(effect->get(Volume), 0.25f);
    EXPECT_EQ(position(Volume), 25);
    click(1004); // back to the values at the construction
    EXPECT_EQ(effect->all(), defaults);
    EXPECT_TRUE(std::ranges::equal(positions(), DefaultPositions));
    EXPECT_EQ(automations().size(), 26U);

    click(1006); // closes the host's window
    EXPECT_EQ(IsWindow(window.get()), 0);
    EXPECT_EQ(IsWindow(dialog), 0);
    effect->idle();
    effect->dispatch(effEditClose);
}

TEST_F(Editor, SurvivesHostsThatOpenAndCloseAsTheyLike) {
    const HWND second = effect->open(window.get());
    EXPECT_EQ(IsWindow(dialog), 0) << "the first dialog is still there";
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), nullptr);
    effect->dispatch(effEditClose);
    effect->dispatch(effEditClose);
    EXPECT_EQ(IsWindow(second), 0);

    // While there is no dialog nothing is read or written.
    effect->set(Volume, 0.123f);
    effect->idle();
    EXPECT_EQ(effect->get(Volume), 0.123f);
    EXPECT_EQ(automations(), Automations{});

    dialog = effect->open(window.get());
    EXPECT_EQ(position(Volume), 12);
    window.reset(); // without a word
    EXPECT_EQ(IsWindow(dialog), 0);
    effect->idle();
    effect->dispatch(effEditClose);
    window = makeHostWindow();
    dialog = effect->open(window.get());
    EXPECT_EQ(position(Volume), 12);
    effect->open(nullptr);
    EXPECT_EQ(IsWindow(dialog), 0);
    dialog = effect->open(window.get());

    const HostedEffect other;
    const platform::Window otherWindow = makeHostWindow();
    const HWND otherDialog = other.open(otherWindow.get());
    effect.reset(); // with its editor open
    EXPECT_EQ(IsWindow(dialog), 0);
    EXPECT_NE(IsWindow(otherDialog), 0);
}

TEST_F(Editor, LeavesNothingBehindHoweverOftenItIsOpened) {
    const auto openAndClose = [this](int times) {
        for (int i = 0; i < times; ++i) {
            effect->open(window.get());
            effect->dispatch(effEditClose);
        }
    };
    openAndClose(10);
    const LiveObjects before;
#ifdef _WIN32
    openAndClose(200); // each takes a real window system a twentieth of a second
#else
    openAndClose(1000);
#endif
    const LiveObjects after;
    EXPECT_LT(after.heap - before.heap, 100); // one that grows with the openings would be more
    EXPECT_LT(after.graphics - before.graphics, 100);
    EXPECT_LT(after.executablePages - before.executablePages, 2);
    EXPECT_EQ(GetWindow(window.get(), GW_CHILD), nullptr);
}

TEST_F(Editor, TakesParametersFromOtherThreadsWhileItIsIdle) {
    std::atomic<bool> done = false;
    std::thread setter([&] {
        for (int i = 0; i < 2000; ++i) effect->set(i % 13, static_cast<float>(i % 101) / 100.0f);
        done = true;
    });
    while (!done) effect->idle();
    setter.join();
    effect->set(Volume, 0.25f);
    effect->idle();
    EXPECT_EQ(position(Volume), 25);
}

TEST_F(Editor, MayBeMadeOnSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> opened = 0;
    const auto openTenTimes = [&opened] {
        for (int turn = 0; turn < 10; ++turn) {
            const platform::Window parent = makeHostWindow();
            const HostedEffect own([](AEffect*, int32, int32, intptr, void*, float) -> intptr { return 1; });
            opened += SendMessageW(GetDlgItem(own.open(parent.get()), 1014), TBM_GETPOS, 0, 0) == 100;
        }
    };
    while (threads.size() < 3) threads.emplace_back(openTenTimes);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(opened, 30);
}

} // namespace
