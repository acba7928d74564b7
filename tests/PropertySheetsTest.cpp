#include "wedge/WedgeEntryPoints.h"

#include "platform/Owners.h"
#include "tests/support/DialogTemplateBuilder.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/WindowTexts.h"
#include "wedge/OwnModule.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#include "tests/support/AllocationCounter.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

// The pages are those of Wedge.rc, the texts those of the language file beside the test program.

namespace {

constexpr LPARAM CallersValue = 0x1234;

// Wine's sheet looks for PSM_PAGETOINDEX's handle in wParam, opens without a page, and does not bear null records.
#ifdef _WIN32
constexpr bool SystemIsExact = false;
#else
constexpr bool SystemIsExact = true;
#endif

/// What the callers' procedures were told, by all pages of the one thread that opens sheets.
struct Seen {
    std::wstring okTextAtInitialization;
    int pagesInitialized = 0;
    std::wstring lastLabel; // as a page was initialized
    int wrongValues = 0;    // of a page's record, anywhere
    std::wstring firstTitle;
    LONG_PTR answerToNext = 0;
    bool closeAtOnce = false;
};
thread_local Seen seen;

INT_PTR CALLBACK pageProcedure(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        ++seen.pagesInitialized;
        const auto* const record = reinterpret_cast<const PROPSHEETPAGEW*>(lParam);
        seen.wrongValues += record->lParam != CallersValue || record->pfnDlgProc != pageProcedure;
        seen.lastLabel = textOf(GetDlgItem(page, 1001));
        if (seen.closeAtOnce) PostMessageW(GetParent(page), PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    }
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(PSN_WIZNEXT)) {
        SetWindowLongPtrW(page, DWLP_MSGRESULT, seen.answerToNext);
        return TRUE;
    }
    return 0;
}

UINT CALLBACK pageCallback(HWND, UINT, PROPSHEETPAGEW* page) {
    seen.wrongValues += page->lParam != CallersValue || page->pfnDlgProc != pageProcedure;
    if (seen.firstTitle.empty() && (page->dwFlags & PSP_USETITLE) != 0) seen.firstTitle = page->pszTitle;
    return 1;
}

/// Windows take their time to show a window, and nobody looks.
void keepInvisible(DLGTEMPLATE* sheet) {
    const bool isExtended = HIWORD(sheet->style) == 0xFFFF;
    DWORD& style = isExtended ? *(reinterpret_cast<DWORD*>(sheet) + 3) : sheet->style;
    style &= ~static_cast<DWORD>(WS_VISIBLE);
}

int CALLBACK sheetCallback(HWND sheet, UINT message, LPARAM lParam) {
    if (message == PSCB_PRECREATE) keepInvisible(reinterpret_cast<DLGTEMPLATE*>(lParam));
    if (message == PSCB_INITIALIZED) seen.okTextAtInitialization = textOf(GetDlgItem(sheet, IDOK));
    return 0;
}

PROPSHEETPAGEW pageOf(unsigned id) {
    PROPSHEETPAGEW page{};
    page.dwSize = sizeof page;
    page.dwFlags = PSP_USETITLE | PSP_USECALLBACK;
    page.hInstance = ownModule();
    page.pszTemplate = MAKEINTRESOURCEW(id);
    page.pszTitle = id == 151 ? MAKEINTRESOURCEW(48) : L"a text";
    page.pfnDlgProc = pageProcedure;
    page.lParam = CallersValue;
    page.pfnCallback = pageCallback;
    return page;
}

void handlePosted() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

/// Three pages and a header for them, as a caller gives them, and the modeless window that it may open.
struct Sheet {
    explicit Sheet(DWORD flags = 0) {
        header.dwSize = sizeof header;
        header.dwFlags = flags | PSH_MODELESS | PSH_PROPSHEETPAGE | PSH_USECALLBACK;
        header.hInstance = ownModule();
        header.pszCaption = MAKEINTRESOURCEW(49);
        header.nPages = static_cast<UINT>(pages.size());
        header.ppsp = pages.data();
        header.pfnCallback = sheetCallback;
    }

    void open() { window = platform::Window(reinterpret_cast<HWND>(PropertySheetW(&header))); }
    LRESULT send(UINT message, WPARAM wParam, LPARAM lParam = 0) const {
        const LRESULT result = SendMessageW(window.get(), message, wParam, lParam);
        handlePosted();
        return result;
    }
    HWND page() const { return reinterpret_cast<HWND>(send(PSM_GETCURRENTPAGEHWND, 0)); }
    std::wstring label() const { return textOf(GetDlgItem(page(), 1001)); }
    std::wstring textOfItem(int id) const { return textOf(GetDlgItem(window.get(), id)); }

    std::array<PROPSHEETPAGEW, 3> pages = {pageOf(151), pageOf(152), pageOf(153)};
    PROPSHEETHEADERW header{};
    platform::Window window;
};

class WedgeSheets : public testing::Test {
protected:
    WedgeSheets() {
        INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
        InitCommonControlsEx(&controls);
        seen = Seen{};
    }
    ~WedgeSheets() override { EXPECT_EQ(seen.wrongValues, 0); }
};

TEST_F(WedgeSheets, AreTranslatedAndLeaveTheCallersRecordsAsTheyAre) {
    Sheet sheet(PSH_HASHELP);
    const auto before = sheet.pages;
    sheet.open();
    EXPECT_EQ(textOf(sheet.window.get()), L"the caption S");
    EXPECT_EQ(seen.firstTitle, L"the title SS");
    EXPECT_EQ(sheet.label(), L"A longer translation");
    EXPECT_EQ(sheet.textOfItem(IDCANCEL), L"Leave");
    EXPECT_EQ(sheet.textOfItem(9), L"What?");
    EXPECT_EQ(sheet.textOfItem(0x3021), L""); // Apply has no translation
    EXPECT_EQ(seen.okTextAtInitialization, L"All right") << "the user's callback comes behind the texts";
    EXPECT_EQ(seen.pagesInitialized, 1);
    EXPECT_EQ(std::memcmp(sheet.pages.data(), before.data(), sizeof before), 0);
}

TEST_F(WedgeSheets, AnswerTheMessagesThatWorkByResourceId) {
    Sheet sheet(PSH_USEPSTARTPAGE);
    sheet.header.pStartPage = MAKEINTRESOURCEW(152);
    sheet.open();
    EXPECT_EQ(sheet.label(), L"SS");
    if (SystemIsExact) {
        EXPECT_EQ(sheet.send(PSM_IDTOINDEX, 0, 153), 2);
        EXPECT_EQ(sheet.send(PSM_IDTOINDEX, 0, 0x10000 + 152), 1); // the low 16 bits count
    }
    EXPECT_EQ(sheet.send(PSM_IDTOINDEX, 0, 999), 0);
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 0), 151);
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 2), 153);
    EXPECT_EQ(sheet.send(PSM_INDEXTOID, 7), 0);
    sheet.send(PSM_SETCURSELID, 0, 151);
    EXPECT_EQ(sheet.label(), L"A longer translation");
}

TEST_F(WedgeSheets, OfAWizardGoToThePageThatIsNamedByItsId) {
    Sheet sheet(PSH_WIZARD);
    sheet.open();
    EXPECT_EQ(sheet.textOfItem(0x3023), L"To the last");
    EXPECT_EQ(sheet.textOfItem(0x3024), L"To the next");
    EXPECT_EQ(sheet.textOfItem(0x3025), L"Done");
    const auto next = [&](LONG_PTR answer) {
        seen.answerToNext = answer;
        sheet.send(PSM_PRESSBUTTON, PSBTN_NEXT);
        return sheet.label();
    };
    EXPECT_EQ(next(-1), L"A longer translation");

    // The system is told to stay where it is.
    seen.answerToNext = 151;
    PSHNOTIFY notice{};
    notice.hdr.hwndFrom = sheet.window.get();
    notice.hdr.code = static_cast<UINT>(PSN_WIZNEXT);
    EXPECT_EQ(SendMessageW(sheet.page(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notice)), -1);
    handlePosted();
    EXPECT_EQ(next(153), L"S");
    sheet.send(PSM_SETCURSELID, 0, 151);
    EXPECT_EQ(next(0), L"SS");
}

TEST_F(WedgeSheets, TakePagesAsHandlesAndTemplatesInMemoryAsTheyAre) {
    const DialogTemplateBuilder dialog(true, WS_CHILD, {{u"\x82", 1001, WS_CHILD | WS_VISIBLE, u"{T_Short}"}});
    Sheet sheet;
    sheet.pages[2].dwFlags |= PSP_DLGINDIRECT;
    sheet.pages[2].pResource = dialog.get();
    std::array<HPROPSHEETPAGE, 2> handles = {CreatePropertySheetPageW(&sheet.pages[1]),
                                             CreatePropertySheetPageW(&sheet.pages[2])};
    sheet.header.dwFlags &= ~static_cast<DWORD>(PSH_PROPSHEETPAGE);
    sheet.header.phpage = handles.data();
    sheet.header.nPages = 2;
    sheet.header.pszCaption = L"a caption";
    sheet.open();
    EXPECT_EQ(textOf(sheet.window.get()), L"a caption");
    EXPECT_EQ(sheet.label(), L"SS");
    sheet.send(PSM_SETCURSEL, 1);
    EXPECT_EQ(sheet.label(), L"{T_Short}");
    EXPECT_NE(DestroyPropertySheetPage(CreatePropertySheetPageW(&sheet.pages[0])), 0);
}

TEST_F(WedgeSheets, OfTheNarrowFormAreTranslatedTooAndNotReadPastTheirSize) {
    // The oldest forms, at the very end of their memory.
    constexpr std::size_t PageSize = offsetof(PROPSHEETPAGEA, pcRefParent) + sizeof(UINT*);
    constexpr std::size_t HeaderSize = offsetof(PROPSHEETHEADERA, pfnCallback) + sizeof(PFNPROPSHEETCALLBACK);
    const auto pageMemory = std::make_unique<std::byte[]>(PageSize);
    const auto headerMemory = std::make_unique<std::byte[]>(HeaderSize);
    PROPSHEETPAGEA page{};
    page.dwSize = PageSize;
    page.dwFlags = PSP_USETITLE;
    page.hInstance = ownModule();
    page.pszTemplate = MAKEINTRESOURCEA(153);
    page.pszTitle = "title";
    page.pfnDlgProc = pageProcedure;
    page.lParam = CallersValue;
    std::memcpy(pageMemory.get(), &page, PageSize);
    PROPSHEETHEADERA header{};
    header.dwSize = HeaderSize;
    header.dwFlags = PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW;
    header.hInstance = ownModule();
    header.pszCaption = "caption";
    header.nPages = 1;
    header.ppsp = reinterpret_cast<const PROPSHEETPAGEA*>(pageMemory.get());
    std::memcpy(headerMemory.get(), &header, HeaderSize);
    seen.closeAtOnce = true;
    EXPECT_EQ(PropertySheetA(reinterpret_cast<const PROPSHEETHEADERA*>(headerMemory.get())), 0); // cancelled
    EXPECT_EQ(seen.lastLabel, L"S");
}

TEST_F(WedgeSheets, LeaveOnlyTheirThunksBehind) {
    const auto openAndRefuse = [](int times) {
        for (int i = 0; i < times; ++i) {
            Sheet sheet;
            sheet.open(); // two of its pages are never shown
            PROPSHEETPAGEW refused = pageOf(151);
            refused.dwSize = 8;
            EXPECT_EQ(CreatePropertySheetPageW(&refused), nullptr);
            if (!SystemIsExact) continue;
            sheet.header.nPages = 0;
            EXPECT_LE(PropertySheetW(&sheet.header), 0);
        }
    };
#ifdef _WIN32
    constexpr int Sheets = 50;        // each takes a real window system some time
    constexpr long LeftByAPage = 200; // bytes
#else
    constexpr int Sheets = 200;
    constexpr long LeftByAPage = 4; // blocks: the thunk, its owner, and their places in two maps
#endif
    openAndRefuse(3);
    const long before = heapInUse();
    openAndRefuse(Sheets);
    EXPECT_LE(heapInUse() - before, Sheets * 3 * LeftByAPage);
}

#ifndef _WIN32
TEST_F(WedgeSheets, LoseNoPageWhenMemoryIsShort) {
    const std::size_t before = standin::livePropertySheetPages();
    const PROPSHEETPAGEW page = pageOf(151);
    allocations::refuseEachOf([&] {
        if (const HPROPSHEETPAGE made = CreatePropertySheetPageW(&page)) DestroyPropertySheetPage(made);
    });
    EXPECT_EQ(standin::livePropertySheetPages(), before);
}
#endif

TEST_F(WedgeSheets, MayBeOpenOnTwoThreads) {
    std::atomic<int> open = 0;
    std::atomic<int> right = 0;
    const auto useOne = [&] {
        Sheet sheet;
        sheet.open();
        ++open;
        while (open < 2) std::this_thread::yield();
        right += sheet.send(PSM_INDEXTOID, 1) == 152 && sheet.label() == L"A longer translation";
    };
    std::thread other(useOne);
    useOne();
    other.join();
    EXPECT_EQ(right, 2);
}

TEST_F(WedgeSheets, RefuseWhatIsNone) {
    if (SystemIsExact) {
        EXPECT_EQ(CreatePropertySheetPageA(nullptr), nullptr);
        EXPECT_EQ(CreatePropertySheetPageW(nullptr), nullptr);
        EXPECT_LE(PropertySheetW(nullptr), 0);
    }
    Sheet many;
    many.header.nPages = 1000;
    EXPECT_LE(PropertySheetW(&many.header), 0);
}

} // namespace
