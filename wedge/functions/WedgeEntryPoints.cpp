#include "wedge/functions/WedgeEntryPoints.h"

#include "wedge/CLanguageStore.h"
#include "wedge/functions/PropertyPages.h"
#include "wedge/functions/PropertySheetForms.h"
#include "wedge/functions/PropertySheets.h"
#include "wedge/functions/ResourceLoading.h"
#include "wedge/functions/WedgeState.h"
#include "wedge/resources/ResourceFormats.h"
#include "wedge/resources/ResourceRewriters.h"
#include "wedge/resources/SystemFunctions.h"
#include "wedge/string_ext.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <exception>
#include <memory>
#include <string_view>

namespace eq {

namespace {

/// Rewrites a resource that was found, and returns its handle. All functions of the wedge that find resources call this
/// function.
template <typename Text>
HRSRC prepared(HMODULE module, HRSRC found, Text type) noexcept {
    return found ? wedgeState().resourceCache.Prepare(module, found, reinterpret_cast<std::uintptr_t>(type)) : nullptr;
}

/// Copies `length` characters and adds a terminator. The buffer must have room for both. Returns `length`.
template <typename Character>
int giveString(const Character* text, std::size_t length, Character* buffer) noexcept {
    std::copy_n(text, length, buffer);
    buffer[length] = 0;
    return static_cast<int>(length);
}

/// Returns the result of `load`, whose argument is the size of the buffer without the terminator. Returns 0 if the
/// buffer has no room for a terminator or if `load` throws.
template <typename Load>
int loadString(int room, const Load& load) noexcept {
    if (room <= 0) return 0;
    try {
        return load(static_cast<std::size_t>(room) - 1);
    } catch (const std::exception&) {
        return 0;
    }
}

bool closeTable(HACCEL table) noexcept {
    return systems::DestroyAcceleratorTable(table) != FALSE;
}
using AcceleratorTable = UniqueHandle<HACCEL, closeTable>;

template <typename Create>
HACCEL createAccelerators(const std::optional<LockedResource>& resource, const Create& create) {
    if (!resource) return nullptr;
    std::uint32_t count = 0;
    const auto entries = ToAccelArray(resource->bytes, resource->size, &count);
    if (!entries) return nullptr;
    AcceleratorTable table(create(entries.get(), static_cast<int>(count)));
    if (table) wedgeState().acceleratorRegistry.Add(table.get());
    return table.release();
}

template <typename Template>
const Template* asTemplate(const void* bytes) noexcept {
    return static_cast<const Template*>(bytes);
}

} // namespace

namespace wedge {

HRSRC WINAPI FindResourceA(HMODULE hModule, LPCSTR lpName, LPCSTR lpType) {
    return ::FindResourceExA(hModule, lpType, lpName, GetLanguageId());
}

HRSRC WINAPI FindResourceW(HMODULE hModule, LPCWSTR lpName, LPCWSTR lpType) {
    return ::FindResourceExW(hModule, lpType, lpName, GetLanguageId());
}

HRSRC WINAPI FindResourceExA(HMODULE hModule, LPCSTR lpType, LPCSTR lpName, WORD wLanguage) {
    return prepared(hModule, systems::FindResourceExA(hModule, lpType, lpName, wLanguage), lpType);
}

HRSRC WINAPI FindResourceExW(HMODULE hModule, LPCWSTR lpType, LPCWSTR lpName, WORD wLanguage) {
    return prepared(hModule, systems::FindResourceExW(hModule, lpType, lpName, wLanguage), lpType);
}

HGLOBAL WINAPI LoadResource(HMODULE hModule, HRSRC hResInfo) {
    if (void* const substitute = wedgeState().resourceCache.Find(hResInfo)) return substitute;
    return systems::LoadResource(hModule, hResInfo);
}

int WINAPI LoadStringA(HINSTANCE hInstance, UINT uID, LPSTR lpBuffer, int cchBufferMax) {
    return loadString(cchBufferMax, [&](std::size_t room) {
        const auto text = LoadResourceStringA(hInstance, uID);
        return text ? giveString(text.get(), wholeCharacters(text.get(), room, GetLanguageCodepage()), lpBuffer) : 0;
    });
}

int WINAPI LoadStringW(HINSTANCE hInstance, UINT uID, LPWSTR lpBuffer, int cchBufferMax) {
    return loadString(cchBufferMax, [&](std::size_t room) {
        const auto text = LoadResourceStringW(hInstance, uID);
        return text ? giveString(text.get(), std::min(std::wcslen(text.get()), room), lpBuffer) : 0;
    });
}

HACCEL WINAPI LoadAcceleratorsA(HINSTANCE hInstance, LPCSTR lpTableName) {
    return createAccelerators(lockResource(hInstance, ResourceType::Accelerator, lpTableName), CreateAcceleratorTableA);
}

HACCEL WINAPI LoadAcceleratorsW(HINSTANCE hInstance, LPCWSTR lpTableName) {
    return createAccelerators(lockResource(hInstance, ResourceType::Accelerator, lpTableName), CreateAcceleratorTableW);
}

BOOL WINAPI DestroyAcceleratorTable(HACCEL hAccel) {
    wedgeState().acceleratorRegistry.Remove(hAccel);
    return systems::DestroyAcceleratorTable(hAccel);
}

HMENU WINAPI LoadMenuA(HINSTANCE hInstance, LPCSTR lpMenuName) {
    const void* const menu = LoadLockedResourceA(hInstance, ResourceType::Menu, lpMenuName);
    return menu ? LoadMenuIndirectA(menu) : nullptr;
}

HMENU WINAPI LoadMenuW(HINSTANCE hInstance, LPCWSTR lpMenuName) {
    const void* const menu = LoadLockedResourceW(hInstance, ResourceType::Menu, lpMenuName);
    return menu ? LoadMenuIndirectW(menu) : nullptr;
}

INT_PTR WINAPI DialogBoxParamA(HINSTANCE hInstance, LPCSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam) {
    const void* const dialog = LoadLockedResourceA(hInstance, ResourceType::Dialog, lpTemplateName);
    if (!dialog) return -1;
    return DialogBoxIndirectParamA(hInstance, asTemplate<DLGTEMPLATE>(dialog), hWndParent, lpDialogFunc, dwInitParam);
}

INT_PTR WINAPI DialogBoxParamW(HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam) {
    const void* const dialog = LoadLockedResourceW(hInstance, ResourceType::Dialog, lpTemplateName);
    if (!dialog) return -1;
    return DialogBoxIndirectParamW(hInstance, asTemplate<DLGTEMPLATE>(dialog), hWndParent, lpDialogFunc, dwInitParam);
}

HWND WINAPI CreateDialogParamA(HINSTANCE hInstance, LPCSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam) {
    const void* const dialog = LoadLockedResourceA(hInstance, ResourceType::Dialog, lpTemplateName);
    if (!dialog) return nullptr;
    return CreateDialogIndirectParamA(hInstance, asTemplate<DLGTEMPLATE>(dialog), hWndParent, lpDialogFunc,
                                      dwInitParam);
}

HWND WINAPI CreateDialogParamW(HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam) {
    const void* const dialog = LoadLockedResourceW(hInstance, ResourceType::Dialog, lpTemplateName);
    if (!dialog) return nullptr;
    return CreateDialogIndirectParamW(hInstance, asTemplate<DLGTEMPLATE>(dialog), hWndParent, lpDialogFunc,
                                      dwInitParam);
}

int WINAPI MessageBoxA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType) {
    return ::MessageBoxExA(hWnd, lpText, lpCaption, uType, GetLanguageId());
}

int WINAPI MessageBoxW(HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType) {
    return ::MessageBoxExW(hWnd, lpText, lpCaption, uType, GetLanguageId());
}

int WINAPI MessageBoxExA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType, WORD wLanguageId) {
    GetLanguageId(); // the first message box fills the store
    return systems::MessageBoxExA(hWnd, lpText, lpCaption, uType, wLanguageId);
}

int WINAPI MessageBoxExW(HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType, WORD wLanguageId) {
    GetLanguageId();
    return systems::MessageBoxExW(hWnd, lpText, lpCaption, uType, wLanguageId);
}

HPROPSHEETPAGE WINAPI CreatePropertySheetPageA(LPCPROPSHEETPAGEA page) {
    return createPage<NarrowSheets>(page).release();
}

HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page) {
    return createPage<WideSheets>(page).release();
}

BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page) {
    const BOOL result = systems::DestroyPropertySheetPage(page);
    ReleasePageRecord(page);
    return result;
}

INT_PTR WINAPI PropertySheetA(LPCPROPSHEETHEADERA header) {
    return openSheet<NarrowSheets>(header);
}

INT_PTR WINAPI PropertySheetW(LPCPROPSHEETHEADERW header) {
    return openSheet<WideSheets>(header);
}

} // namespace wedge

} // namespace eq
