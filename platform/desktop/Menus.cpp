#include "platform/desktop/Menus.h"

#include "platform/desktop/TemplateCursor.h"
#include "platform/desktop/TestHooks.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/Refuse.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using eq::standin::refuse;

struct MenuItem {
    UINT id;
    HMENU popup;
    std::wstring text;
};

struct Menu {
    std::vector<MenuItem> items;
};

eq::standin::HandleTable<Menu>& menus() {
    static eq::standin::HandleTable<Menu> table;
    return table;
}

constexpr UINT None = ~UINT{0};

// Options of an item in a template.
constexpr UINT Popup = 0x0010;
constexpr UINT End = 0x0080;

struct NewMenu {
    std::shared_ptr<Menu> menu = std::make_shared<Menu>();
    HMENU handle = static_cast<HMENU>(menus().add(menu));
};

std::shared_ptr<Menu> findMenu(HMENU handle) noexcept {
    auto menu = menus().find(handle);
    if (!menu) SetLastError(ERROR_INVALID_MENU_HANDLE);
    return menu;
}

/// An item of a template. The items inside a popup follow the popup. The next item of the popup's own level follows
/// after these items, unless the popup is the last item of its level.
struct ReadItem {
    MenuItem item;
    bool isPopup;
    bool isLast;
};

ReadItem readStandardItem(eq::standin::TemplateCursor& cursor) {
    const UINT option = cursor.takeWord();
    ReadItem read{{None, nullptr, {}}, (option & Popup) != 0, (option & End) != 0};
    if (!read.isPopup) read.item.id = cursor.takeWord();
    read.item.text = cursor.takeText();
    return read;
}

ReadItem readExtendedItem(eq::standin::TemplateCursor& cursor) {
    cursor.alignToDoubleWord();
    cursor.skip(2 * sizeof(DWORD)); // type and state
    const UINT id = cursor.takeDoubleWord();
    const UINT info = cursor.takeWord();
    ReadItem read{{id, nullptr, cursor.takeText()}, (info & 0x01) != 0, (info & End) != 0};
    if (read.isPopup) {
        cursor.alignToDoubleWord();
        cursor.skip(sizeof(DWORD)); // the help id, which no function returns
    }
    return read;
}

struct Level {
    std::shared_ptr<Menu> menu;
    bool isLastOfParent;
};

/// Reads the items of all levels. The open levels are on an explicit stack, because templates may nest deeper than the
/// call stack permits.
void readItems(eq::standin::TemplateCursor& cursor, ReadItem (*readItem)(eq::standin::TemplateCursor&),
               const std::shared_ptr<Menu>& menu) {
    std::vector<Level> open{{menu, true}};
    while (!open.empty()) {
        ReadItem read = readItem(cursor);
        auto& items = open.back().menu->items;
        if (read.isPopup) {
            items.reserve(items.size() + 1);
            const NewMenu popup;
            read.item.popup = popup.handle;
            items.push_back(std::move(read.item));
            open.push_back({popup.menu, read.isLast});
            continue;
        }
        items.push_back(std::move(read.item));
        // The last item ends its level. If a popup is the last item of the outer level, the end of the popup's level
        // also ends the outer level.
        for (bool ended = read.isLast; ended && !open.empty();) {
            ended = open.back().isLastOfParent;
            open.pop_back();
        }
    }
}

HMENU loadMenu(const void* menuTemplate) {
    eq::standin::TemplateCursor cursor(menuTemplate);
    const UINT version = cursor.takeWord();
    const std::size_t offset = cursor.takeWord();
    if (version > 1) return refuse(ERROR_INVALID_DATA);
    cursor.skip(offset);
    const NewMenu loaded;
    try {
        readItems(cursor, version == 0 ? readStandardItem : readExtendedItem, loaded.menu);
    } catch (...) {
        DestroyMenu(loaded.handle);
        throw;
    }
    return loaded.handle;
}

/// Returns the item at a position, and the menu, which keeps the item alive. The item is null if there is none.
std::pair<std::shared_ptr<Menu>, const MenuItem*> findItem(HMENU handle, std::size_t position) noexcept {
    auto menu = findMenu(handle);
    if (!menu) return {};
    if (position >= menu->items.size()) return refuse(ERROR_MENU_ITEM_NOT_FOUND);
    const MenuItem* const item = &menu->items[position];
    return {std::move(menu), item};
}

} // namespace

std::size_t eq::standin::liveMenus() noexcept {
    return menus().size();
}

HMENU WINAPI LoadMenuIndirectW(const MENUTEMPLATEW* menuTemplate) noexcept try {
    return loadMenu(menuTemplate);
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

HMENU WINAPI LoadMenuIndirectA(const MENUTEMPLATEA* menuTemplate) noexcept {
    return LoadMenuIndirectW(menuTemplate);
}

BOOL WINAPI DestroyMenu(HMENU menu) noexcept try {
    if (!findMenu(menu)) return FALSE;
    std::vector<HMENU> doomed{menu};
    while (!doomed.empty()) {
        const HMENU handle = doomed.back();
        doomed.pop_back();
        const auto found = menus().find(handle);
        if (!found) continue;
        for (const MenuItem& item : found->items) {
            if (item.popup) doomed.push_back(item.popup);
        }
        menus().remove(handle);
    }
    return TRUE;
} catch (...) {
    return refuse(ERROR_NOT_ENOUGH_MEMORY);
}

HMENU WINAPI GetSubMenu(HMENU menu, int position) noexcept {
    const auto [keeper, item] = findItem(menu, static_cast<UINT>(position));
    return item ? item->popup : nullptr;
}

UINT WINAPI GetMenuItemID(HMENU menu, int position) noexcept {
    const auto [keeper, item] = findItem(menu, static_cast<UINT>(position));
    return item && !item->popup ? item->id : None;
}

int WINAPI GetMenuStringW(HMENU menu, UINT position, LPWSTR buffer, int size, UINT flags) noexcept {
    if (flags != MF_BYPOSITION || !buffer || size <= 0) return refuse(ERROR_NOT_SUPPORTED);
    const auto [keeper, item] = findItem(menu, position);
    const std::size_t copied = item ? item->text.copy(buffer, static_cast<std::size_t>(size - 1)) : 0;
    buffer[copied] = 0;
    return static_cast<int>(copied);
}
