#include "editor/DialogOwner.h"

#include "platform/CriticalSection.h"
#include "wedge/OwnModule.h"
#include "wedge/functions/WedgeEntryPoints.h"

#include <algorithm>
#include <array>
#include <utility>

namespace eq {

namespace {

/// Returns whether a dialog procedure returns the result of `message` as its return value. For all other messages, the
/// procedure stores the result in the window (DWLP_MSGRESULT).
bool returnsItsResult(UINT message) noexcept {
    constexpr std::array Messages = {WM_INITDIALOG,    WM_COMPAREITEM,    WM_VKEYTOITEM,        WM_CHARTOITEM,
                                     WM_QUERYDRAGICON, WM_CTLCOLORMSGBOX, WM_CTLCOLOREDIT,      WM_CTLCOLORLISTBOX,
                                     WM_CTLCOLORBTN,   WM_CTLCOLORDLG,    WM_CTLCOLORSCROLLBAR, WM_CTLCOLORSTATIC};
    return std::any_of(Messages.begin(), Messages.end(),
                       [message](auto known) { return static_cast<UINT>(known) == message; });
}

} // namespace

/// The dialogs that are being created and have not received a message yet.
struct DialogOwner::CreationList {
    CreationRecord* head = nullptr;
    CriticalSection lock;

    /// Removes the first record for which `isWanted` is true, and returns it. Returns null if there is none.
    template <typename Condition>
    CreationRecord* unlink(const Condition& isWanted) {
        const CriticalSectionEntry entry(lock);
        CreationRecord** place = &head;
        while (*place && !isWanted(**place)) place = &(*place)->next;
        CreationRecord* const found = *place;
        if (found) *place = found->next;
        return found;
    }
};

/// Keeps an object's record in the list while its dialog is created. If the creation fails before the dialog's first
/// message, the destructor removes the record.
class DialogOwner::CreationEntry {
public:
    explicit CreationEntry(DialogOwner& owner) : record(owner.creationRecord) {
        CreationList& list = creationList();
        const CriticalSectionEntry entry(list.lock);
        record = {&owner, GetCurrentThreadId(), list.head};
        list.head = &record;
    }
    ~CreationEntry() {
        creationList().unlink([this](const CreationRecord& other) { return &other == &record; });
    }
    CreationEntry(const CreationEntry&) = delete;
    CreationEntry& operator=(const CreationEntry&) = delete;

private:
    CreationRecord& record;
};

DialogOwner::CreationList& DialogOwner::creationList() {
    static CreationList list;
    return list;
}

void DialogOwner::createDialog(unsigned templateId, HWND parent) {
    const CreationEntry entry(*this);
    const HWND made = wedge::CreateDialogParamW(ownModule(), MAKEINTRESOURCEW(templateId), parent, firstDialogCall, 0);
    if (made && made != dialogWindow) DestroyWindow(made); // there was no memory for the procedure
}

bool DialogOwner::destroyDialog() noexcept {
    if (!dialogWindow || DestroyWindow(dialogWindow)) return true;
    if (IsWindow(dialogWindow)) return false;
    // The window no longer exists: a handler that is still running closed it, or its thread ended.
    if (!currentMessage) dialogWindow = nullptr;
    return true;
}

void DialogOwner::releaseDialog() noexcept {
    if (!destroyDialog()) SetWindowLongPtrW(dialogWindow, DWLP_DLGPROC, 0);
}

DialogOwner* DialogOwner::takeOwnerInCreation() {
    const DWORD thread = GetCurrentThreadId();
    const CreationRecord* const record =
        creationList().unlink([thread](const CreationRecord& candidate) { return candidate.threadId == thread; });
    return record ? record->owner : nullptr;
}

INT_PTR CALLBACK DialogOwner::firstDialogCall(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DialogOwner* const object = takeOwnerInCreation();
    if (!object) return 0;
    const DLGPROC procedure = object->dispatchStub.procedure(window, object, object->dialogProcedure());
    if (!procedure) return 0;
    object->dialogWindow = window;
    object->stateBits &= ~WindowDestroyed; // set if a handler of the previous dialog is still running
    SetWindowLongPtrW(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(procedure));
    return procedure(window, message, wParam, lParam);
}

INT_PTR CALLBACK DialogOwner::dialogCall(DialogOwner* object, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = object->dialogWindow;
    const DialogMessage current{message, object->currentMessage};
    object->currentMessage = &current;
    LRESULT result = 0;
    const bool isHandled = object->handleWithoutException(message, wParam, lParam, result);
    object->currentMessage = current.outer;

    if (!isHandled && message == WM_NCDESTROY) object->stateBits |= WindowDestroyed;
    object->letGoOfDestroyedWindow();

    if (!isHandled) return 0;
    if (returnsItsResult(message)) return static_cast<INT_PTR>(result);
    SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
    return TRUE;
}

bool DialogOwner::handleWithoutException(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept {
    try {
        return handleDialogMessage(dialogWindow, message, wParam, lParam, result, 0);
    } catch (...) {
        // The system's code calls this function, and no exception may pass through that code.
        return false;
    }
}

void DialogOwner::letGoOfDestroyedWindow() {
    // A handler that is still running may use `dialogWindow`.
    if ((stateBits & WindowDestroyed) == 0 || currentMessage) return;
    stateBits &= ~WindowDestroyed;
    finalMessage(std::exchange(dialogWindow, nullptr));
}

} // namespace eq
