// Tests the behaviour of windows, dialogs and menus that no other test covers. On Windows the tests call the system's
// functions. If the results of the stand-in differ, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/DialogTemplateBuilder.h"

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <utility>

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

} // namespace eq
