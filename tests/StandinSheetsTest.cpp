// What the system promises of property sheets. On Windows the system itself is asked: where it and the stand-in answer
// differently, the stand-in is wrong.

#include "platform/win32.h"

#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/WindowTexts.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

const std::map<UINT, std::string> notifications = {
    {PSN_SETACTIVE, "SETACTIVE"}, {PSN_KILLACTIVE, "KILLACTIVE"},   {PSN_APPLY, "APPLY"},     {PSN_RESET, "RESET"},
    {PSN_HELP, "HELP"},           {PSN_QUERYCANCEL, "QUERYCANCEL"}, {PSN_WIZBACK, "WIZBACK"}, {PSN_WIZNEXT, "WIZNEXT"},
    {PSN_WIZFINISH, "WIZFINISH"},
};
const std::map<UINT, std::string> pageEvents = {
    {PSPCB_ADDREF, "ADDREF"}, {PSPCB_CREATE, "CREATE"}, {PSPCB_RELEASE, "RELEASE"}};

template <typename Function>
Function* systemFunction(Function* /*declared*/, const char* name) {
    const auto found = GetProcAddress(GetModuleHandleA("comctl32"), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(found));
}
#define EQ_SYSTEM(Name) systemFunction<std::remove_pointer_t<decltype(&::Name)>>(nullptr, #Name)

/// Sheets whose pages write down what they are told. They stay invisible, since showing a window takes its time.
class PropertySheets : public testing::Test {
protected:
    struct Message {
        UINT message;
        WPARAM wParam;
        LPARAM lParam = 0;
    };

    PropertySheets() {
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
        InitCommonControlsEx(&controls);
        create = EQ_SYSTEM(CreatePropertySheetPageW);
        destroy = EQ_SYSTEM(DestroyPropertySheetPage);
        current = this;
        owner = CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    }
    ~PropertySheets() override {
        DestroyWindow(owner);
#ifndef _WIN32
        EXPECT_EQ(standin::liveWindows(), 0U);
        EXPECT_EQ(standin::livePropertySheetPages(), 0U);
#endif
    }

    static INT_PTR CALLBACK pageProcedure(HWND window, UINT message, WPARAM, LPARAM lParam) {
        if (message == WM_INITDIALOG) {
            const auto& record = *reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
            SetWindowLongPtrW(window, DWLP_USER, record.lParam);
            write(record.lParam, "INITDIALOG");
            return TRUE;
        }
        const LONG_PTR page = GetWindowLongPtrW(window, DWLP_USER);
        if (message == WM_DESTROY) write(page, "DESTROY");
        if (message == WM_COMMAND) write(page, "COMMAND");
        if (message != WM_NOTIFY) return FALSE;
        const auto& notification = *reinterpret_cast<const PSHNOTIFY*>(lParam);
        const auto named = notifications.find(notification.hdr.code);
        if (named == notifications.end()) return FALSE;
        EXPECT_EQ(notification.hdr.hwndFrom, GetParent(window));
        write(page, named->second + (notification.lParam != 0 ? "!" : ""));
        const auto answer = current->answers.find({page, notification.hdr.code});
        SetWindowLongPtrW(window, DWLP_MSGRESULT, answer == current->answers.end() ? 0 : answer->second);
        return TRUE;
    }

    template <typename Record>
    static UINT CALLBACK pageCallback(HWND, UINT event, Record* record) {
        write(record->lParam, pageEvents.at(event));
        return event == PSPCB_CREATE && record->lParam == current->refusedPage ? 0 : 1;
    }

    static int CALLBACK sheetCallback(HWND window, UINT event, LPARAM parameter) {
        if (event == PSCB_PRECREATE) reinterpret_cast<DLGTEMPLATE*>(parameter)->style &= ~WS_VISIBLE;
        if (event != PSCB_INITIALIZED) return 0;
        current->log += "INITIALIZED ";
        current->sheet = window;
        current->captionAtStart = textOf(window);
        current->ownerAtStart = IsWindowEnabled(current->owner) != FALSE;
        for (const Message& next : current->posted) PostMessageW(window, next.message, next.wParam, next.lParam);
        return 0;
    }

    static void write(LONG_PTR page, const std::string& what) {
        current->log += std::to_string(page) + ":" + what + " ";
    }

    /// A page of the template in memory.
    template <typename Record, typename Text>
    [[nodiscard]] Record record(LPARAM number, const Text* title) const {
        Record page{};
        page.dwSize = sizeof page;
        page.dwFlags = PSP_USECALLBACK | PSP_USETITLE | PSP_DLGINDIRECT;
        page.hInstance = GetModuleHandleW(nullptr);
        page.pResource = source.get();
        page.pszTitle = title;
        page.pfnDlgProc = &pageProcedure;
        page.lParam = number;
        page.pfnCallback = &pageCallback<Record>;
        return page;
    }

    /// A page of that template, or of one in the program's resources.
    [[nodiscard]] HPROPSHEETPAGE page(LPARAM number, WORD id = 0) const {
        // The title is gone when the sheet is opened.
        const std::wstring title = L"Page " + std::to_wstring(number);
        auto given = record<PROPSHEETPAGEW>(number, title.c_str());
        if (id != 0) given.dwFlags &= ~static_cast<DWORD>(PSP_DLGINDIRECT);
        if (id != 0) given.pszTemplate = MAKEINTRESOURCEW(id);
        return create(&given);
    }

    INT_PTR open(DWORD flags, std::vector<HPROPSHEETPAGE> pages, UINT start = 0) const {
        PROPSHEETHEADERW header{};
        header.dwSize = sizeof header;
        header.dwFlags = PSH_USECALLBACK | flags;
        header.hwndParent = owner;
        header.hInstance = GetModuleHandleW(nullptr);
        header.pszCaption = L"Caption";
        header.nPages = static_cast<UINT>(pages.size());
        header.nStartPage = start;
        header.phpage = pages.data();
        header.pfnCallback = &sheetCallback;
        return EQ_SYSTEM(PropertySheetW)(&header);
    }

    LRESULT send(UINT message, WPARAM wParam, LPARAM lParam = 0) const {
        return SendMessageW(sheet, message, wParam, lParam);
    }
    [[nodiscard]] HWND pageWindow() const {
        return reinterpret_cast<HWND>(send(PSM_GETCURRENTPAGEHWND, 0));
    }
    [[nodiscard]] LONG_PTR pageNumber() const {
        return GetWindowLongPtrW(pageWindow(), DWLP_USER);
    }
    std::string takeLog() {
        return std::exchange(log, std::string());
    }

    inline static PropertySheets* current = nullptr;
    decltype(&::CreatePropertySheetPageW) create = nullptr;
    decltype(&::DestroyPropertySheetPage) destroy = nullptr;
    DialogTemplateBuilder source{true, WS_POPUP | WS_CAPTION | WS_VISIBLE, {{u"\x80", 5, WS_CHILD | WS_VISIBLE}}};
    HWND owner = nullptr;
    HWND sheet = nullptr;
    std::string log;
    std::wstring captionAtStart;
    bool ownerAtStart = true;
    LPARAM refusedPage = 0;
    std::vector<Message> posted;
    std::map<std::pair<LONG_PTR, UINT>, LRESULT> answers;
};

TEST_F(PropertySheets, RunUntilOk) {
    posted = {{PSM_SETCURSEL, 1},
              {PSM_PRESSBUTTON, PSBTN_APPLYNOW},
              {PSM_PRESSBUTTON, PSBTN_HELP},
              {WM_COMMAND, 77},
              {PSM_PRESSBUTTON, PSBTN_OK}};
    EXPECT_EQ(open(0, {page(1), page(2), page(3)}), 1);
    EXPECT_EQ(takeLog(), "1:ADDREF 2:ADDREF 3:ADDREF INITIALIZED 1:CREATE 1:INITDIALOG 1:SETACTIVE "
                         "1:KILLACTIVE 2:CREATE 2:INITDIALOG 2:SETACTIVE "
                         "2:KILLACTIVE 1:APPLY 2:APPLY 2:SETACTIVE 2:HELP 2:COMMAND 2:KILLACTIVE 1:APPLY! 2:APPLY! "
                         "1:DESTROY 1:RELEASE 2:DESTROY 2:RELEASE 3:RELEASE ");
    EXPECT_EQ(captionAtStart, L"Caption");
    EXPECT_FALSE(ownerAtStart);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_FALSE(IsWindow(sheet));
}

TEST_F(PropertySheets, AskThePagesBeforeTheyAreClosed) {
    const std::string start = "1:ADDREF 2:ADDREF INITIALIZED 2:CREATE 2:INITDIALOG 2:SETACTIVE ";
    const std::string end = "1:RELEASE 2:DESTROY 2:RELEASE ";
    posted = {{PSM_PRESSBUTTON, PSBTN_CANCEL}};
    EXPECT_EQ(open(0, {page(1), page(2)}, 1), 0);
    EXPECT_EQ(takeLog(), start + "2:QUERYCANCEL 2:RESET " + end);

    answers = {{{2, PSN_KILLACTIVE}, TRUE}};
    posted = {{PSM_SETCURSEL, 0}, {WM_COMMAND, IDOK}, {WM_CLOSE, 0}};
    EXPECT_EQ(open(0, {page(1), page(2)}, 1), 0);
    EXPECT_EQ(takeLog(), start + "2:KILLACTIVE 2:KILLACTIVE 2:QUERYCANCEL 2:RESET! " + end);

    answers = {{{1, PSN_APPLY}, PSNRET_INVALID}};
    posted = {{PSM_SETCURSEL, 0}, {PSM_SETCURSEL, 1}, {WM_COMMAND, IDOK}, {PSM_PRESSBUTTON, PSBTN_HELP}, {WM_CLOSE, 0}};
    EXPECT_EQ(open(0, {page(1), page(2)}, 1), 0);
    EXPECT_NE(takeLog().find("2:KILLACTIVE 1:APPLY! 1:HELP 1:QUERYCANCEL 1:RESET! 2:RESET! "), std::string::npos);
}

TEST_F(PropertySheets, OfWizardsTurnTheirPages) {
    posted = {{PSM_PRESSBUTTON, PSBTN_NEXT},
              {PSM_PRESSBUTTON, PSBTN_NEXT},
              {PSM_PRESSBUTTON, PSBTN_BACK},
              {PSM_PRESSBUTTON, PSBTN_FINISH}};
    EXPECT_EQ(open(PSH_WIZARD, {page(1), page(2)}, 7), 1);
    EXPECT_EQ(takeLog(), "1:ADDREF 2:ADDREF INITIALIZED 1:CREATE 1:INITDIALOG 1:SETACTIVE "
                         "1:WIZNEXT 1:KILLACTIVE 2:CREATE 2:INITDIALOG 2:SETACTIVE "
                         "2:WIZNEXT 2:WIZBACK 2:KILLACTIVE 1:SETACTIVE 1:WIZFINISH "
                         "1:DESTROY 1:RELEASE 2:DESTROY 2:RELEASE ");

    // The first page does not want to be shown, the third stays, and the fourth leads to the second.
    answers = {{{1, PSN_SETACTIVE}, -1}, {{3, PSN_WIZNEXT}, -1}, {{4, PSN_WIZBACK}, 143}};
    open(PSH_WIZARD | PSH_MODELESS, {page(1), page(2, 143), page(3), page(4)});
    EXPECT_EQ(pageNumber(), 2);
    EXPECT_EQ(textOf(sheet), L"Page 2");
    send(PSM_PRESSBUTTON, PSBTN_NEXT);
    send(PSM_PRESSBUTTON, PSBTN_NEXT);
    EXPECT_EQ(pageNumber(), 3);
    EXPECT_EQ(send(PSM_SETCURSEL, 3), TRUE);
    send(PSM_PRESSBUTTON, PSBTN_BACK);
    EXPECT_EQ(pageNumber(), 2);
    EXPECT_EQ(send(PSM_IDTOINDEX, 0, 143), 1);
    EXPECT_EQ(send(PSM_INDEXTOID, 1), 143);
    EXPECT_EQ(send(PSM_INDEXTOID, 0), 0);
    EXPECT_EQ(send(PSM_IDTOINDEX, 0, 144), -1);

    const std::vector<std::pair<DWORD, std::string>> rows = {
        {0, "bb-"}, {PSWIZB_BACK, "Bb-"}, {PSWIZB_NEXT, "bB-"}, {PSWIZB_FINISH, "b-B"}, {PSWIZB_DISABLEDFINISH, "b-b"}};
    for (const auto& [buttons, expected] : rows) {
        send(PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(buttons));
        std::string states;
        for (const int id : {0x3023, 0x3024, 0x3025}) {
            const HWND button = GetDlgItem(sheet, id);
            const bool isShown = (static_cast<DWORD>(GetWindowLongW(button, GWL_STYLE)) & WS_VISIBLE) != 0;
            states += !isShown ? '-' : IsWindowEnabled(button) ? 'B' : 'b';
        }
        EXPECT_EQ(states, expected);
    }
    DestroyWindow(sheet);
}

TEST_F(PropertySheets, KnowTheirPagesAndWhetherTheyChanged) {
    EXPECT_EQ(reinterpret_cast<HWND>(open(PSH_MODELESS, {page(1), page(2)})), sheet);
    EXPECT_EQ(GetWindow(sheet, GW_OWNER), owner);
    EXPECT_EQ(GetParent(pageWindow()), sheet);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(pageWindow(), GWL_STYLE)),
              WS_CHILD | WS_VISIBLE | WS_TABSTOP | DS_CONTROL | DS_3DLOOK);
    EXPECT_EQ(send(PSM_HWNDTOINDEX, reinterpret_cast<WPARAM>(pageWindow())), 0);
    EXPECT_EQ(send(PSM_INDEXTOPAGE, 2), 0);
    EXPECT_EQ(send(PSM_SETCURSEL, 2), FALSE);
    EXPECT_EQ(send(PSM_SETCURSEL, 0, send(PSM_INDEXTOPAGE, 1)), TRUE);
    EXPECT_EQ(pageNumber(), 2);
    EXPECT_EQ(reinterpret_cast<HWND>(send(PSM_INDEXTOHWND, 1)), pageWindow());
    const HWND apply = GetDlgItem(sheet, 0x3021);
    EXPECT_FALSE(IsWindowEnabled(apply));
    send(PSM_CHANGED, reinterpret_cast<WPARAM>(pageWindow()));
    EXPECT_TRUE(IsWindowEnabled(apply));
    send(PSM_PRESSBUTTON, PSBTN_APPLYNOW);
    EXPECT_FALSE(IsWindowEnabled(apply));
    send(PSM_PRESSBUTTON, PSBTN_CANCEL);
    EXPECT_EQ(pageWindow(), nullptr);
    EXPECT_TRUE(IsWindow(sheet));
    DestroyWindow(sheet);
}

TEST_F(PropertySheets, TakeOlderRecordsOneBehindTheOther) {
    constexpr std::size_t size = offsetof(PROPSHEETPAGEA, pszHeaderTitle);
    std::array<char, 2 * size> records{};
    for (const std::size_t i : {0, 1}) {
        auto given = record<PROPSHEETPAGEA>(static_cast<LPARAM>(i), MAKEINTRESOURCEA(17));
        given.dwSize = size;
        std::memcpy(records.data() + i * size, &given, size);
    }
    PROPSHEETHEADERA header{};
    header.dwSize = static_cast<DWORD>(PROPSHEETHEADERA_V1_SIZE);
    header.dwFlags = PSH_USECALLBACK | PSH_MODELESS | PSH_PROPSHEETPAGE | PSH_WIZARD;
    header.hInstance = GetModuleHandleW(nullptr);
    header.nPages = 2;
    header.nStartPage = 1;
    header.ppsp = reinterpret_cast<const PROPSHEETPAGEA*>(records.data());
    header.pfnCallback = &sheetCallback;
    EXPECT_EQ(reinterpret_cast<HWND>(EQ_SYSTEM(PropertySheetA)(&header)), sheet);
    EXPECT_EQ(textOf(sheet), L"no key");
    DestroyWindow(sheet);
    EXPECT_EQ(takeLog(), "INITIALIZED 1:CREATE 1:INITDIALOG 1:SETACTIVE 0:RELEASE 1:DESTROY 1:RELEASE ");
}

TEST_F(PropertySheets, RefuseWhatIsNoRecordAndLeaveOutPagesWithoutATemplate) {
    auto given = record<PROPSHEETPAGEW>(1, L"title");
    given.dwSize = static_cast<DWORD>(PROPSHEETPAGEW_V1_SIZE - 1);
    EXPECT_EQ(create(&given), nullptr);
    EXPECT_FALSE(destroy(nullptr));
    EXPECT_EQ(takeLog(), "");
    ++given.dwSize;
    const HPROPSHEETPAGE made = create(&given);
    EXPECT_TRUE(destroy(made));
    EXPECT_EQ(takeLog(), "1:RELEASE ");
    open(PSH_MODELESS, {page(1, 9999), page(2)});
    EXPECT_EQ(send(PSM_INDEXTOPAGE, 1), 0);
    EXPECT_EQ(pageNumber(), 2);
    DestroyWindow(sheet);
#ifndef _WIN32
    // Wine fails in such cases, or goes on.
    EXPECT_FALSE(destroy(made));
    EXPECT_EQ(open(0, {}), -1);
    EXPECT_EQ(open(0, std::vector<HPROPSHEETPAGE>(MAXPROPPAGES + 1)), -1);
    constexpr DWORD wizard97 = 0x01000000;
    EXPECT_EQ(open(wizard97, {made}), -1);
    EXPECT_EQ(open(0, {page(1, 9999)}), -1);
    refusedPage = 2;
    EXPECT_EQ(open(0, {page(1), page(2)}, 1), -1);
    EXPECT_TRUE(IsWindowEnabled(owner));

    UINT users = 1;
    given.dwFlags |= PSP_USEREFPARENT;
    given.pcRefParent = &users;
    const HPROPSHEETPAGE counted = create(&given);
    EXPECT_EQ(users, 2U);
    EXPECT_TRUE(destroy(counted));
    EXPECT_EQ(users, 1U);
#endif
}

} // namespace
