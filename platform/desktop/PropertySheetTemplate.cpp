#include "platform/desktop/PropertySheetTemplate.h"

#include "platform/desktop/MessageBox.h"
#include "platform/desktop/PropertySheets.h"

namespace eq::standin {

namespace {

// Ids of buttons. Win32 has names for only some of them.
constexpr int IdHelp = 9;
constexpr int IdApply = 0x3021;
constexpr int IdBack = 0x3023;
constexpr int IdNext = 0x3024;
constexpr int IdFinish = 0x3025;

// Sizes in dialog units.
constexpr int Width = 276;
constexpr int Height = 240;
constexpr int ButtonWidth = 50;
constexpr int ButtonHeight = 14;
constexpr int Gap = 4;

} // namespace

struct PropertySheetTemplate::Button {
    int id;
    std::wstring_view text;
    DWORD style = WS_VISIBLE;
};

std::vector<PropertySheetTemplate::Button> PropertySheetTemplate::buttonsOf(DWORD sheetFlags) {
    const auto shownWith = [sheetFlags](DWORD flag) { return (sheetFlags & flag) != 0 ? WS_VISIBLE : 0; };
    const Button cancel{IDCANCEL, L"Cancel"};
    const Button help{IdHelp, L"Help", shownWith(PSH_HASHELP)};
    if ((sheetFlags & PSH_WIZARD) == 0) {
        const DWORD applyShown = (sheetFlags & PSH_NOAPPLYNOW) == 0 ? WS_VISIBLE : 0;
        return {{IDOK, L"OK"}, cancel, {IdApply, L"&Apply", applyShown | WS_DISABLED}, help};
    }
    return {{IdBack, L"< &Back"}, {IdNext, L"&Next >"}, {IdFinish, L"Finish", 0}, cancel, help};
}

PropertySheetTemplate::PropertySheetTemplate(DWORD sheetFlags) {
    constexpr DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VISIBLE | DS_SETFONT;
    const auto buttons = buttonsOf(sheetFlags);
    const int count = static_cast<int>(buttons.size());
    doubleWord(style);
    doubleWord(0);
    for (const int number : {count, 0, 0, Width, Height, 0, 0}) word(number);
    text((sheetFlags & PSH_WIZARD) != 0 ? L"Wizard" : L"");
    word(8);
    text(L"MS Shell Dlg");
    int x = Width - (ButtonWidth + Gap) * count;
    for (const Button& next : buttons) {
        button(next, x);
        x += ButtonWidth + Gap;
    }
}

void PropertySheetTemplate::text(std::wstring_view value) {
    for (const wchar_t unit : value) word(static_cast<int>(unit));
    word(0);
}

void PropertySheetTemplate::button(const Button& button, int x) {
    constexpr int buttonClass = 0x0080;
    if (m_words.size() % 2 != 0) word(0);
    doubleWord(WS_CHILD | WS_TABSTOP | button.style);
    doubleWord(0);
    for (const int number : {x, Height - ButtonHeight - Gap, ButtonWidth, ButtonHeight, button.id}) word(number);
    for (const int number : {0xFFFF, buttonClass}) word(number);
    text(button.text);
    word(0);
}

} // namespace eq::standin
