#pragma once

// Functions of the system that a library may replace by its own of the same name. The stand-in defines none of these
// names; the system's functions are found by GetModuleHandleA and GetProcAddress alone.

#include "platform/standin/Accelerators.h"
#include "platform/standin/Dialogs.h"
#include "platform/standin/Keys.h"
#include "platform/standin/Menus.h"
#include "platform/standin/PropertySheets.h"
#include "platform/standin/Resources.h"

extern "C" {

HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
HRSRC WINAPI FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type);
HRSRC WINAPI FindResourceExA(HMODULE module, LPCSTR type, LPCSTR name, WORD language);
HRSRC WINAPI FindResourceExW(HMODULE module, LPCWSTR type, LPCWSTR name, WORD language);
HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);

int WINAPI LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int bufferSize);
int WINAPI LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int bufferSize);

HACCEL WINAPI LoadAcceleratorsA(HINSTANCE module, LPCSTR name);
HACCEL WINAPI LoadAcceleratorsW(HINSTANCE module, LPCWSTR name);
BOOL WINAPI DestroyAcceleratorTable(HACCEL table);

HMENU WINAPI LoadMenuA(HINSTANCE module, LPCSTR name);
HMENU WINAPI LoadMenuW(HINSTANCE module, LPCWSTR name);

INT_PTR WINAPI DialogBoxParamA(HINSTANCE module, LPCSTR name, HWND parent, DLGPROC procedure, LPARAM parameter);
INT_PTR WINAPI DialogBoxParamW(HINSTANCE module, LPCWSTR name, HWND parent, DLGPROC procedure, LPARAM parameter);
HWND WINAPI CreateDialogParamA(HINSTANCE module, LPCSTR name, HWND parent, DLGPROC procedure, LPARAM parameter);
HWND WINAPI CreateDialogParamW(HINSTANCE module, LPCWSTR name, HWND parent, DLGPROC procedure, LPARAM parameter);

int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT type);
int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
int WINAPI MessageBoxExA(HWND owner, LPCSTR text, LPCSTR caption, UINT type, WORD language);
int WINAPI MessageBoxExW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type, WORD language);

HPROPSHEETPAGE WINAPI CreatePropertySheetPageA(LPCPROPSHEETPAGEA record);
HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW record);
BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page);
INT_PTR WINAPI PropertySheetA(LPCPROPSHEETHEADERA header);
INT_PTR WINAPI PropertySheetW(LPCPROPSHEETHEADERW header);
}
