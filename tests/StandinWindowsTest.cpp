// What the system promises of windows, dialogs and menus, where no other test would show that it does something else.
// On Windows the system itself is asked: where it and the stand-in answer differently, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/WindowTexts.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>

namespace {

const std::map<UINT, std::string> watchedMessages = {
    {WM_SETFONT, "SETFONT"}, {WM_INITDIALOG, "INITDIALOG"}, {WM_DESTROY, "DESTROY"}, {WM_NCDESTROY, "NCDESTROY"}};

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
        return FALSE;
    }

    static constexpr LPARAM EndAtOnce = 4711;
    static constexpr LPARAM EndLater = 4712;
    static constexpr DWORD EmbeddedStyle = WS_CHILD | DS_CONTROL | DS_SETFONT;

    inline static Windows* current = nullptr;
    HWND parent = nullptr;
    std::string log;
};

TEST_F(Windows, EndFromTheTopDownAndTakeWhatTheyOwnWithThem) {
    const DialogTemplateBuilder page(true, WS_CHILD, {});
    const HWND outer = createDialog(page, 1);
    createDialog(page, 2, outer);
    const HWND last = createDialog(page, 3, outer);
    const HWND owned = createDialog({true, WS_POPUP, {}}, 4, last);
    EXPECT_EQ(GetParent(owned), parent);
    log.clear();
    std::thread([this] { EXPECT_FALSE(DestroyWindow(parent)) << "another thread's"; }).join();
    DestroyWindow(parent);
    EXPECT_EQ(log, "4:DESTROY 4:NCDESTROY 0:DESTROY 1:DESTROY 2:DESTROY 3:DESTROY "
                   "2:NCDESTROY 3:NCDESTROY 1:NCDESTROY 0:NCDESTROY ");
    EXPECT_FALSE(DestroyWindow(last));
}

TEST_F(Windows, OfDialogsAreAskedOnceTheyAreComplete) {
    const DialogItem label = {u"\x82", 0x12345, WS_CHILD, u"a label"};
    for (const bool extended : {false, true}) {
        const HWND dialog = createDialog({extended, EmbeddedStyle, {label}}, 42);
        EXPECT_EQ(log, "0:SETFONT 42:INITDIALOG ");
        EXPECT_EQ(textOf(GetDlgItem(dialog, extended ? 0x12345 : 0x2345)), L"a label");
        DestroyWindow(dialog);
        log.clear();
    }
    EXPECT_EQ(createDialog({true, EmbeddedStyle, {label, {u"No such class", 2, WS_CHILD}}}), nullptr);
    EXPECT_EQ(GetWindow(parent, GW_CHILD), nullptr);
    EXPECT_EQ(log.find("INITDIALOG"), std::string::npos);
}

TEST_F(Windows, OfModalDialogsRunUntilTheirEnd) {
    const auto run = [this](const DialogTemplateBuilder& source, LPARAM with) {
        return DialogBoxIndirectParamW(GetModuleHandleW(nullptr), source.get(), parent, &dialogProcedure, with);
    };
    EXPECT_EQ(run({true, WS_POPUP, {}}, EndAtOnce), 77);
    EXPECT_EQ(run({true, WS_POPUP, {}}, EndLater), 78);
    EXPECT_EQ(run({true, WS_POPUP, {{u"No such class", 2, WS_CHILD}}}, 0), -1);
}

TEST(Menus, EndWithTheirPopupsHoweverDeepTheyAre) {
    TemplateBuilder deep;
    deep.words({0, 0});
    for (int i = 0; i < 1000; ++i) deep.word(0x90).text(u"");
    const HMENU menu = LoadMenuIndirectW(deep.words({0x80, 5}).text(u"x").get().data());
    const HMENU popup = GetSubMenu(menu, 0);
    EXPECT_EQ(GetMenuItemID(menu, 0), ~0U);
    EXPECT_TRUE(DestroyMenu(menu));
    EXPECT_FALSE(DestroyMenu(popup));
    EXPECT_FALSE(DestroyMenu(menu));
    TemplateBuilder unknown;
    EXPECT_EQ(LoadMenuIndirectW(unknown.words({2, 0, 0x80, 1, 0}).get().data()), nullptr);
#ifndef _WIN32
    EXPECT_EQ(standin::liveMenus(), 0U);
#endif
}

} // namespace
