#include "platform/desktop/DialogTemplate.h"

#include "platform/desktop/Dialogs.h"

#include <tuple>
#include <utility>

namespace {

using eq::standin::DialogTemplate;
using eq::standin::ItemTemplate;
using eq::standin::NameOrNumber;
using eq::standin::TemplateCursor;
using eq::standin::UnitRectangle;

constexpr WORD NumberMark = 0xFFFF;
/// This point size selects the font of message boxes. No other font fields follow it.
constexpr WORD MessageFont = 0x7FFF;

SHORT takeSigned(TemplateCursor& cursor) noexcept {
    return static_cast<SHORT>(cursor.takeWord());
}

UnitRectangle takeRectangle(TemplateCursor& cursor) noexcept {
    const SHORT x = takeSigned(cursor);
    const SHORT y = takeSigned(cursor);
    const SHORT width = takeSigned(cursor);
    const SHORT height = takeSigned(cursor);
    return {x, y, width, height};
}

NameOrNumber takeName(TemplateCursor& cursor) {
    NameOrNumber element;
    if (cursor.peekWord() != NumberMark) {
        element.name = cursor.takeText();
        return element;
    }
    cursor.skip(sizeof(WORD));
    element.number = cursor.takeWord();
    return element;
}

/// Returns the class of a control. Templates abbreviate the names of predefined classes by numbers.
NameOrNumber takeControlClass(TemplateCursor& cursor) {
    NameOrNumber element = takeName(cursor);
    switch (std::exchange(element.number, WORD{0})) {
    case 0x80:
        element.name = L"BUTTON";
        break;
    case 0x81:
        element.name = L"EDIT";
        break;
    case 0x82:
        element.name = L"STATIC";
        break;
    default:
        break;
    }
    return element;
}

const void* takeCreationData(TemplateCursor& cursor) noexcept {
    const void* const data = cursor.here();
    const WORD size = cursor.takeWord();
    cursor.skip(size);
    return size == 0 ? nullptr : data;
}

void takeStandardHead(TemplateCursor& cursor, ItemTemplate& item) noexcept {
    item.style = cursor.takeDoubleWord();
    item.extendedStyle = cursor.takeDoubleWord();
    item.place = takeRectangle(cursor);
    item.id = cursor.takeWord();
}

void takeExtendedHead(TemplateCursor& cursor, ItemTemplate& item) noexcept {
    cursor.skip(sizeof(DWORD)); // the help id
    item.extendedStyle = cursor.takeDoubleWord();
    item.style = cursor.takeDoubleWord();
    item.place = takeRectangle(cursor);
    item.id = cursor.takeDoubleWord();
}

ItemTemplate takeItem(TemplateCursor& cursor, bool extended) {
    cursor.alignToDoubleWord();
    ItemTemplate item{};
    (extended ? takeExtendedHead : takeStandardHead)(cursor, item);
    item.windowClass = takeControlClass(cursor);
    item.title = takeName(cursor);
    item.creationData = takeCreationData(cursor);
    return item;
}

void skipFont(TemplateCursor& cursor, bool extended) {
    if (cursor.takeWord() == MessageFont) return;
    if (extended) cursor.skip(2 * sizeof(WORD)); // weight, slope and character set
    std::ignore = cursor.takeText();
}

} // namespace

DialogTemplate eq::standin::readDialogTemplate(const void* dialog) {
    TemplateCursor cursor(dialog);
    DialogTemplate read{};
    const DWORD first = cursor.takeDoubleWord();
    const bool extended = HIWORD(first) == 0xFFFF;
    if (extended) cursor.skip(sizeof(DWORD)); // the help id
    const DWORD second = cursor.takeDoubleWord();
    read.style = extended ? cursor.takeDoubleWord() : first;
    read.extendedStyle = second;
    const std::size_t count = cursor.takeWord();
    read.place = takeRectangle(cursor);
    read.menu = takeName(cursor);
    read.windowClass = takeName(cursor);
    read.caption = cursor.takeText();
    if ((read.style & DS_SETFONT) != 0) skipFont(cursor, extended);
    while (read.items.size() < count) read.items.push_back(takeItem(cursor, extended));
    return read;
}
