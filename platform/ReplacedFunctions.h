#pragma once

// The system functions that the library replaces by its own functions of the same names. The rows have the order of the
// import table's slots. All code that names the functions is generated from this list: the wedge's declarations and
// import slots, the pointers to the system functions, and on Linux the stand-in's declarations and look-up.
//
// A row has the system module, the result, the name, the parameters, and the size of the arguments in bytes in 32-bit
// code, which is part of a 32-bit symbol's name. SYSTEM marks the functions whose system versions the wedge calls.

/// Ignores a row of the list.
#define EQ_NO_ROW(MODULE, RESULT, NAME, PARAMETERS, BYTES)

// clang-format off
#define EQ_REPLACED_FUNCTIONS(ROW, SYSTEM) \
    SYSTEM(kernel32, HGLOBAL, LoadResource, (HMODULE hModule, HRSRC hResInfo), 8) \
    ROW(user32, int, LoadStringA, (HINSTANCE hInstance, UINT uID, LPSTR lpBuffer, int cchBufferMax), 16) \
    ROW(user32, int, LoadStringW, (HINSTANCE hInstance, UINT uID, LPWSTR lpBuffer, int cchBufferMax), 16) \
    ROW(user32, HACCEL, LoadAcceleratorsA, (HINSTANCE hInstance, LPCSTR lpTableName), 8) \
    ROW(user32, HACCEL, LoadAcceleratorsW, (HINSTANCE hInstance, LPCWSTR lpTableName), 8) \
    SYSTEM(user32, BOOL, DestroyAcceleratorTable, (HACCEL hAccel), 4) \
    ROW(user32, HMENU, LoadMenuA, (HINSTANCE hInstance, LPCSTR lpMenuName), 8) \
    ROW(user32, HMENU, LoadMenuW, (HINSTANCE hInstance, LPCWSTR lpMenuName), 8) \
    ROW(user32, INT_PTR, DialogBoxParamA, (HINSTANCE hInstance, LPCSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc, LPARAM dwInitParam), 20) \
    ROW(user32, INT_PTR, DialogBoxParamW, (HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc, LPARAM dwInitParam), 20) \
    ROW(user32, HWND, CreateDialogParamA, (HINSTANCE hInstance, LPCSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc, LPARAM dwInitParam), 20) \
    ROW(user32, HWND, CreateDialogParamW, (HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc, LPARAM dwInitParam), 20) \
    ROW(kernel32, HRSRC, FindResourceA, (HMODULE hModule, LPCSTR lpName, LPCSTR lpType), 12) \
    ROW(kernel32, HRSRC, FindResourceW, (HMODULE hModule, LPCWSTR lpName, LPCWSTR lpType), 12) \
    SYSTEM(kernel32, HRSRC, FindResourceExA, (HMODULE hModule, LPCSTR lpType, LPCSTR lpName, WORD wLanguage), 16) \
    SYSTEM(kernel32, HRSRC, FindResourceExW, (HMODULE hModule, LPCWSTR lpType, LPCWSTR lpName, WORD wLanguage), 16) \
    ROW(user32, int, MessageBoxA, (HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType), 16) \
    ROW(user32, int, MessageBoxW, (HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType), 16) \
    SYSTEM(user32, int, MessageBoxExA, (HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType, WORD wLanguageId), 20) \
    SYSTEM(user32, int, MessageBoxExW, (HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType, WORD wLanguageId), 20) \
    SYSTEM(comctl32, HPROPSHEETPAGE, CreatePropertySheetPageA, (LPCPROPSHEETPAGEA page), 4) \
    SYSTEM(comctl32, HPROPSHEETPAGE, CreatePropertySheetPageW, (LPCPROPSHEETPAGEW page), 4) \
    SYSTEM(comctl32, BOOL, DestroyPropertySheetPage, (HPROPSHEETPAGE page), 4) \
    SYSTEM(comctl32, INT_PTR, PropertySheetA, (LPCPROPSHEETHEADERA header), 4) \
    SYSTEM(comctl32, INT_PTR, PropertySheetW, (LPCPROPSHEETHEADERW header), 4)
// clang-format on
