#include "editor/DispatchStub.h"

#include <atomic>

// A window of the stand-in has its object as a property, so this file creates no code.

namespace eq {

namespace {

constexpr const wchar_t* ObjectProperty = L"DialogOwner";
std::atomic<DispatchStub::Target> targetOfAll = nullptr; // all objects have the same target

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
