#pragma once

// The wedge: functions of the system that this library replaces by its own, with the system's names and signatures.
// Each finds its resource in the module that the caller gives, has the language layer rewrite it, and hands the result
// to the system. Failure shows as it does in Win32; no last error is set.
//
// Code of the library includes platform/win32.h and calls them by their names. On Windows the linker leads those calls
// here (WedgeImportTable.cpp), elsewhere these are the only functions of those names.

#include "platform/win32.h"

// NOLINTBEGIN(readability-redundant-declaration): on Linux the system's header has them, too
#ifdef _WIN32
namespace wedge {
#else
extern "C" {
#endif

HRSRC WINAPI FindResourceA(HMODULE hModule, LPCSTR lpName, LPCSTR lpType);
HRSRC WINAPI FindResourceW(HMODULE hModule, LPCWSTR lpName, LPCWSTR lpType);
HRSRC WINAPI FindResourceExA(HMODULE hModule, LPCSTR lpType, LPCSTR lpName, WORD wLanguage);
HRSRC WINAPI FindResourceExW(HMODULE hModule, LPCWSTR lpType, LPCWSTR lpName, WORD wLanguage);
HGLOBAL WINAPI LoadResource(HMODULE hModule, HRSRC hResInfo);

/// Always inside the buffer and always with an end; a size of 0 or less writes nothing and gives 0.
int WINAPI LoadStringA(HINSTANCE hInstance, UINT uID, LPSTR lpBuffer, int cchBufferMax);
int WINAPI LoadStringW(HINSTANCE hInstance, UINT uID, LPWSTR lpBuffer, int cchBufferMax);

HACCEL WINAPI LoadAcceleratorsA(HINSTANCE hInstance, LPCSTR lpTableName);
HACCEL WINAPI LoadAcceleratorsW(HINSTANCE hInstance, LPCWSTR lpTableName);
BOOL WINAPI DestroyAcceleratorTable(HACCEL hAccel);

HMENU WINAPI LoadMenuA(HINSTANCE hInstance, LPCSTR lpMenuName);
HMENU WINAPI LoadMenuW(HINSTANCE hInstance, LPCWSTR lpMenuName);

/// -1 when there is no such template.
INT_PTR WINAPI DialogBoxParamA(HINSTANCE hInstance, LPCSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam);
INT_PTR WINAPI DialogBoxParamW(HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam);
HWND WINAPI CreateDialogParamA(HINSTANCE hInstance, LPCSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam);
HWND WINAPI CreateDialogParamW(HINSTANCE hInstance, LPCWSTR lpTemplateName, HWND hWndParent, DLGPROC lpDialogFunc,
                               LPARAM dwInitParam);

/// Texts are shown as they are; the buttons are the system's, in the language of the store or the caller's.
int WINAPI MessageBoxA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType);
int WINAPI MessageBoxW(HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType);
int WINAPI MessageBoxExA(HWND hWnd, LPCSTR lpText, LPCSTR lpCaption, UINT uType, WORD wLanguageId);
int WINAPI MessageBoxExW(HWND hWnd, LPCWSTR lpText, LPCWSTR lpCaption, UINT uType, WORD wLanguageId);

HPROPSHEETPAGE WINAPI CreatePropertySheetPageA(LPCPROPSHEETPAGEA page);
HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page);
BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page);
INT_PTR WINAPI PropertySheetA(LPCPROPSHEETHEADERA header);
INT_PTR WINAPI PropertySheetW(LPCPROPSHEETHEADERW header);

} // namespace wedge, or extern "C"
// NOLINTEND(readability-redundant-declaration)
