#pragma once

#include "platform/win32.h"

#include <memory>

namespace eq {

class DialogOwner;

/// Gives each dialog a procedure of its own that knows the dialog's object, which a window handle does not tell.
class DispatchStub {
public:
    /// What the procedure calls, with the object in place of the window.
    using Target = INT_PTR(CALLBACK*)(DialogOwner* object, UINT message, WPARAM wParam, LPARAM lParam);

    DispatchStub() noexcept;
    ~DispatchStub();
    DispatchStub(const DispatchStub&) = delete;
    DispatchStub& operator=(const DispatchStub&) = delete;

    /// The procedure for a dialog of `object`, made at the first call; null if there is no memory for it. An object has
    /// one stub, whose procedure lives as long as the stub.
    [[nodiscard]] DLGPROC procedure(HWND window, DialogOwner* object, Target target) noexcept;

private:
    struct Code;
    std::unique_ptr<Code> code;
};

} // namespace eq
