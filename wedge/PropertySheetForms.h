#pragma once

#include "platform/win32.h"
#include "wedge/ResourceLoading.h"
#include "wedge/SystemFunctions.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

// The two forms, 8-bit and 16-bit, of the property-sheet functions and their records.

struct NarrowSheets {
    using Page = PROPSHEETPAGEA;
    using Header = PROPSHEETHEADERA;
    using Text = LPCSTR;
    static constexpr bool isWide = false;
    static constexpr auto& loadLockedResource = LoadLockedResourceA;
    static constexpr auto& loadString = LoadResourceStringA;
    static constexpr auto& createPage = systems::CreatePropertySheetPageA;
    static constexpr auto& openSheet = systems::PropertySheetA;
};

struct WideSheets {
    using Page = PROPSHEETPAGEW;
    using Header = PROPSHEETHEADERW;
    using Text = LPCWSTR;
    static constexpr bool isWide = true;
    static constexpr auto& loadLockedResource = LoadLockedResourceW;
    static constexpr auto& loadString = LoadResourceStringW;
    static constexpr auto& createPage = systems::CreatePropertySheetPageW;
    static constexpr auto& openSheet = systems::PropertySheetW;
};

/// Copies a record that tells its size in its first field. Of an older, shorter form the missing fields are zero; of a
/// newer, longer one the fields beyond are left out.
template <typename Record>
void copySizedRecord(Record& copy, const Record& given) noexcept {
    const std::size_t size = std::min<std::size_t>(given.dwSize, sizeof(Record));
    std::memset(&copy, 0, sizeof copy);
    std::memcpy(&copy, &given, size);
    copy.dwSize = static_cast<DWORD>(size);
}

/// Whether a text is the number of a string in place of one.
template <typename Text>
bool isStringId(Text text) noexcept {
    return reinterpret_cast<std::uintptr_t>(text) < 0x10000;
}
