#include "wedge/functions/ResourceLoading.h"

#include "support/BinaryReader.h"
#include "support/TextConversion.h"
#include "wedge/CLanguageStore.h"
#include "wedge/functions/WedgeState.h"

#include <cstdint>
#include <string>

namespace eq {

namespace {

constexpr std::size_t Unbounded = PTRDIFF_MAX;

std::optional<LockedResource> lockFound(HMODULE module, HRSRC hResInfo) {
    if (!hResInfo) return std::nullopt;
    const void* const bytes = LockResource(LoadResource(module, hResInfo));
    if (!bytes) return std::nullopt;
    // A block of the cache is complete and needs no bound. SizeofResource returns the size of the compiled resource,
    // not of the block.
    const bool isOurs = bytes == wedgeState().resourceCache.Find(hResInfo);
    return LockedResource{bytes, isOurs ? Unbounded : SizeofResource(module, hResInfo)};
}

std::uint16_t bundleOf(UINT id) noexcept {
    return static_cast<std::uint16_t>((id >> 4U) + 1);
}

/// Returns the string of `id` from its bundle, or nothing if the bundle ends before the string.
std::optional<std::wstring> readString(const std::optional<LockedResource>& bundle, UINT id) {
    if (!bundle) return std::nullopt;
    try {
        BinaryReader strings(bundle->bytes, bundle->size);
        for (UINT before = id % StringsInBundle; before > 0; --before)
            strings.skip(strings.read<std::uint16_t>() * sizeof(std::uint16_t));
        return strings.readText(strings.read<std::uint16_t>());
    } catch (const EndOfData&) {
        return std::nullopt;
    }
}

template <typename Character>
std::unique_ptr<Character[]> newTerminated(const std::basic_string<Character>& text) {
    auto copy = std::make_unique<Character[]>(text.size() + 1);
    text.copy(copy.get(), text.size());
    return copy;
}

} // namespace

std::optional<LockedResource> lockResource(HMODULE module, ResourceType type, LPCSTR name) {
    return lockFound(module, FindResourceExA(module, MAKEINTRESOURCEA(static_cast<WORD>(type)), name, GetLanguageId()));
}

std::optional<LockedResource> lockResource(HMODULE module, ResourceType type, LPCWSTR name) {
    return lockFound(module, FindResourceExW(module, MAKEINTRESOURCEW(static_cast<WORD>(type)), name, GetLanguageId()));
}

const void* LoadLockedResourceA(HMODULE hModule, ResourceType type, LPCSTR name) {
    const auto resource = lockResource(hModule, type, name);
    return resource ? resource->bytes : nullptr;
}

const void* LoadLockedResourceW(HMODULE hModule, ResourceType type, LPCWSTR name) {
    const auto resource = lockResource(hModule, type, name);
    return resource ? resource->bytes : nullptr;
}

std::unique_ptr<char[]> LoadResourceStringA(HMODULE module, UINT id) {
    const auto text = readString(lockResource(module, ResourceType::String, MAKEINTRESOURCEA(bundleOf(id))), id);
    return text ? newTerminated(toNarrow(*text, GetLanguageCodepage(), AnySize, "?").text) : nullptr;
}

std::unique_ptr<wchar_t[]> LoadResourceStringW(HMODULE module, UINT id) {
    const auto text = readString(lockResource(module, ResourceType::String, MAKEINTRESOURCEW(bundleOf(id))), id);
    return text ? newTerminated(*text) : nullptr;
}

} // namespace eq
