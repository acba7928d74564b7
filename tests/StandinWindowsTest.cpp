// What the system promises of windows, dialogs and menus. On Windows the system
// itself is asked: where it and the stand-in answer differently, the stand-in is wrong.

#include "platform/win32.h"

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
#include <utility>
#include <vector>

namespace {

const std::map<UINT, std::string> watchedMessages = {
    {WM_SETFONT, "SETFONT"}, {WM_INITDIALOG, "INITDIALOG"}, {WM_APP, "APP"},
    {WM_DESTROY, "DESTROY"}, {WM_NCDESTROY, "NCDESTROY"},
};

/// Dialogs whose procedure writes down their messages, each with the dialog's parameter.
class Windows : public testing::Test {
protected:
    Windows() {
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
        InitCommonControlsEx(&controls);
        current = this;
        parent = createDialog({true, WS_POPUP, {}});
        log.clear();
    }
    ~Windows() override {
        DestroyWindow(parent);
#ifndef _WIN32
        EXPECT_EQ(standin::liveWindows(), 0U);
#endif
    }

    static HWND create(const wchar_t* windowClass, DWORD style, HWND above = nullptr, int id = 0) {
        return CreateWindowExW(0, windowClass, L"", style, 10, 20, 640, 480, above,
                               reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    }

    HWND createDialog(const DialogTemplateBuilder& source, LPARAM with = 0, HWND above = nullptr) const {
        return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), source.get(), above ? above : parent,
                                          &dialogProcedure, with);
    }

    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM, LPARAM lParam) {
        if (message == WM_INITDIALOG) SetWindowLongPtrW(window, DWLP_USER, lParam);
        if (const auto found = watchedMessages.find(message); found != watchedMessages.end())
            current->log += std::to_string(GetWindowLongPtrW(window, DWLP_USER)) + ":" + found->second + " ";
        if (message == WM_INITDIALOG && lParam == EndAtOnce) EndDialog(window, 77);
        if (message == WM_INITDIALOG && lParam == EndLater) PostMessageW(window, WM_APP, 0, 0);
        if (message == WM_APP) EndDialog(window, 78);
        const auto answer = current->answers.find(message);
        if (answer == current->answers.end()) return FALSE;
        SetWindowLongPtrW(window, DWLP_MSGRESULT, 47);
        return answer->second;
    }

    std::string takeLog() {
        return std::exchange(log, std::string());
    }

    static constexpr LPARAM EndAtOnce = 4711;
    static constexpr LPARAM EndLater = 4712;

    inline static Windows* current = nullptr;
    HWND parent = nullptr;
    std::string log;
    std::map<UINT, INT_PTR> answers;
};

std::wstring classOf(HWND window) {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), 64);
    return name.data();
}

TEST_F(Windows, EndFromTheTopDownAndTakeWhatTheyOwnWithThem) {
    const DialogTemplateBuilder page(true, WS_CHILD, {});
    const HWND outer = createDialog(page, 1);
    createDialog(page, 2, outer);
    createDialog(page, 3, outer);
    const HWND label = create(L"static", WS_CHILD, outer, -1);
    const HWND owned = createDialog({true, WS_POPUP, {}}, 4, label);
    EXPECT_EQ(GetParent(owned), parent);
    EXPECT_EQ(GetParent(label), outer);
    takeLog();
    DestroyWindow(parent);
    EXPECT_EQ(takeLog(), "4:DESTROY 4:NCDESTROY 0:DESTROY 1:DESTROY 2:DESTROY 3:DESTROY "
                         "2:NCDESTROY 3:NCDESTROY 1:NCDESTROY 0:NCDESTROY ");
    EXPECT_FALSE(IsWindow(label));
    EXPECT_FALSE(DestroyWindow(label));
    EXPECT_EQ(create(L"No such class", WS_POPUP), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CLASS_DOES_NOT_EXIST});
    EXPECT_EQ(create(L"STATIC", WS_CHILD), nullptr);
}

TEST_F(Windows, BelongToTheirThreadAndGetPostedMessagesInOrder) {
    PostMessageW(parent, WM_APP + 1, 1, 0);
    PostMessageW(parent, WM_APP + 2, 2, 0);
    std::thread([this] {
        PostMessageW(parent, WM_APP + 3, 3, 0);
        EXPECT_FALSE(DestroyWindow(parent));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    }).join();
    MSG message{};
    std::vector<WPARAM> order;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.hwnd == parent && message.message > WM_APP) order.push_back(message.wParam);
    }
    EXPECT_EQ(order, (std::vector<WPARAM>{1, 2, 3}));
}

constexpr DWORD EmbeddedStyle = WS_CHILD | DS_CONTROL | DS_SETFONT;

TEST_F(Windows, OfDialogsAreBuiltAsTheTemplateSays) {
    const std::vector<DialogItem> items = {
        {u"\x82", 0xFFFFFFFF, WS_CHILD | WS_VISIBLE, u"a label", 7, 11, 49, 8},
        {u"msctls_trackbar32", 1044, WS_CHILD | WS_VISIBLE | WS_TABSTOP, u"Slider1", 64, 7, 16, 50},
        {u"\x80", 3, WS_CHILD | WS_VISIBLE | WS_TABSTOP, u"a button", 1, 2, 3, 5},
        {u"\x81", 4, WS_CHILD, u"an edit", 200, 200, 31, 33},
    };
    const std::array<std::wstring, 4> classes = {L"Static", L"msctls_trackbar32", L"Button", L"Edit"};
    for (const bool extended : {false, true}) {
        SCOPED_TRACE(extended);
        const HWND dialog = createDialog({extended, EmbeddedStyle, items}, 42);
        EXPECT_EQ(takeLog(), "0:SETFONT 42:INITDIALOG ");
        EXPECT_EQ(classOf(dialog), L"#32770");
        EXPECT_EQ(textOf(dialog), L"Caption");
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
            EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(child, GWL_STYLE)), item.style);
            // A trackbar has no use for a font.
            const LRESULT font = i == 1 ? 0 : SendMessageW(dialog, WM_GETFONT, 0, 0);
            EXPECT_EQ(SendMessageW(child, WM_GETFONT, 0, 0), font);
        }
        EXPECT_EQ(child, nullptr);
        DestroyWindow(dialog);
        takeLog();
    }
    EXPECT_EQ(createDialog({true, EmbeddedStyle, {items[0], {u"No such class", 2, WS_CHILD}}}), nullptr);
    EXPECT_EQ(GetWindow(parent, GW_CHILD), nullptr);
    EXPECT_EQ(takeLog().find("INITDIALOG"), std::string::npos);
}

TEST_F(Windows, OfDialogsGiveTheResultsOfTheirProcedure) {
    const HWND dialog = createDialog({true, EmbeddedStyle, {}});
    const auto result = [&](UINT message, INT_PTR handled) {
        answers[message] = handled;
        return SendMessageW(dialog, message, 0, 0);
    };
    for (const UINT message : {UINT{WM_CTLCOLORDLG}, UINT{WM_CTLCOLORSTATIC}, UINT{WM_COMPAREITEM}, UINT{WM_VKEYTOITEM},
                               UINT{WM_CHARTOITEM}, UINT{WM_QUERYDRAGICON}})
        EXPECT_EQ(result(message, 31), 31) << message;
    for (const UINT message : {UINT{WM_COMMAND}, UINT{WM_VSCROLL}, UINT{WM_APP + 3}}) {
        EXPECT_EQ(result(message, 31), 47) << message;
        EXPECT_EQ(result(message, FALSE), 0) << message;
    }
}

TEST_F(Windows, OfModalDialogsRunUntilTheirEnd) {
    const auto run = [this](const DialogTemplateBuilder& source, LPARAM with) {
        return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), source.get(), parent, &dialogProcedure, with);
    };
    EXPECT_EQ(run({true, WS_POPUP, {}}, EndAtOnce), 77);
    EXPECT_EQ(run({true, WS_POPUP, {}}, EndLater), 78);
    EXPECT_EQ(run({true, WS_POPUP, {{u"No such class", 2, WS_CHILD}}}, 0), -1);
}

std::wstring menuText(HMENU menu, UINT item) {
    std::array<wchar_t, 6> text{};
    GetMenuStringW(menu, item, text.data(), 6, MF_BYPOSITION);
    return text.data();
}

TEST(Menus, AreBuiltFromBothForms) {
    // "Open", the popup "Popup" with "End of it", and a separator.
    TemplateBuilder standard;
    standard.words({0, 2, 0x1234}).words({0, 1}).text(u"Open").word(0x10).text(u"Popup");
    standard.words({0x80, 3}).text(u"End of it").words({0x80, 0, 0});
    TemplateBuilder extended;
    extended.words({1, 4}).doubleWord(5);
    extended.doubleWord(0).doubleWord(0).doubleWord(1).word(0).text(u"Open").align();
    extended.doubleWord(0).doubleWord(8).doubleWord(10).word(1).text(u"Popup").align().doubleWord(99);
    extended.doubleWord(0).doubleWord(0).doubleWord(3).word(0x80).text(u"End of it").align();
    extended.doubleWord(0).doubleWord(0).doubleWord(0).word(0x80).text(u"");
    for (const bool isExtended : {false, true}) {
        SCOPED_TRACE(isExtended);
        const HMENU menu =
            isExtended ? LoadMenuIndirectW(extended.get().data()) : LoadMenuIndirectA(standard.get().data());
        EXPECT_EQ(menuText(menu, 0), L"Open");
        EXPECT_EQ(GetMenuItemID(menu, 0), 1U);
        EXPECT_EQ(GetSubMenu(menu, 0), nullptr);
        EXPECT_EQ(menuText(menu, 1), L"Popup");
        EXPECT_EQ(GetMenuItemID(menu, 1), ~0U);
        const HMENU popup = GetSubMenu(menu, 1);
        EXPECT_EQ(menuText(popup, 0), L"End o");
        EXPECT_EQ(GetMenuItemID(popup, 0), 3U);
        EXPECT_EQ(GetMenuItemID(popup, 1), ~0U);
        EXPECT_EQ(menuText(menu, 2), L"");
        EXPECT_TRUE(DestroyMenu(menu));
        EXPECT_FALSE(DestroyMenu(popup));
        EXPECT_FALSE(DestroyMenu(menu));
    }
    TemplateBuilder unknown;
    EXPECT_EQ(LoadMenuIndirectW(unknown.words({2, 0, 0x80, 1, 0}).get().data()), nullptr);
#ifndef _WIN32
    TemplateBuilder deep;
    deep.words({0, 0});
    for (int i = 0; i < 100000; ++i) deep.word(0x90).text(u"");
    EXPECT_TRUE(DestroyMenu(LoadMenuIndirectW(deep.words({0x80, 5}).text(u"x").get().data())));
    EXPECT_EQ(standin::liveMenus(), 0U);
#endif
}

} // namespace
