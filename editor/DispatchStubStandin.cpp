#include "editor/DispatchStub.h"

#include <atomic>

// The stand-in's windows carry their object themselves, so no code is made.

namespace eq {

namespace {

constexpr const wchar_t* ObjectProperty = L"DialogOwner";
std::atomic<DispatchStub::Target> targetOfAll = nullptr; // the same for every object

INT_PTR CALLBACK callThroughProperty(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const object = static_cast<DialogOwner*>(GetPropW(window, ObjectProperty));
    return object ? targetOfAll.load()(object, message, wParam, lParam) : 0;
}

} // namespace

struct DispatchStub::Code {};

DispatchStub::DispatchStub() noexcept = default;
DispatchStub::~DispatchStub() = default;

DLGPROC DispatchStub::procedure(HWND window, DialogOwner* object, Target target) noexcept {
    targetOfAll = target;
    return SetPropW(window, ObjectProperty, object) != 0 ? callThroughProperty : nullptr;
}

} // namespace eq
