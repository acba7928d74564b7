#pragma once

#include "platform/win32.h"

#include "tests/support/TemplateBuilder.h"

#include <string_view>
#include <vector>

namespace eq {

/// A control of a template. A window class of one unit is the number of a predefined class.
struct DialogItem {
    std::u16string_view windowClass;
    unsigned id;
    DWORD style;
    std::u16string_view text = {};
    std::string_view creationData = "secret";
};

/// Builds a dialog of 100 by 50 units. The dialog has a font if its style includes one.
class DialogTemplateBuilder {
public:
    DialogTemplateBuilder(bool extended, DWORD style, const std::vector<DialogItem>& items,
                          std::u16string_view caption = u"Caption", unsigned points = 8,
                          std::u16string_view face = u"MS Shell Dlg") {
        if (extended) m_template.words({1, 0xFFFF});
        addStyle(extended, style);
        m_template.word(static_cast<unsigned>(items.size())).words({2, 4, 100, 50, 0, 0}).text(caption);
        if ((style & (extended ? DS_SETFONT | DS_FIXEDSYS : DS_SETFONT)) != 0) {
            m_template.word(points);
            if (extended) m_template.words({400, 0x0100});
            m_template.text(face);
        }
        for (const DialogItem& item : items) {
            addStyle(extended, item.style);
            m_template.words({1, 2, 30, 40, item.id & 0xFFFFU});
            if (extended) m_template.word(item.id >> 16U);
            if (item.windowClass.size() == 1) {
                m_template.words({0xFFFF, item.windowClass[0]});
            } else {
                m_template.text(item.windowClass);
            }
            m_template.text(item.text).word(static_cast<unsigned>(item.creationData.size())).bytes(item.creationData);
        }
    }

    [[nodiscard]] const TemplateBuilder& bytes() const { return m_template; }
    [[nodiscard]] const DLGTEMPLATE* get() const {
        return reinterpret_cast<const DLGTEMPLATE*>(m_template.get().data());
    }

private:
    /// Adds the style and an extended style of 0. The extended form begins with a help number of 0.
    void addStyle(bool extended, DWORD style) {
        m_template.align();
        if (extended) m_template.words({0, 0, 0, 0});
        m_template.doubleWord(style);
        if (!extended) m_template.doubleWord(0);
    }

    TemplateBuilder m_template;
};

} // namespace eq
