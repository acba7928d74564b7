#pragma once

#include "tests/fuzz/Require.h"
#include "wedge/CLanguageStore.h"
#include "wedge/PrepStatus.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

// What the fuzz targets of the rewriters share. The texts are those of the language file beside the programs.

using SizedRewriter = PrepStatus (*)(const void* resource, std::size_t size, void** newResource) noexcept;
using Bytes = std::span<const std::uint8_t>;

/// A number of a block that holds it.
inline std::uint16_t wordAt(const std::byte* block, std::size_t offset) {
    std::uint16_t word;
    std::memcpy(&word, block + offset, sizeof word);
    return word;
}

/// Whether a key can start somewhere.
inline bool hasBrace(Bytes resource) {
    return std::find(resource.begin(), resource.end(), '{') != resource.end();
}

/// A copy whose end is the end of its memory, where the sanitizer sees any read beyond.
inline std::unique_ptr<std::byte[]> exactCopy(const void* bytes, std::size_t size) {
    std::unique_ptr<std::byte[]> copy(new std::byte[size]);
    std::copy_n(static_cast<const std::byte*>(bytes), size, copy.get());
    return copy;
}

/// Runs a rewriter, twice if it replaces: what comes out, whose size `sizeOf(input, block)` tells, is a good resource.
/// There is no replacement for bytes in which nothing can be replaced.
template <typename SizeOf>
void rewriteTwice(SizedRewriter rewriter, Bytes resource, bool canChange, SizeOf sizeOf) {
    // Without its language file a program would look at no replacement at all.
    static const bool hasTexts = GetLanguageString("T_Short") == "S";
    require(hasTexts);
    auto input = exactCopy(resource.data(), resource.size());
    std::size_t size = resource.size();
    for (int run = 0; run < 2; ++run) {
        void* made = nullptr;
        const PrepStatus status = rewriter(input.get(), size, &made);
        const std::unique_ptr<std::byte[]> block(static_cast<std::byte*>(made));
        require(status == PrepUnchanged || status == (made ? PrepReplaced : PrepFailed));
        require((made == nullptr || canChange) && (run == 0 || status != PrepFailed));
        if (!made || run == 1) return;
        size = sizeOf(input.get(), block.get());
        input = exactCopy(block.get(), size);
    }
}

/// The size of what a reader of templates makes of a template.
template <typename Reader>
std::size_t outputSize(Bytes resource) {
    Reader reader;
    reader.Read(resource.data(), resource.size());
    return reader.GetOutput().size() * sizeof(char16_t);
}
