#include "wedge/functions/WedgeEntryPoints.h"

#include "platform/SystemHandles.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/TestWindows.h"
#include "wedge/OwnModule.h"
#include "wedge/functions/PropertySheetForms.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

// The pages are in Wedge.rc, their texts in UnitTests1033.lng.

namespace eq {

namespace {

constexpr LPARAM CallersValue = 0x1234;

// Wine's sheet reads the handle of PSM_PAGETOINDEX from wParam, and uses the null handle of a page that was refused. It
// also shows a page whose callback refuses, and has its own caption if the caller's caption is missing.
#ifdef _WIN32
constexpr bool SystemIsExact = false;
#else
constexpr bool SystemIsExact = true;
#endif

thread_local std::wstring okText;     // the text of the OK button when the last sheet was initialized
thread_local PROPSHEETPAGEW lastPage; // the record in the last call of a page's callback
thread_local int livePages = 0;       // the pages that the callback has seen and that are not released
thread_local UINT answerToCreate = 1;
using Messages = std::vector<std::array<std::uintptr_t, 3>>;
thread_local Messages forwarded; // messages that the sheet passed to the system
thread_local LPARAM ownData = 0; // the caller's data after the record of the last page with such data
thread_local LONG_PTR answerToTurn = 0;
thread_local std::function<void()> aheadOfTheWindow; // runs once, before the next sheet has its window

/// A page's record, followed by the caller's own data.
struct LongPage {
    PROPSHEETPAGEW record;
    LPARAM own;
};

INT_PTR CALLBACK pageProcedure(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const auto* const record = reinterpret_cast<PROPSHEETPAGEW*>(lParam);
        EXPECT_EQ(record->lParam, CallersValue);
        if (record->dwSize == sizeof(LongPage)) ownData = reinterpret_cast<LongPage*>(lParam)->own;
    }
    const UINT code = message == WM_NOTIFY ? reinterpret_cast<NMHDR*>(lParam)->code : 0;
    const bool turns = code == static_cast<UINT>(PSN_WIZNEXT) || code == static_cast<UINT>(PSN_WIZBACK);
    if (turns) SetWindowLongPtrW(page, DWLP_MSGRESULT, answerToTurn);
    return turns;
}

UINT CALLBACK pageCallback(HWND, UINT message, PROPSHEETPAGEW* page) {
    EXPECT_EQ(page->lParam, CallersValue);
    EXPECT_EQ(page->pfnDlgProc, pageProcedure);
    lastPage = *page;
    if (message == PSPCB_ADDREF) ++livePages;
    if (message == PSPCB_RELEASE) --livePages;
    return message == PSPCB_CREATE ? answerToCreate : 0;
}

int CALLBACK sheetCallback(HWND sheet, UINT message, LPARAM lParam) {
    if (message == PSCB_PRECREATE) {
        // Hides the sheet, because a real window system needs time to show a window.
        auto* const fields = reinterpret_cast<DWORD*>(lParam);
        fields[HIWORD(fields[0]) == 0xFFFF ? 3 : 0] &= ~DWORD{WS_VISIBLE}; // the extended form begins with three fields
        if (const auto action = std::exchange(aheadOfTheWindow, nullptr)) action();
    }
    if (message == PSCB_INITIALIZED) okText = textOf(GetDlgItem(sheet, IDOK));
    return 0;
}

/// Replaces the dialog procedure of a sheet.
INT_PTR CALLBACK recordMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message >= PSM_SETCURSEL && message <= PSM_INDEXTOID)
        forwarded.push_back({message, wParam, static_cast<std::uintptr_t>(lParam)});
    return 0;
}

/// A caller's header and three page records, and the modeless window that `open` creates from them.
struct Sheet {
    explicit Sheet(DWORD flags = 0) {
        readyCommonControls();
        for (unsigned i = 0; i < 3; ++i) {
            pages[i].dwSize = sizeof pages[i];
            pages[i].dwFlags = PSP_USETITLE | PSP_USECALLBACK;
            pages[i].hInstance = ownModule();
            pages[i].pszTemplate = MAKEINTRESOURCEW(151 + i);
            pages[i].pszTitle = MAKEINTRESOURCEW(48);
            pages[i].pfnDlgProc = pageProcedure;
            pages[i].lParam = CallersValue;
            pages[i].pfnCallback = pageCallback;
        }
        header.dwSize = sizeof header;
        header.dwFlags = flags | PSH_MODELESS | PSH_PROPSHEETPAGE | PSH_USECALLBACK;
        header.hInstance = ownModule();
        header.pszCaption = MAKEINTRESOURCEW(49);
        header.nPages = 3;
        header.ppsp = pages.data();
        header.pfnCallback = sheetCallback;
    }

    void open() { window = Window(reinterpret_cast<HWND>(PropertySheetW(&header))); }
    LRESULT send(UINT message, WPARAM wParam, LPARAM lParam = 0) const {
        MSG posted;
        while (PeekMessageW(&posted, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&posted);
        return SendMessageW(window.get(), message, wParam, lParam);
    }
    HWND page() const { return reinterpret_cast<HWND>(send(PSM_GETCURRENTPAGEHWND, 0)); }
    std::wstring label() const { return textOf(GetDlgItem(page(), 1001)); }
    /// Returns the messages by resource id that the sheet passes to the system.
    Messages forwardedTo(unsigned id) const {
        forwarded.clear();
        const LONG_PTR own = SetWindowLongPtrW(window.get(), DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(recordMessage));
        for (const UINT message : {PSM_SETCURSELID, PSM_IDTOINDEX, PSM_INDEXTOID})
            SendMessageW(window.get(), message, 1, static_cast<LPARAM>(id));
        SetWindowLongPtrW(window.get(), DWLP_DLGPROC, own);
        return forwarded;
    }
    std::wstring textOfItem(int id) const { return textOf(GetDlgItem(window.get(), id)); }

    std::array<PROPSHEETPAGEW, 3> pages{};
    PROPSHEETHEADERW header{};
    Window window;
};

/// Returns a block of exactly the given records, one after the other. Each record has as many bytes as its size states.
template <typename... Records>
std::unique_ptr<std::byte[]> exactBytes(const Records&... records) {
    auto bytes = std::make_unique<std::byte[]>((records.dwSize + ...));
    std::byte* end = bytes.get();
    ((std::memcpy(end, &records, records.dwSize), end += records.dwSize), ...);
    return bytes;
}

} // namespace

TEST(WedgeSheets, AreTranslatedAndDoNotChangeTheCallersRecords) {
    Sheet sheet(PSH_HASHELP);
    const auto before = sheet.pages;
    narrowCalls = 0;
    sheet.open();
    EXPECT_EQ(narrowCalls, 0);
    EXPECT_EQ(textOf(sheet.window.get()), L"the caption S");
    EXPECT_STREQ(lastPage.pszTitle, L"the title SS");
    EXPECT_EQ(sheet.label(), L"A longer translation");
    // Cancel, Help, and Apply, which has no translation.
    for (const auto& [id, text] : {std::pair(IDCANCEL, L"Leave"), {9, L"What?"}, {0x3021, L""}})
        EXPECT_EQ(sheet.textOfItem(id), text) << id;
    EXPECT_EQ(okText, L"All right") << "the caller's callback must run after the texts are set";
    EXPECT_EQ(std::memcmp(sheet.pages.data(), before.data(), sizeof before), 0);
    SetLastError(0);
    sheet.window.reset();
    EXPECT_TRUE(!SystemIsExact || GetLastError() == 0) << "a page was destroyed twice";
}

TEST(WedgeSheets, AnswerMessagesThatNameAPageByItsResourceId) {
    Sheet sheet(PSH_USEPSTARTPAGE);
    sheet.header.pStartPage = MAKEINTRESOURCEW(152);
    sheet.open();
    EXPECT_EQ(sheet.label(), L"SS");
    // Only the low 16 bits of an id count.
    EXPECT_TRUE(!SystemIsExact || sheet.send(PSM_IDTOINDEX, 0, 0x10000 + 153) == 2);
    EXPECT_EQ(sheet.send(PSM_IDTOINDEX, 0, 999), 0);
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 2), 153);
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 7), 0);
    sheet.send(PSM_SETCURSELID, 0, 151);
    EXPECT_EQ(sheet.label(), L"A longer translation");
    const Messages ofPages = sheet.forwardedTo(152);
    const std::uintptr_t page = ofPages.at(0)[2];
    EXPECT_EQ(ofPages, (Messages{{PSM_SETCURSEL, 152, page}, {PSM_PAGETOINDEX, 0, page}, {PSM_INDEXTOPAGE, 1, 0}}));
    EXPECT_EQ(sheet.forwardedTo(999), (Messages{{PSM_SETCURSELID, 0, 999}, {PSM_INDEXTOPAGE, 1, 0}}));
}

TEST(WedgeSheets, DoNotConfuseTheNameOfAStartPageWithAnId) {
    // This memory contains an address whose low 16 bits equal the id of a page.
    std::vector<char> memory(0x20000);
    const auto behindStart = (std::uintptr_t{152} - reinterpret_cast<std::uintptr_t>(memory.data())) & 0xFFFF;
    Sheet sheet(PSH_USEPSTARTPAGE);
    sheet.header.pStartPage = reinterpret_cast<LPCWSTR>(memory.data() + behindStart);
    sheet.open();
    EXPECT_NE(sheet.label(), L"SS");
    EXPECT_TRUE(isStringId(MAKEINTRESOURCEA(0xFFFF)) && !isStringId(MAKEINTRESOURCEA(0xFFFF) + 1));
}

TEST(WedgeSheets, TurnAWizardToThePageOfAResourceId) {
    Sheet sheet(PSH_WIZARD);
    sheet.open();
    EXPECT_EQ(sheet.textOfItem(0x3023) + L", " + sheet.textOfItem(0x3024), L"To the last, To the next");
    EXPECT_EQ(sheet.textOfItem(0x3025), L"Done");
    // clang-format off
    const std::tuple<WPARAM, LONG_PTR, const wchar_t*> turns[] = {
        {PSBTN_NEXT, -1, L"A longer translation"}, {PSBTN_NEXT, 0, L"SS"}, {PSBTN_BACK, 0, L"A longer translation"},
        {PSBTN_NEXT, 153, L"S"}, {PSBTN_BACK, 152, L"SS"}};
    // clang-format on
    for (const auto& [button, answer, label] : turns) {
        answerToTurn = answer;
        sheet.send(PSM_PRESSBUTTON, button);
        EXPECT_EQ(sheet.label(), label) << answer;
    }
    answerToTurn = 1;
    NMHDR notice{nullptr, 0, static_cast<UINT>(PSN_WIZNEXT)};
    EXPECT_EQ(SendMessageW(sheet.page(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notice)), -1)
        << "the wizard must stay on its page";
}

TEST(WedgeSheets, AcceptPageHandlesAndDoNotTranslateTemplatesInMemory) {
    const DialogTemplateBuilder dialog(true, WS_CHILD, {{u"\x82", 1001, WS_CHILD | WS_VISIBLE, u"{T_Short}"}});
    Sheet sheet;
    sheet.pages[2].dwFlags |= PSP_DLGINDIRECT;
    sheet.pages[2].pResource = dialog.get();
    std::array handles = {CreatePropertySheetPageW(&sheet.pages[1]), CreatePropertySheetPageW(&sheet.pages[2])};
    sheet.header.dwFlags &= ~static_cast<DWORD>(PSH_PROPSHEETPAGE);
    sheet.header.phpage = handles.data();
    sheet.header.nPages = 2;
    sheet.open();
    EXPECT_EQ(sheet.label(), L"SS");
    sheet.send(PSM_SETCURSEL, 1);
    EXPECT_EQ(sheet.label(), L"{T_Short}");
    EXPECT_EQ(sheet.forwardedTo(152),
              (Messages{{PSM_SETCURSELID, 0, 152}, {PSM_IDTOINDEX, 0, 152}, {PSM_INDEXTOID, 1, 152}}));
}

TEST(WedgeSheets, LeaveAMissingTemplateTitleAndCaptionToTheSystem) {
    Sheet sheet;
    sheet.header.pszCaption = MAKEINTRESOURCEW(999);
    sheet.pages[1].pszTemplate = sheet.pages[1].pszTitle = MAKEINTRESOURCEW(999);
    EXPECT_NE(DestroyPropertySheetPage(CreatePropertySheetPageW(&sheet.pages[1])), 0);
    EXPECT_EQ(std::memcmp(&lastPage, &sheet.pages[1], offsetof(PROPSHEETPAGEW, pfnCallback)), 0);
    sheet.open();
    EXPECT_TRUE(!SystemIsExact || textOf(sheet.window.get()).empty());
    sheet.send(PSM_SETCURSEL, 1);
    EXPECT_EQ(sheet.label(), L"S") << "the second page is missing";
}

TEST(WedgeSheets, CallOnlyCallbacksThatTheirFlagsEnable) {
    Sheet sheet;
    sheet.header.dwFlags &= ~static_cast<DWORD>(PSH_USECALLBACK);
    sheet.pages[0].dwFlags &= ~static_cast<DWORD>(PSP_USECALLBACK);
    sheet.pages[1].pfnCallback = nullptr;
    sheet.header.nPages = 2;
    okText = L"not called";
    livePages = 0;
    sheet.open();
    EXPECT_EQ(sheet.label() + sheet.textOfItem(IDOK), L"A longer translationAll right");
    EXPECT_EQ(okText, L"not called");
    EXPECT_EQ(livePages, 0);
    sheet.send(PSM_SETCURSEL, 1);
    EXPECT_EQ(sheet.label(), L"SS");
    Sheet refused;
    answerToCreate = 0;
    refused.open();
    answerToCreate = 1;
    EXPECT_TRUE(!SystemIsExact || refused.label().empty());
}

TEST(WedgeSheets, DestroyTheirPagesIfTheyAreRefused) {
    if (!SystemIsExact) GTEST_SKIP() << "the system keeps the pages";
    livePages = 0;
    Sheet refused;
    refused.header.hwndParent = reinterpret_cast<HWND>(std::uintptr_t{0xBAD});
    EXPECT_LE(PropertySheetW(&refused.header), 0);
    EXPECT_EQ(livePages, 0);
    int failures = 0;
    for (long granted = 0; granted < 60; ++granted) {
        Sheet sheet;
        livePages = 0;
        try {
            const allocations::Shortage shortage(granted, 1);
            sheet.open();
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(livePages, 0) << granted;
            ++failures;
        }
    }
    EXPECT_GT(failures, 20);
}

TEST(WedgeSheets, AreTranslatedInTheNarrowFormAndNotReadBeyondTheirSize) {
    // The records have the sizes of their oldest forms.
    PROPSHEETPAGEA page{};
    page.dwSize = offsetof(PROPSHEETPAGEA, pcRefParent) + sizeof(UINT*);
    page.hInstance = ownModule();
    page.pszTemplate = MAKEINTRESOURCEA(153);
    PROPSHEETPAGEA noPage{};
    noPage.dwSize = offsetof(PROPSHEETPAGEA, pszTitle);
    noPage.pszTemplate = MAKEINTRESOURCEA(152);
    const auto exactPages = exactBytes(page, noPage);
    PROPSHEETHEADERA header{};
    header.dwSize = offsetof(PROPSHEETHEADERA, pfnCallback) + sizeof(PFNPROPSHEETCALLBACK);
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_MODELESS;
    header.pszCaption = "caption";
    header.nPages = SystemIsExact ? 2 : 1;
    header.ppsp = reinterpret_cast<const PROPSHEETPAGEA*>(exactPages.get());
    const auto exactHeader = exactBytes(header);
    narrowCalls = 0;
    const INT_PTR opened = PropertySheetA(reinterpret_cast<const PROPSHEETHEADERA*>(exactHeader.get()));
    Sheet sheet;
    sheet.window = Window(reinterpret_cast<HWND>(opened));
    EXPECT_TRUE(!SystemIsExact || narrowCalls == 1) << "the window must have a narrow procedure";
    EXPECT_EQ(textOf(sheet.window.get()), L"caption");
    EXPECT_EQ(sheet.label(), L"S");
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 7), 0) << "the refused page has no index";
}

TEST(WedgeSheets, AcceptAnyNumberOfPagesWithTheCallersDataAfterEachRecord) {
    Sheet sheet;
    std::vector<LongPage> pages(120, {sheet.pages[0], 0});
    pages.back().record.pszTemplate = sheet.pages[1].pszTemplate;
    for (LongPage& page : pages) {
        page.record.dwSize = sizeof page;
        page.own = 1000 + (&page - pages.data());
    }
    sheet.header.nPages = 120;
    sheet.header.ppsp = &pages.front().record;
    sheet.open();
    EXPECT_EQ(ownData, 1000);
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 119), 152);
    sheet.send(PSM_SETCURSEL, 119);
    EXPECT_EQ(sheet.label(), L"SS");
    EXPECT_EQ(ownData, 1119);
}

TEST(WedgeSheets, LeaveOnlyTheirThunksInMemory) {
    const auto openAndRefuse = [](int times) {
        for (int i = 0; i < times; ++i) {
            UINT users = 1;
            Sheet sheet;
            sheet.open(); // two of its pages are never shown
            sheet.pages[0].dwFlags |= PSP_USEREFPARENT;
            sheet.pages[0].pcRefParent = &users;
            const HPROPSHEETPAGE page = CreatePropertySheetPageW(&sheet.pages[0]);
            EXPECT_TRUE(!SystemIsExact || users == 2);
            EXPECT_NE(DestroyPropertySheetPage(page), 0);
            EXPECT_EQ(users, 1U);
            sheet.pages[0].dwSize = offsetof(PROPSHEETPAGEW, pcRefParent); // shorter than the oldest form
            EXPECT_EQ(CreatePropertySheetPageW(&sheet.pages[0]), nullptr);
            sheet.pages[0].dwSize = sizeof sheet.pages[0];
            sheet.header.hwndParent = reinterpret_cast<HWND>(std::uintptr_t{0xBAD});
            EXPECT_LE(PropertySheetW(&sheet.header), 0) << "the sheet must have no window";
        }
    };
    // On Windows `heapInUse` counts bytes, and Wine also keeps the pages of a sheet that it refuses. On Linux
    // `heapInUse` counts blocks. A page leaves four blocks: the thunk, its owner, and one node in each of two maps.
    constexpr long LeftByAPage = SystemIsExact ? 4 : 40 * sizeof(void*);
    openAndRefuse(3);
    const long before = heapInUse();
    openAndRefuse(50);
    EXPECT_LE(heapInUse() - before, 50 * 7 * LeftByAPage);
}

TEST(WedgeSheets, MayBeOpenedWhileAnotherSheetIsBeingOpened) {
    Sheet inner, outer;
    aheadOfTheWindow = [&inner] { inner.open(); };
    outer.open();
    for (const Sheet* const sheet : {&inner, &outer}) EXPECT_EQ(sheet->textOfItem(IDCANCEL), L"Leave");
}

TEST(WedgeSheets, WaitUntilAnotherThreadHasOpenedItsSheet) {
    std::atomic<bool> isOpen = false;
    std::thread other;
    Sheet sheet;
    aheadOfTheWindow = [&] {
        other = std::thread([&isOpen] {
            Sheet inner;
            inner.open();
            isOpen = true;
            EXPECT_EQ(inner.send(PSM_INDEXTOID, 1), 152);
            EXPECT_EQ(inner.label(), L"A longer translation");
        });
        for (int turn = 0; turn < 30 && !isOpen; ++turn) std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_FALSE(isOpen);
    };
    sheet.open();
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 2), 153);
    other.join();
}

} // namespace eq
