#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

namespace eq {

/// Owns a handle. `Close` closes a handle and returns false on failure. `Empty` is the number of the handle that means
/// "none".
template <typename Handle, bool (&Close)(Handle) noexcept, std::intptr_t Empty = 0>
class UniqueHandle {
public:
    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Handle handle) noexcept : m_handle(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : m_handle(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~UniqueHandle() { reset(); }

    explicit operator bool() const noexcept { return m_handle != empty(); }
    Handle get() const noexcept { return m_handle; }

    /// Returns the handle and passes its ownership to the caller.
    Handle release() noexcept { return std::exchange(m_handle, empty()); }

    /// Closes the handle, if there is one. Returns false on failure; the system then has the error code.
    bool reset() noexcept { return !*this || Close(release()); }

    /// Closes the current handle, and returns the address at which a system function stores a new one.
    Handle* receive() noexcept {
        reset();
        return &m_handle;
    }

private:
    static Handle empty() noexcept {
        if constexpr (std::is_pointer_v<Handle>) {
            return reinterpret_cast<Handle>(Empty);
        } else {
            return Empty;
        }
    }

    Handle m_handle = empty();
};

} // namespace eq
