#include "platform/standin/Menus.h"

#include "platform/standin/Errors.h"
#include "platform/standin/HandleTable.h"
#include "platform/standin/TemplateCursor.h"
#include "platform/standin/TestHooks.h"

#include <optional>
#include <string>
#include <vector>

namespace {

struct MenuItem {
    UINT flags; // kind and state
    UINT id;
    HMENU popup;
    std::wstring text;
};

struct Menu {
    std::vector<MenuItem> items;
};

standin::HandleTable<Menu>& menus() {
    static standin::HandleTable<Menu> table;
    return table;
}

constexpr UINT None = ~UINT{0};

/// A new menu and its handle.
struct NewMenu {
    std::shared_ptr<Menu> menu = std::make_shared<Menu>();
    HMENU handle = static_cast<HMENU>(menus().add(menu));
};

std::shared_ptr<Menu> findMenu(HMENU handle) noexcept {
    auto menu = menus().find(handle);
    if (!menu) SetLastError(ERROR_INVALID_MENU_HANDLE);
    return menu;
}

/// An item as a template holds it: a popup's own items follow, and the level goes on behind them unless this was its
/// last item.
struct ReadItem {
    MenuItem item;
    bool isPopup;
    bool isLast;
};

/// An item without a text is a separator, whatever it says.
bool isSeparator(const ReadItem& read) noexcept {
    return !read.isPopup && read.item.text.empty();
}

ReadItem readStandardItem(standin::TemplateCursor& cursor) {
    const UINT option = cursor.takeWord();
    ReadItem read{{option & ~MF_END, None, nullptr, {}}, (option & MF_POPUP) != 0, (option & MF_END) != 0};
    if (!read.isPopup) read.item.id = cursor.takeWord();
    read.item.text = cursor.takeText();
    // Here, but not in the other form, it cannot be chosen, either.
    if (isSeparator(read)) read.item.flags |= MF_SEPARATOR | MF_GRAYED | MF_DISABLED;
    return read;
}

ReadItem readExtendedItem(standin::TemplateCursor& cursor) {
    cursor.alignToDoubleWord();
    const UINT type = cursor.takeDoubleWord();
    const UINT state = cursor.takeDoubleWord();
    const UINT id = cursor.takeDoubleWord();
    const UINT info = cursor.takeWord();
    ReadItem read{{type | state, id, nullptr, cursor.takeText()}, (info & 0x01) != 0, (info & MF_END) != 0};
    if (read.isPopup) {
        read.item.flags |= MF_POPUP;
        cursor.alignToDoubleWord();
        cursor.skip(sizeof(DWORD)); // the help id, which nobody can ask for
    }
    if (isSeparator(read)) read.item.flags |= MF_SEPARATOR;
    return read;
}

struct Level {
    std::shared_ptr<Menu> menu;
    bool isLastOfParent;
};

/// Levels lie on a stack of their own, since a template may nest deeper than calls can.
void readItems(standin::TemplateCursor& cursor, ReadItem (*readItem)(standin::TemplateCursor&),
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
        // The last item ends its level, and each level above whose last item is the popup that has ended.
        for (bool ended = read.isLast; ended && !open.empty();) {
            ended = open.back().isLastOfParent;
            open.pop_back();
        }
    }
}

HMENU loadMenu(const void* menuTemplate) {
    standin::TemplateCursor cursor(menuTemplate);
    const UINT version = cursor.takeWord();
    const std::size_t offset = cursor.takeWord();
    if (version > 1) {
        SetLastError(ERROR_INVALID_DATA);
        return nullptr;
    }
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

struct FoundItem {
    std::shared_ptr<Menu> menu; // which keeps the item
    const MenuItem* item;
};

std::optional<FoundItem> findByPosition(HMENU handle, std::size_t position) noexcept {
    auto menu = findMenu(handle);
    if (!menu) return std::nullopt;
    if (position >= menu->items.size()) {
        SetLastError(ERROR_MENU_ITEM_NOT_FOUND);
        return std::nullopt;
    }
    const MenuItem* const item = &menu->items[position];
    return FoundItem{std::move(menu), item};
}

/// The first item with this id at any depth. A popup's own id counts only if no plain item has it.
std::optional<FoundItem> findByCommand(HMENU handle, UINT id) {
    std::optional<FoundItem> popup;
    std::vector<std::pair<std::shared_ptr<Menu>, std::size_t>> open;
    if (auto menu = findMenu(handle)) open.emplace_back(std::move(menu), 0);
    if (open.empty()) return std::nullopt;
    while (!open.empty()) {
        auto& [menu, next] = open.back();
        if (next == menu->items.size()) {
            open.pop_back();
            continue;
        }
        const MenuItem& item = menu->items[next++];
        if (item.id == id && !item.popup) return FoundItem{menu, &item};
        if (item.id == id && !popup) popup = FoundItem{menu, &item};
        if (auto below = item.popup ? menus().find(item.popup) : nullptr) open.emplace_back(std::move(below), 0);
    }
    if (!popup) SetLastError(ERROR_MENU_ITEM_NOT_FOUND);
    return popup;
}

std::optional<FoundItem> findItem(HMENU menu, UINT item, UINT flags) {
    return (flags & MF_BYPOSITION) != 0 ? findByPosition(menu, item) : findByCommand(menu, item);
}

} // namespace

std::size_t standin::liveMenus() noexcept {
    return menus().size();
}

HMENU WINAPI LoadMenuIndirectW(const MENUTEMPLATEW* menuTemplate) noexcept try {
    return loadMenu(menuTemplate);
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
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
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

BOOL WINAPI IsMenu(HMENU menu) noexcept {
    return menus().find(menu) ? TRUE : FALSE;
}

int WINAPI GetMenuItemCount(HMENU menu) noexcept {
    const auto found = findMenu(menu);
    return found ? static_cast<int>(found->items.size()) : -1;
}

HMENU WINAPI GetSubMenu(HMENU menu, int position) noexcept {
    const auto found = findByPosition(menu, static_cast<UINT>(position));
    return found ? found->item->popup : nullptr;
}

UINT WINAPI GetMenuItemID(HMENU menu, int position) noexcept {
    const auto found = findByPosition(menu, static_cast<UINT>(position));
    return found && !found->item->popup ? found->item->id : None;
}

int WINAPI GetMenuStringW(HMENU menu, UINT item, LPWSTR buffer, int size, UINT flags) noexcept try {
    if (buffer && size > 0) *buffer = 0;
    const auto found = findItem(menu, item, flags);
    if (!found) return 0;
    const std::wstring& text = found->item->text;
    if (!buffer || size <= 0) return static_cast<int>(text.size());
    const std::size_t copied = text.copy(buffer, static_cast<std::size_t>(size - 1));
    buffer[copied] = 0;
    return static_cast<int>(copied);
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 0;
}

UINT WINAPI GetMenuState(HMENU menu, UINT item, UINT flags) noexcept try {
    const auto found = findItem(menu, item, flags);
    if (!found) return None;
    if (!found->item->popup) return found->item->flags;
    const int count = GetMenuItemCount(found->item->popup);
    return count < 0 ? None : (static_cast<UINT>(count) << 8 | (found->item->flags & 0xFF));
} catch (...) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return None;
}
