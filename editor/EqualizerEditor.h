#pragma once

#include "editor/ControlTable.h"
#include "editor/DialogOwner.h"
#include "plugin/base/AEffEditor.h"

#include <array>

namespace eq {

/// The effect's user interface: a dialog of 13 sliders and 13 read-outs that the host embeds in a window of its own.
///
/// A slider's position runs from 0, at the top, to 100, and stands for a parameter of a hundredth of that. The editor
/// keeps no values of its own: it compares the effect's with the sliders' positions. A slider that the user moves sets
/// its parameter at once and tells the host; a parameter that somebody else sets reaches its slider at the host's next
/// idle call.
///
/// All but `postUpdate` belongs to the thread of the user interface.
class EqualizerEditor : public AEffEditor, public DialogOwner {
public:
    /// Becomes the editor of `owner`, reads its parameters and measures a dialog. Throws what the language store throws
    /// for a broken file, and then is nobody's editor.
    explicit EqualizerEditor(AudioEffect* owner);
    /// Destroys the dialog of a host that has not closed the editor.
    ~EqualizerEditor() override;

    /// The size as it was measured, in pixels, valid as long as the editor. Always 1.
    int32 getRect(ERect** answer) override;
    /// Shows a dialog in the host's window, and destroys an earlier dialog first. If the system refuses that, the
    /// earlier dialog stays and no new one is created. Returns 1.
    int32 open(void* window) override;
    /// Destroys the dialog. On a thread other than the dialog's own, the dialog stays open and works.
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

    /// Brings sliders and read-outs in line with the effect: all of them, or only those whose position differs, which
    /// then also sets their parameters to the positions.
    void refresh(bool force);
    /// Sets the slot's parameter to a position, if wanted, and writes its read-out.
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
