#include "platform/win32.h"

#include <gtest/gtest.h>

// A program of its own, in which nobody loads the common controls.

TEST(PropertySheets, AreNotThereWithoutTheCommonControls) {
    ASSERT_EQ(GetModuleHandleA("comctl32"), nullptr);
    PROPSHEETPAGEW page{};
    page.dwSize = sizeof page;
    PROPSHEETPAGEA narrowPage{};
    narrowPage.dwSize = sizeof narrowPage;
    PROPSHEETHEADERA narrowHeader{};
    narrowHeader.dwSize = sizeof narrowHeader;
    PROPSHEETHEADERW header{};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE;
    header.nPages = 1;
    header.ppsp = &page;

    EXPECT_EQ(CreatePropertySheetPageA(&narrowPage), nullptr);
    EXPECT_EQ(CreatePropertySheetPageW(&page), nullptr);
    EXPECT_EQ(PropertySheetA(&narrowHeader), 0);
    EXPECT_EQ(PropertySheetW(&header), 0);
    EXPECT_EQ(DestroyPropertySheetPage(nullptr), 0);
}
