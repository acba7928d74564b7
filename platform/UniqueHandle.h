#pragma once

#include "platform/win32.h"

#include <utility>

namespace platform {

/// A handle and the one function that closes it. Traits give the handle's type, its empty value and `close`.
template <typename Traits>
class UniqueHandle {
public:
    using Handle = typename Traits::Handle;

    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Handle handle) noexcept : m_handle(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, Traits::empty())) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~UniqueHandle() { reset(); }

    explicit operator bool() const noexcept { return m_handle != Traits::empty(); }
    Handle get() const noexcept { return m_handle; }

    void reset() noexcept {
        if (m_handle != Traits::empty()) Traits::close(std::exchange(m_handle, Traits::empty()));
    }

    /// Where a system function puts a new handle; what was held is closed first.
    Handle* receive() noexcept {
        reset();
        return &m_handle;
    }

private:
    Handle m_handle = Traits::empty();
};

struct RegistryKeyTraits {
    using Handle = HKEY;
    static Handle empty() noexcept { return nullptr; }
    static void close(Handle key) noexcept { RegCloseKey(key); }
};
using RegistryKey = UniqueHandle<RegistryKeyTraits>;

struct FindHandleTraits {
    using Handle = HANDLE;
    static Handle empty() noexcept { return INVALID_HANDLE_VALUE; }
    static void close(Handle search) noexcept { FindClose(search); }
};
using FindHandle = UniqueHandle<FindHandleTraits>;

struct WindowTraits {
    using Handle = HWND;
    static Handle empty() noexcept { return nullptr; }
    static void close(Handle window) noexcept { DestroyWindow(window); }
};
using Window = UniqueHandle<WindowTraits>;

} // namespace platform
