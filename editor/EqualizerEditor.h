#pragma once

#include "editor/ControlTable.h"
#include "editor/DialogOwner.h"
#include "plugin/base/AEffEditor.h"

#include <array>

namespace eq {

/// The effect's user interface: a dialog with 13 sliders and 13 read-outs. The host embeds the dialog in its own
/// window.
///
/// The positions of a slider run from 0, at the top, to 100. The parameter is a hundredth of the position. The editor
/// keeps no copy of the current values: it compares the effect's values with the sliders' positions. When the user
/// moves a slider, the editor immediately sets the parameter and notifies the host. When another caller sets a
/// parameter, its slider moves at the host's next idle call.
///
/// All functions except `postUpdate` belong to the thread of the user interface.
class EqualizerEditor : public AEffEditor, public DialogOwner {
public:
    /// Sets itself as the editor of `owner`, reads the parameters, and measures a dialog. Throws the exceptions of the
    /// language store for a broken file; `owner` then has no editor.
    explicit EqualizerEditor(AudioEffect* owner);
    /// Destroys the dialog if the host has not closed the editor.
    ~EqualizerEditor() override;

    /// Returns 1, and the address of the measured size in `answer`. The size is in pixels. Its address is valid as long
    /// as the editor.
    int32 getRect(ERect** answer) override;
    /// Returns 1. Destroys an earlier dialog, and shows a new one in the host's window. If the system refuses to
    /// destroy the earlier dialog, that dialog stays, and no new one is created.
    int32 open(void* window) override;
    /// Destroys the dialog. On a thread other than the dialog's own, the dialog stays open and continues to work.
    void close() override;
    void idle() override;
    void update() override;

    bool handleDialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                             DWORD mapId) override;

private:
    using Values = std::array<float, ControlSlotCount>;
    using Controls = std::array<HWND, ControlSlotCount>;

    void measure();
    void readParameters(Values& values);
    void restore(const Values& values);

    /// Updates sliders and read-outs from the effect. With `force`, updates all slots. Without `force`, updates only
    /// the slots whose position differs, and sets their parameters to the new positions.
    void refresh(bool force);
    /// Updates the read-out of a slot. With `send`, first sets the slot's parameter to the position.
    void showValue(std::size_t slot, int pos, bool send);
    [[nodiscard]] int positionOf(std::size_t slot);

    void onInitDialog();
    void onDestroy();
    void onScroll(unsigned code, HWND slider);
    void onCommand(HWND control);

    Controls sliders{};
    Controls readouts{};
    HWND restoreConstructionButton = nullptr;
    HWND restoreOpeningButton = nullptr;
    HWND closeParentButton = nullptr;
    Values constructionValues{};
    Values openingValues{};
    ERect rect{};
};

} // namespace eq
