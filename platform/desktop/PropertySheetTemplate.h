#pragma once

#include "platform/desktop/Dialogs.h"

#include <string_view>
#include <vector>

namespace eq::standin {

/// The dialog template of a property sheet: the frame and the buttons. Buttons that the sheet's flags exclude are
/// hidden. The sheet's callback may change the template before the sheet is created.
class PropertySheetTemplate {
public:
    explicit PropertySheetTemplate(DWORD sheetFlags);

    [[nodiscard]] DLGTEMPLATE* get() noexcept { return reinterpret_cast<DLGTEMPLATE*>(m_words.data()); }

private:
    struct Button;

    void word(int value) { m_words.push_back(static_cast<WORD>(value)); }
    void doubleWord(DWORD value) { m_words.insert(m_words.end(), {LOWORD(value), HIWORD(value)}); }
    void text(std::wstring_view value);
    void button(const Button& button, int x);

    static std::vector<Button> buttonsOf(DWORD sheetFlags);

    std::vector<WORD> m_words;
};

} // namespace eq::standin
