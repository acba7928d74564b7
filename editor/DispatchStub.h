#pragma once

#include "platform/win32.h"

#include <memory>

namespace eq {

class DialogOwner;

/// Creates a dialog procedure for one object. The procedure contains the address of the object, because the object
/// cannot be found from a window handle.
class DispatchStub {
public:
    /// The function that the procedure calls. It receives the object in the place of the window.
    using Target = INT_PTR(CALLBACK*)(DialogOwner* object, UINT message, WPARAM wParam, LPARAM lParam);

    DispatchStub() noexcept;
    ~DispatchStub();
    DispatchStub(const DispatchStub&) = delete;
    DispatchStub& operator=(const DispatchStub&) = delete;

    /// Returns the procedure for a dialog of `object`, or null if there is no memory for it. The first call creates the
    /// procedure, which lives as long as the stub. Each object has one stub.
    [[nodiscard]] DLGPROC procedure(HWND window, DialogOwner* object, Target target) noexcept;

private:
    struct Code;
    std::unique_ptr<Code> code;
};

} // namespace eq
