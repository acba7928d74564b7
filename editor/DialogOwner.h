#pragma once

#include "editor/DispatchStub.h"
#include "platform/win32.h"

#include <cstdint>

namespace eq {

/// Ties one dialog window to one object: from the dialog's first message on, each comes to `handleDialogMessage`.
///
/// A dialog belongs to the thread that creates it. Several threads may create dialogs at once.
class DialogOwner {
public:
    DialogOwner(const DialogOwner&) = delete;
    DialogOwner& operator=(const DialogOwner&) = delete;

    /// Handles a message and gives its result, or returns false for the dialog's default processing. A `mapId` other
    /// than 0 asks for messages of another kind, of which there are none. Exceptions count as not handled.
    virtual bool handleDialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                     DWORD mapId) = 0;
    /// A derived class calls `releaseDialog` in its own destructor, where it can still handle the dialog's last
    /// messages.
    virtual ~DialogOwner() = default;
    /// What the dialog's own procedure leads to.
    virtual DispatchStub::Target dialogProcedure() noexcept { return dialogCall; }
    /// Comes after the last message of a dialog, when `dialogWindow` is null again.
    virtual void finalMessage(HWND /*window*/) {}

protected:
    DialogOwner() = default;

    /// Creates the dialog from a template of the library. On failure there is no dialog. Throws what the language store
    /// throws while it is built.
    void createDialog(unsigned templateId, HWND parent);
    /// Destroys the dialog, if there is one. Returns false if the system refuses, as it does on another thread than the
    /// dialog's own: the dialog then stays open and connected to this object.
    bool destroyDialog() noexcept;
    /// Disconnects this object from its dialog, and destroys the dialog if the system permits. For destructors.
    void releaseDialog() noexcept;

    HWND dialogWindow = nullptr; ///< null while there is no dialog

private:
    struct CreationRecord {
        DialogOwner* owner;
        DWORD threadId;
        CreationRecord* next;
    };
    struct CreationList;
    class CreationEntry;
    struct DialogMessage {
        UINT message;
        const DialogMessage* outer;
    };

    static constexpr std::uint32_t WindowDestroyed = 1;

    static CreationList& creationList();
    static DialogOwner* takeOwnerInCreation();
    static INT_PTR CALLBACK firstDialogCall(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static INT_PTR CALLBACK dialogCall(DialogOwner* object, UINT message, WPARAM wParam, LPARAM lParam);

    bool handleWithoutException(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept;
    void letGoOfDestroyedWindow();

    CreationRecord creationRecord{};
    DispatchStub dispatchStub;
    const DialogMessage* currentMessage = nullptr; ///< the one being handled; outer ones are chained
    std::uint32_t stateBits = 0;
};

} // namespace eq
