// Tests the behaviour of windows, dialogs and menus that no other test covers. On Windows the tests call the system's
// functions. If the results of the stand-in differ, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/TestWindows.h"

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace eq {

namespace {

std::string messages; // the messages of all dialogs, each after the dialog's parameter

INT_PTR CALLBACK writeDown(HWND window, UINT message, WPARAM, LPARAM parameter) {
    static const std::map<UINT, std::string> names = {
        {WM_SETFONT, "SETFONT"}, {WM_INITDIALOG, "INITDIALOG"}, {WM_DESTROY, "DESTROY"}, {WM_NCDESTROY, "NCDESTROY"}};
    if (message == WM_INITDIALOG) SetWindowLongPtrW(window, DWLP_USER, parameter);
    if (const auto found = names.find(message); found != names.end())
        messages += std::to_string(GetWindowLongPtrW(window, DWLP_USER)) + ":" + found->second + " ";
    if (message == WM_INITDIALOG) PostMessageW(window, WM_APP, 0, 0);
    if (message == WM_APP) EndDialog(window, 77);
    return FALSE;
}

HWND create(const DialogTemplateBuilder& source, LPARAM parameter, HWND parent) {
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), source.get(), parent, writeDown, parameter);
}

const DialogTemplateBuilder Popup(true, WS_POPUP, {});
const DialogTemplateBuilder NoDialog(true, WS_POPUP, {{u"No such class", 2, WS_CHILD}});

TEST(Dialogs, SendTheMessagesOfCreationAndDestructionInTheSystemsOrder) {
    const DialogTemplateBuilder page(true, WS_CHILD | DS_SETFONT, {});
    messages.clear();
    const HWND top = create(Popup, 1, nullptr);
    const HWND outer = create(page, 2, top);
    create(page, 3, outer);
    const HWND last = create(page, 4, outer);
    const HWND owned = create(Popup, 5, last);
    EXPECT_EQ(GetParent(owned), top);
    EXPECT_EQ(std::exchange(messages, ""), "1:INITDIALOG 0:SETFONT 2:INITDIALOG 0:SETFONT 3:INITDIALOG "
                                           "0:SETFONT 4:INITDIALOG 5:INITDIALOG ");
    std::thread([top] {
        EXPECT_FALSE(DestroyWindow(top)) << "the dialog belongs to another thread";
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
    }).join();
    DestroyWindow(top);
    EXPECT_EQ(std::exchange(messages, ""), "5:DESTROY 5:NCDESTROY 1:DESTROY 2:DESTROY 3:DESTROY 4:DESTROY "
                                           "3:NCDESTROY 4:NCDESTROY 2:NCDESTROY 1:NCDESTROY ");
    EXPECT_FALSE(DestroyWindow(last));
    EXPECT_EQ(create(NoDialog, 6, nullptr), nullptr);
    EXPECT_EQ(messages.find("INITDIALOG"), std::string::npos);
#ifndef _WIN32
    EXPECT_EQ(standin::liveWindows(), 0U);
#endif
}

TEST(Dialogs, RunUntilTheyAreEndedIfModal) {
    for (const auto& [source, result] : {std::pair(&Popup, 77), {&NoDialog, -1}})
        EXPECT_EQ(DialogBoxIndirectParamW(GetModuleHandleW(nullptr), source->get(), nullptr, writeDown, 0), result);
}

TEST(Dialogs, HaveTheControlsOfTheirTemplate) {
    for (const bool extended : {false, true}) {
        SCOPED_TRACE(extended);
        const DialogTemplateBuilder source(extended, WS_POPUP | DS_SETFONT,
                                           {{u"STATIC", 7, WS_CHILD, u"seven"},
                                            {u"\x80", 8, WS_CHILD | WS_TABSTOP | WS_VISIBLE, u"eight", ""},
                                            {u"\x81", 9, WS_CHILD, u"nine"},
                                            {u"\x82", 10, WS_CHILD | WS_DISABLED, u"ten"}});
        const HWND dialog = create(source, 1, nullptr);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(textOf(dialog), L"Caption");
        const std::pair<const wchar_t*, DWORD> controls[] = {
            {L"seven", 0}, {L"eight", WS_TABSTOP | WS_VISIBLE}, {L"nine", 0}, {L"ten", WS_DISABLED}};
        HWND control = GetWindow(dialog, GW_CHILD);
        for (int id = 7; id <= 10; ++id, control = GetWindow(control, GW_HWNDNEXT)) {
            const auto& [text, style] = controls[id - 7];
            EXPECT_EQ(std::tuple(GetDlgItem(dialog, id), GetDlgCtrlID(control), textOf(control), GetParent(control)),
                      std::tuple(control, id, text, dialog));
            const auto flags = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
            EXPECT_EQ(flags & (WS_CHILD | WS_POPUP | WS_VISIBLE | WS_TABSTOP | WS_DISABLED), WS_CHILD | style);
            EXPECT_NE(SendMessageW(control, WM_GETFONT, 0, 0), 0);
            EXPECT_EQ(SendMessageW(control, WM_GETFONT, 0, 0), SendMessageW(dialog, WM_GETFONT, 0, 0));
#ifndef _WIN32
            RECT area{};
            EXPECT_TRUE(GetClientRect(control, &area));
            EXPECT_EQ(std::pair(area.right, area.bottom), std::pair(LONG{45}, LONG{65})) << "30 by 40 units";
#endif
        }
        EXPECT_EQ(control, nullptr);
        EXPECT_TRUE(DestroyWindow(dialog));
    }
}

/// Handles each message, with the number 5 as the procedure's result and 6 as the message's result.
INT_PTR CALLBACK handleEach(HWND window, UINT, WPARAM, LPARAM) {
    SetWindowLongPtrW(window, DWLP_MSGRESULT, 6);
    return 5;
}

TEST(Dialogs, ReturnTheProceduresOwnResultForTheMessagesThatNeedIt) {
    const HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), Popup.get(), nullptr, handleEach, 0);
    for (const UINT message : {WM_COMPAREITEM, WM_VKEYTOITEM, WM_CHARTOITEM, WM_QUERYDRAGICON, WM_INITDIALOG,
                               WM_CTLCOLORMSGBOX, WM_CTLCOLOREDIT, WM_CTLCOLORSTATIC})
        EXPECT_EQ(SendMessageW(dialog, message, 0, 0), 5) << message;
    for (const UINT message : {WM_COMMAND, WM_APP, WM_CTLCOLORMSGBOX - 1, WM_CTLCOLORSTATIC + 1})
        EXPECT_EQ(SendMessageW(dialog, message, 0, 0), 6) << message;
    DestroyWindow(dialog);
}

TEST(WindowsState, IsKeptPerWindow) {
    const HWND window = makeHostWindow(), other = makeHostWindow();
    const auto make = [](const wchar_t* name, DWORD style, HWND parent, std::uintptr_t id) {
        return CreateWindowExW(0, name, L"t", style, 0, 0, 30, 20, parent, reinterpret_cast<HMENU>(id),
                               GetModuleHandleW(nullptr), nullptr);
    };
    const HWND child = make(L"static", WS_CHILD, window, 3);
    const HWND second = make(L"EDIT", WS_CHILD, window, 4);
    RECT area{};
    EXPECT_TRUE(GetClientRect(child, &area));
    EXPECT_EQ(std::vector<LONG>({area.left, area.top, area.right, area.bottom}), std::vector<LONG>({0, 0, 30, 20}));
    EXPECT_EQ(GetWindow(window, GW_CHILD), child);
    EXPECT_EQ(GetWindow(child, GW_HWNDNEXT), second);
    EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), nullptr);
    EXPECT_EQ(make(L"STATIC", WS_CHILD, nullptr, 5), nullptr);

    EXPECT_EQ(SetWindowLongPtrW(window, GWLP_USERDATA, 5), 0);
    EXPECT_EQ(SetWindowLongPtrW(window, GWLP_USERDATA, 6), 5);
    EXPECT_EQ(GetWindowLongPtrW(window, GWLP_USERDATA), 6);
    EXPECT_EQ(GetWindowLongPtrW(other, GWLP_USERDATA), 0);
    for (const int index : {-1, 10000}) {
        SetLastError(NO_ERROR);
        EXPECT_EQ(SetWindowLongPtrW(window, index, 7) + GetWindowLongPtrW(window, index), 0);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_INDEX));
    }
    EXPECT_TRUE(SetPropW(window, L"a", other) && SetPropW(window, L"b", child) && SetPropW(window, L"a", window));
    EXPECT_EQ((std::vector<HANDLE>{GetPropW(window, L"a"), GetPropW(window, L"b"), GetPropW(other, L"a")}),
              (std::vector<HANDLE>{window, child, nullptr}));
    EXPECT_TRUE(SetWindowTextA(window, "narrow"));
    wchar_t text[8] = {};
    EXPECT_EQ(GetWindowTextW(window, text, 4), 3);
    EXPECT_STREQ(text, L"nar");
    EXPECT_FALSE(ShowWindow(child, SW_SHOW));
    EXPECT_NE(GetWindowLongW(child, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE), 0);
    EXPECT_TRUE(ShowWindow(child, SW_HIDE));
    EXPECT_FALSE(ShowWindow(child, SW_HIDE));

    // A window that is destroyed takes its queued messages along. The thread's own messages remain, in their order.
    PostMessageW(nullptr, WM_APP, 1, 2);
    PostMessageW(other, WM_APP, 0, 0);
    PostMessageW(nullptr, WM_APP + 1, 3, 4);
    DestroyWindow(other);
    DestroyWindow(window);
    std::vector<std::uintptr_t> found;
    for (MSG message{}; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); DispatchMessageW(&message))
        if (!message.hwnd) found.insert(found.end(), {message.message, message.wParam, std::uintptr_t(message.lParam)});
    EXPECT_EQ(found, (std::vector<std::uintptr_t>{WM_APP, 1, 2, WM_APP + 1, 3, 4}));

    for (const HWND gone : {window, child}) {
        SetLastError(NO_ERROR);
        EXPECT_FALSE(IsWindow(gone) || ShowWindow(gone, SW_SHOW) || SetWindowTextW(gone, L"x") || GetDlgItem(gone, 3) ||
                     GetClientRect(gone, &area) || SetPropW(gone, L"a", nullptr) || PostMessageW(gone, WM_APP, 0, 0));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    }
}

TEST(Numbers, AreScaledWithRoundingAndWithinTheirRange) {
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        const int shift = static_cast<int>(random() % 31);
        const auto next = [&random](int bits) { return static_cast<int>(random()) >> bits; };
        const int number = next(shift), numerator = next(shift), denominator = next(16);
        const long double exact = std::round(static_cast<long double>(number) * numerator / denominator);
        const bool fits = denominator != 0 && std::fabs(exact) <= std::numeric_limits<int>::max();
        EXPECT_EQ(MulDiv(number, numerator, denominator), fits ? static_cast<int>(exact) : -1)
            << number << " " << numerator << " " << denominator;
    }
}

#ifdef _WIN32
constexpr int Depth = 1000; // Wine's reader is recursive
#else
constexpr int Depth = 100000;
#endif

TEST(Menus, AreDestroyedWithTheirPopupsAtAnyDepth) {
    TemplateBuilder deep;
    deep.words({0, 0});
    for (int i = 0; i < Depth; ++i) deep.word(0x90).text(u"");
    const HMENU menu = LoadMenuIndirectW(deep.words({0x80, 5}).text(u"x").get().data());
    const HMENU popup = GetSubMenu(menu, 0);
    for (const int position : {0, 1}) EXPECT_EQ(GetMenuItemID(menu, position), ~0U);
    EXPECT_TRUE(DestroyMenu(menu));
    for (const HMENU gone : {popup, menu}) {
        SetLastError(NO_ERROR);
        EXPECT_FALSE(DestroyMenu(gone));
#ifndef _WIN32 // Wine leaves the code as it was
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_MENU_HANDLE));
#endif
    }
    TemplateBuilder unknown;
    EXPECT_EQ(LoadMenuIndirectW(unknown.words({2, 0, 0x80, 1, 0}).get().data()), nullptr);
#ifndef _WIN32
    EXPECT_EQ(standin::liveMenus(), 0U);
#endif
}

} // namespace

} // namespace eq
