#include "platform/win32.h"

#include <gtest/gtest.h>

#include <vector>

// This test is a separate program, because no code may load the common controls in its process.

namespace eq {

TEST(PropertySheets, FailWithoutTheCommonControls) {
    ASSERT_EQ(GetModuleHandleA("comctl32"), nullptr);
    std::vector<PROPSHEETPAGEW> pages(101);
    for (PROPSHEETPAGEW& page : pages) page.dwSize = sizeof page;
    PROPSHEETPAGEA narrowPage{};
    narrowPage.dwSize = sizeof narrowPage;
    PROPSHEETHEADERA narrowHeader{};
    narrowHeader.dwSize = sizeof narrowHeader;
    PROPSHEETHEADERW header{};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE;
    header.nPages = 101;
    header.ppsp = pages.data();

    EXPECT_EQ(CreatePropertySheetPageA(&narrowPage), nullptr);
    EXPECT_EQ(CreatePropertySheetPageW(pages.data()), nullptr);
    EXPECT_EQ(PropertySheetA(&narrowHeader), 0);
    EXPECT_EQ(PropertySheetW(&header), 0);
    EXPECT_EQ(DestroyPropertySheetPage(nullptr), 0);
}

} // namespace eq
