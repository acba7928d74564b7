#pragma once

#include "editor/DispatchStub.h"
#include "platform/win32.h"

#include <cstdint>

namespace eq {

/// Connects one dialog window to one object. The object's `handleDialogMessage` receives each message of the dialog,
/// from the first message on.
///
/// A dialog belongs to the thread that creates it. Several threads may create dialogs at the same time.
class DialogOwner {
public:
    DialogOwner(const DialogOwner&) = delete;
    DialogOwner& operator=(const DialogOwner&) = delete;

    /// Returns true and the message's result in `result`, or returns false to request the dialog's default processing.
    /// `mapId` selects a set of messages; only set 0 has messages. If the function throws, the message counts as not
    /// handled.
    virtual bool handleDialogMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                     DWORD mapId) = 0;
    /// A derived class must call `releaseDialog` in its own destructor, while it can still handle the dialog's last
    /// messages.
    virtual ~DialogOwner() = default;
    /// Returns the function that the dialog's procedure calls.
    virtual DispatchStub::Target dialogProcedure() noexcept { return dialogCall; }
    /// Called after the last message of a dialog. `dialogWindow` is already null.
    virtual void finalMessage(HWND /*window*/) {}

protected:
    DialogOwner() = default;

    /// Creates the dialog from a template in the library's resources. On failure there is no dialog. Throws the
    /// exceptions of the language store if the store cannot be built.
    void createDialog(unsigned templateId, HWND parent);
    /// Destroys the dialog, if there is one. Returns false if the system refuses, as it does on any thread other than
    /// the dialog's. The dialog then stays open and connected to this object.
    bool destroyDialog() noexcept;
    /// For destructors: destroys the dialog. If the system refuses, only disconnects the dialog from this object.
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
    const DialogMessage* currentMessage = nullptr; ///< the innermost message in progress
    std::uint32_t stateBits = 0;
};

} // namespace eq
