#include "editor/EqualizerEditor.h"

#include "parameters/DisplayText.h"
#include "platform/SystemHandles.h"
#include "plugin/base/AudioEffect.h"
#include "wedge/OwnModule.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace eq {

namespace {

constexpr int LastPosition = 100;
constexpr float PositionStep = 0.01f;

/// Pixels per 4 horizontal and per 8 vertical dialog units, for the 8-point dialog font at 96 dots per inch.
constexpr int BaseUnitX = 6;
constexpr int BaseUnitY = 13;

float parameterAt(int pos) noexcept {
    return static_cast<float>(pos) * PositionStep;
}

/// Returns the position of a parameter. The position is truncated, not rounded. Most positions therefore become one
/// lower if `parameterAt` and then `positionAt` convert them. A host may set any value: a position beyond the limits
/// becomes the limit, and NaN becomes 0.
int positionAt(float parameter) noexcept {
    constexpr double Limit = 1e9;
    const double position = std::trunc(parameter * 100.0);
    return std::isnan(position) ? 0 : static_cast<int>(std::clamp(position, -Limit, Limit));
}

int sliderPosition(HWND slider) noexcept {
    return static_cast<int>(SendMessageW(slider, TBM_GETPOS, 0, 0));
}

/// Replaces the first point by the user's decimal separator. The point stays if the system has no separator.
void localizeSeparator(char* text) noexcept {
    char* const point = std::strchr(text, '.');
    if (!point) return;
    wchar_t separator[5];
    if (GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, 5) != 0)
        *point = static_cast<char>(separator[0] & 0xFF);
}

} // namespace

EqualizerEditor::EqualizerEditor(AudioEffect* owner) : AEffEditor(owner) {
    effect->setEditor(this);
    try {
        readParameters(constructionValues);
        measure();
    } catch (...) {
        effect->setEditor(nullptr);
        throw;
    }
}

EqualizerEditor::~EqualizerEditor() {
    releaseDialog();
}

void EqualizerEditor::measure() {
    const Window parent(
        CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 640, 480, nullptr, nullptr, ownModule(), nullptr));
    createDialog(EditorDialogId, parent.get());
    // The host needs a size even if no dialog can be created yet, for example because the host has not registered the
    // common controls.
    RECT client = {0, 0, MulDiv(EditorDialogWidth, BaseUnitX, 4), MulDiv(EditorDialogHeight, BaseUnitY, 8)};
    if (dialogWindow) GetClientRect(dialogWindow, &client);
    rect.top = static_cast<std::int16_t>(client.top);
    rect.left = static_cast<std::int16_t>(client.left);
    rect.bottom = static_cast<std::int16_t>(client.bottom);
    rect.right = static_cast<std::int16_t>(client.right);
    destroyDialog();
}

int32 EqualizerEditor::getRect(ERect** answer) {
    *answer = &rect;
    return 1;
}

int32 EqualizerEditor::open(void* window) {
    if (!destroyDialog()) return 1;
    systemWindow = window;
    createDialog(EditorDialogId, static_cast<HWND>(window));
    if (dialogWindow) ShowWindow(dialogWindow, SW_SHOWNORMAL);
    return 1;
}

void EqualizerEditor::close() {
    if (dialogWindow) DestroyWindow(dialogWindow);
}

void EqualizerEditor::idle() {
    // When a thread ends, its dialogs disappear without a message.
    if (updateFlag == 0 || !IsWindow(dialogWindow)) return;
    update();
    // The update's own writes raise the flag, so the flag is cleared after the update. Otherwise the editor would
    // follow its own changes without end.
    updateFlag = 0;
}

void EqualizerEditor::update() {
    refresh(false);
}

bool EqualizerEditor::handleDialogMessage(HWND /*window*/, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                          DWORD mapId) {
    if (mapId != 0) return false;
    result = 0;
    switch (message) {
    case WM_INITDIALOG:
        onInitDialog();
        result = 1;
        return true;
    case WM_DESTROY:
        onDestroy();
        result = 1;
        return true;
    case WM_HSCROLL:
    case WM_VSCROLL:
        onScroll(LOWORD(wParam), reinterpret_cast<HWND>(lParam));
        return true;
    case WM_COMMAND:
        if (HIWORD(wParam) != 0) return false;
        onCommand(reinterpret_cast<HWND>(lParam));
        return true;
    default:
        return false;
    }
}

void EqualizerEditor::onInitDialog() {
    readParameters(openingValues);
    for (std::size_t slot = 0; slot < ControlSlotCount; ++slot) {
        sliders[slot] = GetDlgItem(dialogWindow, sliderIds[slot]);
        SendMessageW(sliders[slot], TBM_SETRANGE, TRUE, MAKELPARAM(0, LastPosition));
        readouts[slot] = GetDlgItem(dialogWindow, readoutIds[slot]);
    }
    restoreConstructionButton = GetDlgItem(dialogWindow, RestoreConstructionButton);
    restoreOpeningButton = GetDlgItem(dialogWindow, RestoreOpeningButton);
    closeParentButton = GetDlgItem(dialogWindow, CloseParentButton);
    refresh(true);
}

void EqualizerEditor::onDestroy() {
    sliders.fill(nullptr);
    readouts.fill(nullptr);
    restoreConstructionButton = nullptr;
    restoreOpeningButton = nullptr;
    closeParentButton = nullptr;
}

void EqualizerEditor::onScroll(unsigned code, HWND slider) {
    // A drag takes effect at every step. Keys and clicks take effect at the end of the movement.
    if (code != TB_THUMBTRACK && code != TB_ENDTRACK) return;
    const auto* const found = std::find(sliders.begin(), sliders.end(), slider);
    if (!slider || found == sliders.end()) return;
    showValue(static_cast<std::size_t>(found - sliders.begin()), sliderPosition(slider), true);
    updateFlag = 0; // this change has raised it
}

void EqualizerEditor::onCommand(HWND control) {
    // The control is null if the command comes from a menu or a key. The handle of a button that the dialog lacks is
    // also null, so do not compare the two.
    if (!control) return;
    if (control == restoreConstructionButton) {
        restore(constructionValues);
    } else if (control == restoreOpeningButton) {
        restore(openingValues);
    } else if (control == closeParentButton) {
        DestroyWindow(GetParent(dialogWindow));
    }
}

void EqualizerEditor::refresh(bool force) {
    for (std::size_t slot = 0; slot < ControlSlotCount; ++slot) {
        // The host may close the dialog when it is notified of a change.
        if (!sliders[slot]) continue;
        const int pos = positionOf(slot);
        if (!force && sliderPosition(sliders[slot]) == pos) continue;
        SendMessageW(sliders[slot], TBM_SETPOS, TRUE, pos); // causes no scroll message
        showValue(slot, pos, !force);
    }
}

void EqualizerEditor::showValue(std::size_t slot, int pos, bool send) {
    const int32 parameter = parameterOfSlot[slot];
    if (send) effect->setParameterAutomated(parameter, parameterAt(pos));
    char text[DisplayCapacity] = "";
    effect->getParameterDisplay(parameter, text);
    localizeSeparator(text);
    SetWindowTextA(readouts[slot], text);
}

int EqualizerEditor::positionOf(std::size_t slot) {
    return positionAt(effect->getParameter(parameterOfSlot[slot]));
}

void EqualizerEditor::readParameters(Values& values) {
    for (std::size_t i = 0; i < ControlSlotCount; ++i) values[i] = effect->getParameter(static_cast<int32>(i));
}

void EqualizerEditor::restore(const Values& values) {
    for (std::size_t i = 0; i < ControlSlotCount; ++i) effect->setParameterAutomated(static_cast<int32>(i), values[i]);
    refresh(true);
}

} // namespace eq
