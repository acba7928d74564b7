// What the system promises of windows, dialogs, menus and accelerator tables. On Windows the system itself is asked:
// where it and the stand-in answer differently, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/AnsiCodepage.h"
#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/WindowTexts.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

const std::map<UINT, std::string> watchedMessages = {
    {WM_NCCREATE, "NCCREATE"},   {WM_CREATE, "CREATE"},   {WM_SIZE, "SIZE"},
    {WM_MOVE, "MOVE"},           {WM_DESTROY, "DESTROY"}, {WM_VSCROLL, "VSCROLL"},
    {WM_HSCROLL, "HSCROLL"},     {WM_COMMAND, "COMMAND"}, {WM_SHOWWINDOW, "SHOWWINDOW"},
    {WM_SETFONT, "SETFONT"},     {WM_CLOSE, "CLOSE"},     {WM_INITDIALOG, "INITDIALOG"},
    {WM_NCDESTROY, "NCDESTROY"}, {WM_APP, "APP"},         {WM_PARENTNOTIFY, "PARENTNOTIFY"},
};

/// Top-level windows, dialogs and procedures that write down their messages.
class Windows : public testing::Test {
protected:
    struct Answer {
        INT_PTR handled = 0;
        LONG_PTR result = 0;
    };

    Windows() {
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
        InitCommonControlsEx(&controls);
        WNDCLASSEXW recorder{};
        recorder.cbSize = sizeof recorder;
        recorder.lpfnWndProc = &recordingProcedure;
        recorder.hInstance = GetModuleHandleW(nullptr);
        recorder.lpszClassName = L"Recorder";
        recorder.cbWndExtra = 8;
        RegisterClassExW(&recorder);
        current = this;
        parent = create(L"Recorder", WS_POPUP);
        log.clear();
    }
    ~Windows() override {
        DestroyWindow(parent);
        UnregisterClassW(L"Recorder", GetModuleHandleW(nullptr));
#ifndef _WIN32
        EXPECT_EQ(standin::liveWindows(), 0U);
#endif
    }

    static HWND create(const wchar_t* windowClass, DWORD style, HWND above = nullptr, int id = 0) {
        return CreateWindowExW(0, windowClass, L"", style, 10, 20, 640, 480, above,
                               reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    }

    HWND createDialog(const DialogTemplateBuilder& source, LPARAM with = 0) const {
        return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), source.get(), parent, &dialogProcedure, with);
    }

    static void write(HWND window, UINT message) {
        const auto found = watchedMessages.find(message);
        if (found == watchedMessages.end()) return;
        current->log += std::to_string(GetDlgCtrlID(window)) + ":" + found->second + " ";
    }

    static LRESULT CALLBACK recordingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        write(window, message);
        if (message == WM_VSCROLL || message == WM_HSCROLL)
            current->log += std::to_string(LOWORD(wParam)) + "/" +
                            std::to_string(SendMessageW(reinterpret_cast<HWND>(lParam), TBM_GETPOS, 0, 0)) + " ";
        if (message == WM_ENTERIDLE) PostMessageW(reinterpret_cast<HWND>(lParam), WM_APP, 0, 0);
        if (message == current->refused) return message == WM_CREATE ? -1 : 0;
        return DefWindowProcW(window, message, wParam, lParam);
    }

    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        write(window, message);
        if (message == WM_COMMAND) current->log += std::to_string(wParam) + " ";
        if (message == WM_INITDIALOG) {
            current->focusAtStart = reinterpret_cast<HWND>(wParam);
            current->parameter = lParam;
            if (lParam == EndAtOnce) EndDialog(window, 77);
            return current->takesFocus;
        }
        if (message == WM_APP) EndDialog(window, 78);
        const auto answer = current->answers.find(message);
        if (answer == current->answers.end()) return FALSE;
        SetWindowLongPtrW(window, DWLP_MSGRESULT, answer->second.result);
        return answer->second.handled;
    }

    /// As a message loop does it.
    static bool key(HWND dialog, int virtualKey) {
        MSG message{};
        message.hwnd = GetFocus();
        message.message = WM_KEYDOWN;
        message.wParam = static_cast<WPARAM>(virtualKey);
        return IsDialogMessageW(dialog, &message) != FALSE;
    }

    std::string takeLog() {
        return std::exchange(log, std::string());
    }

    static constexpr LPARAM EndAtOnce = 4711;

    inline static Windows* current = nullptr;
    HWND parent = nullptr;
    std::string log;
    UINT refused = WM_NULL;
    std::map<UINT, Answer> answers;
    BOOL takesFocus = TRUE;
    HWND focusAtStart = nullptr;
    LPARAM parameter = 0;
};

std::wstring classOf(HWND window) {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), 64);
    return name.data();
}

DWORD styleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
}

TEST_F(Windows, TellOfTheirLifeInOrder) {
    const HWND outer = create(L"Recorder", WS_CHILD | WS_VISIBLE, parent, 7);
    EXPECT_EQ(takeLog(), "7:NCCREATE 7:CREATE 7:SIZE 7:MOVE 0:PARENTNOTIFY 7:SHOWWINDOW ");
    const HWND inner = create(L"Recorder", WS_CHILD, outer, 8);
    EXPECT_EQ(takeLog(), "8:NCCREATE 8:CREATE 8:SIZE 8:MOVE 7:PARENTNOTIFY ");
    EXPECT_FALSE(ShowWindow(inner, SW_SHOWNORMAL));
    EXPECT_TRUE(ShowWindow(inner, SW_SHOWNORMAL));
    EXPECT_EQ(takeLog(), "8:SHOWWINDOW ");
    EXPECT_FALSE(IsWindowVisible(inner));
    EXPECT_NE(styleOf(inner) & WS_VISIBLE, 0U);
    DestroyWindow(inner);
    EXPECT_EQ(takeLog(), "7:PARENTNOTIFY 8:SHOWWINDOW 8:DESTROY 8:NCDESTROY ");
    EXPECT_FALSE(DestroyWindow(inner));
    create(L"Recorder", WS_CHILD, outer, 9);
    takeLog();
    DestroyWindow(parent);
    EXPECT_EQ(takeLog(), "0:DESTROY 7:DESTROY 9:DESTROY 9:NCDESTROY 7:NCDESTROY 0:NCDESTROY ");
    EXPECT_FALSE(IsWindow(outer));
}

TEST_F(Windows, MayRefuseTheirCreation) {
    refused = WM_NCCREATE;
    EXPECT_EQ(create(L"Recorder", WS_CHILD, parent, 7), nullptr);
    refused = WM_CREATE;
    EXPECT_EQ(create(L"Recorder", WS_CHILD, parent, 7), nullptr);
    EXPECT_EQ(takeLog(), "7:NCCREATE 7:NCDESTROY 7:NCCREATE 7:CREATE 7:NCDESTROY ");
    EXPECT_EQ(GetWindow(parent, GW_CHILD), nullptr);
    SetLastError(NO_ERROR);
    EXPECT_EQ(create(L"No such class", WS_CHILD, parent), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CLASS_DOES_NOT_EXIST});
    EXPECT_EQ(create(L"STATIC", WS_CHILD), nullptr);
}

TEST_F(Windows, KnowTheirPlaceInTheTree) {
    const HWND first = create(L"static", WS_CHILD, parent, 1);
    const HWND second = create(L"BUTTON", WS_CHILD, parent, -1);
    const HWND below = create(L"Edit", WS_CHILD, first, 1);
    EXPECT_EQ(classOf(first), L"Static");
    EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), second);
    EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), nullptr);
    EXPECT_EQ(GetDlgItem(parent, 5), nullptr);
    EXPECT_TRUE(IsChild(parent, below));
    EXPECT_FALSE(IsChild(below, below));
    const HWND owned = create(L"STATIC", WS_POPUP, below);
    EXPECT_EQ(GetWindow(owned, GW_OWNER), parent);
    EXPECT_EQ(GetParent(owned), parent);
    EXPECT_FALSE(IsChild(parent, owned));
    RECT place{0, 0, 1, 1};
    MapWindowPoints(below, parent, reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.left, 20);
    EXPECT_EQ(place.bottom, 41);
    DestroyWindow(parent);
    EXPECT_FALSE(IsWindow(owned));
}

TEST_F(Windows, KeepTextsAndValues) {
    if (const AnsiCodepage page(1252); page) {
        EXPECT_TRUE(SetWindowTextA(parent, "caf\xE9"));
        EXPECT_EQ(textOf(parent), L"caf\u00E9");
        std::array<char, 4> cut{};
        EXPECT_EQ(GetWindowTextA(parent, cut.data(), 4), 3);
        EXPECT_STREQ(cut.data(), "caf");
    }
    EXPECT_TRUE(SetWindowTextW(parent, nullptr));
    EXPECT_EQ(textOf(parent), L"");
    EXPECT_EQ(SetWindowLongPtrW(parent, GWLP_USERDATA, 5), 0);
    EXPECT_EQ(SetWindowLongPtrW(parent, GWLP_USERDATA, 6), 5);
    EXPECT_EQ(SetWindowLongW(parent, 4, 9), 0);
    EXPECT_EQ(GetWindowLongW(parent, 4), 9);
    EXPECT_EQ(SetWindowLongW(parent, 8, 9), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_INDEX});
    EXPECT_TRUE(SetPropW(parent, L"name", parent));
    EXPECT_EQ(RemovePropW(parent, L"name"), parent);
    EXPECT_EQ(GetPropW(parent, L"name"), nullptr);
}

TEST_F(Windows, BelongToTheirThreadAndGetPostedMessagesInOrder) {
    PostMessageW(parent, WM_APP, 1, 0);
    PostMessageW(parent, WM_APP + 1, 2, 0);
    std::thread([this] {
        PostMessageW(parent, WM_APP, 3, 0);
        EXPECT_NE(GetWindowThreadProcessId(parent, nullptr), GetCurrentThreadId());
        EXPECT_FALSE(DestroyWindow(parent));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    }).join();
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, parent, WM_APP + 1, WM_APP + 1, PM_NOREMOVE));
    std::vector<WPARAM> order;
    while (PeekMessageW(&message, parent, WM_APP, WM_APP + 1, PM_REMOVE)) order.push_back(message.wParam);
    EXPECT_EQ(order, (std::vector<WPARAM>{1, 2, 3}));
    DispatchMessageW(&message);
    EXPECT_EQ(takeLog(), "0:APP ");
}

constexpr DWORD EmbeddedStyle = WS_CHILD | DS_CONTROL | DS_SETFONT;
constexpr DWORD StopStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
constexpr DWORD SliderStyle = StopStyle | TBS_VERT | TBS_BOTH | TBS_NOTICKS;

TEST_F(Windows, OfDialogsAreBuiltAsTheTemplateSays) {
    const std::vector<DialogItem> items = {
        {u"\x82", 0xFFFFFFFF, WS_CHILD | WS_VISIBLE | SS_RIGHT, u"a label", 7, 11, 49, 8},
        {u"msctls_trackbar32", 1044, SliderStyle, u"Slider1", 64, 7, 16, 50},
        {u"\x80", 3, StopStyle, u"a button", 1, 2, 3, 5},
        {u"\x81", 4, WS_CHILD, u"an edit", 200, 200, 31, 33},
    };
    const std::array<std::wstring, 4> classes = {L"Static", L"msctls_trackbar32", L"Button", L"Edit"};
    for (const bool extended : {false, true}) {
        SCOPED_TRACE(extended);
        const HWND dialog = createDialog({extended, EmbeddedStyle, items}, 42);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(takeLog(), "0:PARENTNOTIFY 0:SETFONT 0:INITDIALOG ");
        EXPECT_EQ(parameter, 42);
        EXPECT_EQ(focusAtStart, GetDlgItem(dialog, 1044));
        EXPECT_EQ(classOf(dialog), L"#32770");
        EXPECT_EQ(textOf(dialog), L"Caption");
        EXPECT_EQ(styleOf(dialog), EmbeddedStyle | DS_3DLOOK);
        EXPECT_EQ(GetWindowLongW(dialog, GWL_EXSTYLE), LONG{WS_EX_CONTROLPARENT});
        RECT size{0, 0, 100, 50};
        EXPECT_TRUE(MapDialogRect(dialog, &size));
        RECT client{};
        EXPECT_TRUE(GetClientRect(dialog, &client));
        EXPECT_EQ(client.right, size.right);
        EXPECT_EQ(client.bottom, size.bottom);

        HWND child = GetWindow(dialog, GW_CHILD);
        for (std::size_t i = 0; i < items.size(); ++i, child = GetWindow(child, GW_HWNDNEXT)) {
            SCOPED_TRACE(i);
            const DialogItem& item = items[i];
            EXPECT_EQ(classOf(child), classes[i]);
            EXPECT_EQ(GetDlgCtrlID(child), static_cast<int>(extended ? item.id : item.id & 0xFFFFU));
            EXPECT_EQ(textOf(child), std::wstring(item.text.begin(), item.text.end()));
            EXPECT_EQ(styleOf(child), item.style);
            // A trackbar has no use for a font.
            const LRESULT font = i == 1 ? 0 : SendMessageW(dialog, WM_GETFONT, 0, 0);
            EXPECT_EQ(SendMessageW(child, WM_GETFONT, 0, 0), font);
        }
        DestroyWindow(dialog);
        EXPECT_EQ(takeLog(), "0:PARENTNOTIFY 0:DESTROY 0:NCDESTROY ");
    }
}

TEST_F(Windows, OfDialogsFailWithAnUnknownControl) {
    const std::vector<DialogItem> items = {{u"\x82", 1, WS_CHILD}, {u"No such class", 2, WS_CHILD}};
    EXPECT_EQ(createDialog({true, EmbeddedStyle, items}), nullptr);
    EXPECT_EQ(GetWindow(parent, GW_CHILD), nullptr);
    EXPECT_EQ(log.find("INITDIALOG"), std::string::npos);
    const HWND dialog = createDialog({true, EmbeddedStyle | DS_NOFAILCREATE, items});
    EXPECT_NE(dialog, nullptr);
    EXPECT_NE(GetDlgItem(dialog, 1), nullptr);
    EXPECT_EQ(GetDlgItem(dialog, 2), nullptr);
}

TEST_F(Windows, OfDialogsGiveTheResultsOfTheirProcedure) {
    const HWND dialog = createDialog({true, EmbeddedStyle, {}});
    const auto result = [&](UINT message, Answer answer) {
        answers[message] = answer;
        return SendMessageW(dialog, message, 0, 0);
    };
    for (const UINT message : {UINT{WM_CTLCOLORDLG}, UINT{WM_CTLCOLORSTATIC}, UINT{WM_COMPAREITEM}, UINT{WM_VKEYTOITEM},
                               UINT{WM_CHARTOITEM}, UINT{WM_QUERYDRAGICON}})
        EXPECT_EQ(result(message, {31, 47}), 31) << message;
    for (const UINT message : {UINT{WM_COMMAND}, UINT{WM_VSCROLL}, UINT{WM_APP + 3}}) {
        EXPECT_EQ(result(message, {31, 47}), 47) << message;
        EXPECT_EQ(result(message, {FALSE, 47}), 0) << message;
    }
    answers.clear();
    EXPECT_EQ(SendMessageW(dialog, WM_APP + 3, 0, 0), 0);
}

TEST_F(Windows, OfDialogsMoveTheFocusInTabOrder) {
    ShowWindow(parent, SW_SHOWNORMAL);
    const HWND dialog = createDialog({true,
                                      EmbeddedStyle | WS_VISIBLE,
                                      {{u"\x82", 9, WS_CHILD | WS_VISIBLE},
                                       {u"msctls_trackbar32", 1, SliderStyle},
                                       {u"\x80", 2, StopStyle & ~WS_VISIBLE},
                                       {u"\x80", 3, StopStyle | WS_DISABLED},
                                       {u"msctls_trackbar32", 4, SliderStyle},
                                       {u"\x80", 5, StopStyle}}});
    std::array<BYTE, 256> keys{};
    std::vector<int> order = {GetDlgCtrlID(GetFocus())};
    for (int i = 0; i < 6; ++i) {
        keys[VK_SHIFT] = i < 3 ? 0 : 0x80;
        SetKeyboardState(keys.data());
        EXPECT_TRUE(key(dialog, VK_TAB));
        order.push_back(GetDlgCtrlID(GetFocus()));
    }
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys.data());
    EXPECT_EQ(order, (std::vector<int>{1, 4, 5, 1, 5, 4, 1}));
    EXPECT_EQ(GetNextDlgTabItem(dialog, nullptr, FALSE), GetDlgItem(dialog, 1));
    EXPECT_EQ(GetNextDlgTabItem(dialog, nullptr, TRUE), nullptr);
    EXPECT_EQ(GetNextDlgTabItem(dialog, GetDlgItem(dialog, 9), FALSE), GetDlgItem(dialog, 1));

    takeLog();
    for (const int virtualKey : {VK_RETURN, VK_ESCAPE, VK_TAB, VK_TAB, VK_RETURN, VK_TAB, VK_DOWN})
        key(dialog, virtualKey);
    EXPECT_EQ(takeLog(), "0:COMMAND 1 0:COMMAND 2 0:COMMAND 5 0:VSCROLL ");
    EXPECT_EQ(SendMessageW(GetDlgItem(dialog, 1), TBM_GETPOS, 0, 0), 1);
    MSG other{};
    other.hwnd = parent;
    other.message = WM_KEYDOWN;
    EXPECT_FALSE(IsDialogMessageW(dialog, &other));
}

TEST_F(Windows, OfDialogsLeaveTheFocusIfTheirProcedureWantsSo) {
    ShowWindow(parent, SW_SHOWNORMAL);
    SetFocus(parent);
    const std::vector<DialogItem> items = {{u"\x80", 5, StopStyle}};
    takesFocus = FALSE;
    createDialog({true, EmbeddedStyle | WS_VISIBLE, items});
    EXPECT_EQ(GetFocus(), parent);
    takesFocus = TRUE;
    createDialog({true, EmbeddedStyle, items});
    EXPECT_EQ(GetFocus(), parent);
    const HWND third = createDialog({true, WS_CHILD, items});
    EXPECT_EQ(GetFocus(), GetDlgItem(third, 5));
    DestroyWindow(third);
    EXPECT_NE(GetFocus(), third);
}

TEST_F(Windows, OfModalDialogsRunUntilTheirEnd) {
    const DialogTemplateBuilder source(true, WS_POPUP | DS_SETFONT, {});
    const auto run = [&](HWND owner, LPARAM with) {
        return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), source.get(), owner, &dialogProcedure, with);
    };
    EXPECT_EQ(run(parent, EndAtOnce), 77);
    // The owner posts a message when the dialog is idle.
    EXPECT_EQ(run(parent, 0), 78);
    EXPECT_TRUE(IsWindowEnabled(parent));
    const DialogTemplateBuilder unknown(true, WS_POPUP, {{u"No such class", 2, WS_CHILD}});
    EXPECT_EQ(DialogBoxIndirectParamA(nullptr, unknown.get(), parent, &dialogProcedure, 0), -1);
}

class Trackbars : public Windows {
protected:
    void make(DWORD style) {
        trackbar = create(L"msctls_trackbar32", WS_CHILD | style, parent, 7);
        send(TBM_SETPOS, 50);
    }
    LRESULT send(UINT message, LPARAM lParam = 0) const { return SendMessageW(trackbar, message, TRUE, lParam); }
    std::string press(int virtualKey) {
        takeLog();
        SendMessageW(trackbar, WM_KEYDOWN, static_cast<WPARAM>(virtualKey), 0);
        SendMessageW(trackbar, WM_KEYUP, static_cast<WPARAM>(virtualKey), 0);
        return takeLog();
    }

    HWND trackbar = nullptr;
};

TEST_F(Trackbars, ClampTheirPositionToTheirRange) {
    make(TBS_VERT);
    EXPECT_EQ(send(TBM_GETRANGEMAX), 100);
    EXPECT_EQ(send(TBM_GETLINESIZE), 1);
    EXPECT_EQ(send(WM_GETDLGCODE), DLGC_WANTARROWS);
    takeLog();
    struct Case {
        UINT message;
        LPARAM value;
        LRESULT position;
        LRESULT pageSize;
    };
    constexpr Case cases[] = {
        {TBM_SETPOS, 101, 100, 20},          {TBM_SETPOS, -1, 0, 20},
        {TBM_SETPOS, 100, 100, 20},          {TBM_SETRANGE, MAKELPARAM(-10, 33), 33, 8},
        {TBM_SETRANGEMAX, 4, 4, 2},          {TBM_SETRANGEMIN, 3, 4, 1},
        {TBM_SETRANGEMAX, 100000, 4, 19999}, {TBM_SETPOS, 70000, 70000, 19999},
    };
    for (const Case& row : cases) {
        send(row.message, row.value);
        EXPECT_EQ(send(TBM_GETPOS), row.position) << row.message;
        EXPECT_EQ(send(TBM_GETPAGESIZE), row.pageSize) << row.message;
    }
    EXPECT_EQ(send(TBM_GETRANGEMIN), 3);
    EXPECT_EQ(takeLog(), "");
}

TEST_F(Trackbars, TellTheirParentOfKeys) {
    make(TBS_VERT | TBS_BOTH);
    const std::vector<std::pair<int, std::string>> rows = {
        {VK_UP, "0:VSCROLL 0/49 0:VSCROLL 8/49 "},
        {VK_DOWN, "0:VSCROLL 1/50 0:VSCROLL 8/50 "},
        {VK_LEFT, "0:VSCROLL 0/49 0:VSCROLL 8/49 "},
        {VK_RIGHT, "0:VSCROLL 1/50 0:VSCROLL 8/50 "},
        {VK_PRIOR, "0:VSCROLL 2/30 0:VSCROLL 8/30 "},
        {VK_NEXT, "0:VSCROLL 3/50 0:VSCROLL 8/50 "},
        {VK_HOME, "0:VSCROLL 6/0 0:VSCROLL 8/0 "},
        {VK_PRIOR, "0:VSCROLL 8/0 "},
        {VK_END, "0:VSCROLL 7/100 0:VSCROLL 8/100 "},
        {VK_DOWN, "0:VSCROLL 8/100 "},
        {VK_SPACE, ""},
    };
    for (const auto& [virtualKey, told] : rows) EXPECT_EQ(press(virtualKey), told) << virtualKey;
    DestroyWindow(trackbar);
    make(TBS_DOWNISLEFT);
    EXPECT_EQ(press(VK_UP), "0:HSCROLL 1/51 0:HSCROLL 8/51 ");
    EXPECT_EQ(press(VK_LEFT), "0:HSCROLL 0/50 0:HSCROLL 8/50 ");
    DestroyWindow(trackbar);
    make(TBS_VERT | TBS_DOWNISLEFT);
    EXPECT_EQ(press(VK_UP), "0:VSCROLL 0/49 0:VSCROLL 8/49 ");
    EXPECT_EQ(press(VK_LEFT), "0:VSCROLL 1/50 0:VSCROLL 8/50 ");
}

std::wstring menuText(HMENU menu, UINT item, UINT flags) {
    std::array<wchar_t, 32> text{};
    EXPECT_EQ(GetMenuStringW(menu, item, text.data(), 32, flags), GetMenuStringW(menu, item, nullptr, 0, flags));
    return text.data();
}

TEST(Menus, AreBuiltFromBothForms) {
    // "Open", the checked popup "Popup" with "End", and a separator.
    TemplateBuilder standard;
    standard.words({0, 2, 0x1234}).words({0, 1}).text(u"Open").word(MF_POPUP | MF_CHECKED).text(u"Popup");
    standard.words({MF_END, 3}).text(u"End").words({MF_END, 0, 0});
    TemplateBuilder extended;
    extended.words({1, 4}).doubleWord(5);
    extended.doubleWord(0).doubleWord(0).doubleWord(1).word(0).text(u"Open").align();
    extended.doubleWord(0).doubleWord(8).doubleWord(10).word(1).text(u"Popup").align().doubleWord(99);
    extended.doubleWord(0).doubleWord(0).doubleWord(3).word(0x80).text(u"End").align();
    extended.doubleWord(0).doubleWord(0).doubleWord(0).word(0x80).text(u"");
    for (const bool isExtended : {false, true}) {
        SCOPED_TRACE(isExtended);
        const HMENU menu =
            isExtended ? LoadMenuIndirectW(extended.get().data()) : LoadMenuIndirectA(standard.get().data());
        EXPECT_EQ(GetMenuItemCount(menu), 3);
        EXPECT_EQ(menuText(menu, 0, MF_BYPOSITION), L"Open");
        EXPECT_EQ(GetMenuItemID(menu, 0), 1U);
        EXPECT_EQ(GetSubMenu(menu, 0), nullptr);
        EXPECT_EQ(menuText(menu, 1, MF_BYPOSITION), L"Popup");
        EXPECT_EQ(GetMenuItemID(menu, 1), ~0U);
        EXPECT_EQ(GetMenuState(menu, 1, MF_BYPOSITION), UINT{0x0110 | MF_CHECKED});
        EXPECT_EQ(GetMenuState(menu, 2, MF_BYPOSITION),
                  isExtended ? MF_SEPARATOR : MF_SEPARATOR | MF_DISABLED | MF_GRAYED);
        EXPECT_EQ(GetMenuState(menu, 3, MF_BYPOSITION), ~0U);
        const HMENU popup = GetSubMenu(menu, 1);
        EXPECT_EQ(GetMenuItemCount(popup), 1);
        EXPECT_EQ(menuText(menu, 3, MF_BYCOMMAND), L"End");
        EXPECT_EQ(menuText(menu, 4, MF_BYCOMMAND), L"");
        std::array<wchar_t, 3> cut{};
        EXPECT_EQ(GetMenuStringW(menu, 0, cut.data(), 3, MF_BYPOSITION), 2);
        EXPECT_STREQ(cut.data(), L"Op");
        EXPECT_TRUE(DestroyMenu(menu));
        EXPECT_FALSE(IsMenu(popup));
        EXPECT_FALSE(DestroyMenu(menu));
    }
    TemplateBuilder unknown;
    EXPECT_EQ(LoadMenuIndirectW(unknown.words({2, 0, 0x80, 1, 0}).get().data()), nullptr);
}

#ifndef _WIN32
TEST(Menus, NestToAnyDepth) {
    TemplateBuilder source;
    source.words({0, 0});
    for (int i = 0; i < 100000; ++i) source.word(MF_POPUP | MF_END).text(u"");
    const HMENU menu = LoadMenuIndirectW(source.words({MF_END, 5}).text(u"x").get().data());
    EXPECT_EQ(menuText(menu, 5, MF_BYCOMMAND), L"x");
    EXPECT_TRUE(DestroyMenu(menu));
    EXPECT_EQ(standin::liveMenus(), 0U);
}
#endif

TEST(AcceleratorTables, GiveBackTheirRecords) {
    const AnsiCodepage page(1251);
    std::array<ACCEL, 2> records{ACCEL{FVIRTKEY | FCONTROL, VK_F5, 10}, ACCEL{FALT, 0xC0, 11}};
    for (const bool narrow : {true, false}) {
        const HACCEL table = (narrow ? CreateAcceleratorTableA : CreateAcceleratorTableW)(records.data(), 2);
        std::array<ACCEL, 3> copy{};
        EXPECT_EQ(CopyAcceleratorTableW(table, copy.data(), 1), 1);
        EXPECT_EQ(copy[1].cmd, 0);
        EXPECT_EQ(CopyAcceleratorTableW(table, copy.data(), 3), 2);
        EXPECT_EQ(copy[1].key, narrow && page ? 0x0410 : 0xC0);
        EXPECT_TRUE(DestroyAcceleratorTable(table));
        EXPECT_EQ(CopyAcceleratorTableW(table, nullptr, 0), 0);
    }
    EXPECT_EQ(CreateAcceleratorTableW(records.data(), 0), nullptr);
}

} // namespace
