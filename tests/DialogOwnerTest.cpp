#include "editor/DialogOwner.h"

#include "editor/ControlTable.h"
#include "platform/SystemHandles.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/TestWindows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <utility>

namespace eq {

namespace {

/// A dialog whose messages a function of the test handles.
struct TestDialog : DialogOwner {
    ~TestDialog() override { releaseDialog(); }
    bool handleDialogMessage(HWND, UINT, WPARAM, LPARAM, LRESULT& result, DWORD) override {
        ++messages;
        return handle && handle(result);
    }
    DispatchStub::Target dialogProcedure() noexcept override {
        const HWND dialog = GetWindow(parent.get(), GW_CHILD);
        firstProcedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrW(dialog, DWLP_DLGPROC));
        if (isMemoryShort) shortage.emplace(0, 1); // refuses the memory for the dialog's own procedure
        return DialogOwner::dialogProcedure();
    }
    void create(unsigned templateId = EditorDialogId) {
        createDialog(templateId, parent.get());
        shortage.reset();
    }
    using DialogOwner::dialogWindow;

    const Window parent{makeHostWindow()};
    std::function<bool(LRESULT& result)> handle;
    int messages = 0;
    DLGPROC firstProcedure = nullptr; // the dialog's procedure before its first message
    bool isMemoryShort = false;
    std::optional<allocations::Shortage> shortage;
};

TEST(DialogOwner, ReturnsTheResultOfEachMessageAsTheSystemExpects) {
    readyCommonControls();
    TestDialog owner;
    owner.create();
    // Colours of controls are the messages 0x132 to 0x138. Of the rest, only these return their result.
    const std::array<UINT, 5> others = {WM_INITDIALOG, WM_COMPAREITEM, WM_VKEYTOITEM, WM_CHARTOITEM, WM_QUERYDRAGICON};
    using Answer = std::pair<INT_PTR, LONG_PTR>;
    owner.handle = [](LRESULT& result) { return result = 42, true; };
    for (UINT message = 0; message < 0x400; ++message) {
        const bool isReturned = (message >= 0x132 && message <= 0x138) || std::ranges::count(others, message) != 0;
        EXPECT_EQ(answerOf(owner.dialogWindow, message), isReturned ? Answer(42, 7) : Answer(1, 42)) << message;
    }
    owner.handle = [](LRESULT&) { return true; };
    EXPECT_EQ(answerOf(owner.dialogWindow, WM_NOTIFY), Answer(1, 0));
    owner.handle = [](LRESULT&) -> bool { throw 1; };
    EXPECT_EQ(answerOf(owner.dialogWindow, WM_NOTIFY), Answer(0, 7));
}

TEST(DialogOwner, ReceivesNoMessageOfAnotherDialogAfterItsCreationFailed) {
    readyCommonControls();
    TestDialog failed;
    failed.create(EditorDialogId + 1); // there is no such template, and therefore no message
    TestDialog owner;
    owner.create();
    owner.messages = 0;
    EXPECT_EQ(owner.firstProcedure(owner.dialogWindow, WM_COMMAND, 0, 0), 0); // no dialog is being created
    EXPECT_EQ(failed.messages + owner.messages, 0);

    failed.isMemoryShort = true;
    failed.create();
    EXPECT_EQ(GetWindow(failed.parent.get(), GW_CHILD), nullptr); // a dialog without a procedure does not stay
}

} // namespace

} // namespace eq
