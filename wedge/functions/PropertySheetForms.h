#pragma once

#include "platform/win32.h"
#include "wedge/functions/ResourceLoading.h"
#include "wedge/resources/SystemFunctions.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

// The two forms, 8-bit and 16-bit, of the property-sheet functions and their records.

namespace eq {

struct NarrowSheets {
    using Page = PROPSHEETPAGEA;
    using Header = PROPSHEETHEADERA;
    using Text = LPCSTR;
    static constexpr bool IsWide = false;
    static constexpr auto& LoadLockedResource = LoadLockedResourceA;
    static constexpr auto& LoadText = LoadResourceStringA;
    static constexpr auto& CreatePage = systems::CreatePropertySheetPageA;
    static constexpr auto& OpenSheet = systems::PropertySheetA;
};

struct WideSheets {
    using Page = PROPSHEETPAGEW;
    using Header = PROPSHEETHEADERW;
    using Text = LPCWSTR;
    static constexpr bool IsWide = true;
    static constexpr auto& LoadLockedResource = LoadLockedResourceW;
    static constexpr auto& LoadText = LoadResourceStringW;
    static constexpr auto& CreatePage = systems::CreatePropertySheetPageW;
    static constexpr auto& OpenSheet = systems::PropertySheetW;
};

/// A copy of a record that states its size in its first field, `dwSize`. The fields that a shorter record lacks are
/// zero. A longer record has additional bytes after the fields. These bytes are copied, because they may be the
/// caller's own data.
template <typename Record>
class SizedCopy {
public:
    explicit SizedCopy(const Record& given)
        : m_bytes(std::make_unique<std::byte[]>(std::max<std::size_t>(given.dwSize, sizeof given))) {
        std::memcpy(m_bytes.get(), &given, given.dwSize);
    }

    [[nodiscard]] Record& operator*() const noexcept { return *reinterpret_cast<Record*>(m_bytes.get()); }
    [[nodiscard]] Record* operator->() const noexcept { return &**this; }

    /// Passes ownership of the copy's bytes to the caller.
    [[nodiscard]] std::unique_ptr<std::byte[]> release() noexcept { return std::move(m_bytes); }

private:
    std::unique_ptr<std::byte[]> m_bytes;
};

/// Returns whether `text` is a string id in place of a pointer to a text.
template <typename Text>
bool isStringId(Text text) noexcept {
    return reinterpret_cast<std::uintptr_t>(text) < 0x10000;
}

} // namespace eq
