#pragma once

#include "tests/support/TemplateBuilder.h"
#include "wedge/PrepStatus.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

using SizedRewriter = PrepStatus (*)(const void* resource, std::size_t size, void** newResource) noexcept;

/// What a rewriter made of a resource.
struct Rewritten {
    PrepStatus status;
    std::unique_ptr<std::byte[]> block;

    /// Whether it made these bytes. The block's size is not told; a block that is too short shows under a sanitizer.
    [[nodiscard]] bool is(const TemplateBuilder& expected) const {
        return status == PrepReplaced && std::memcmp(block.get(), expected.get().data(), expected.get().size()) == 0;
    }
};

/// Runs a rewriter over a copy whose end is the end of its memory, where a sanitizer sees any read beyond.
inline Rewritten rewriteWith(SizedRewriter rewriter, const std::string& resource) {
    const auto copy = std::make_unique<char[]>(resource.size());
    std::memcpy(copy.get(), resource.data(), resource.size());
    void* block = nullptr;
    const PrepStatus status = rewriter(copy.get(), resource.size(), &block);
    EXPECT_EQ(block != nullptr, status == PrepReplaced);
    return {status, std::unique_ptr<std::byte[]>(static_cast<std::byte*>(block))};
}

/// Cuts a good resource at every place, and puts every value into every byte of it in turn: of the latter any result is
/// right that comes without a read outside.
inline void tryBroken(SizedRewriter rewriter, std::string resource) {
    EXPECT_EQ(rewriteWith(rewriter, resource).status, PrepReplaced);
    for (std::size_t size = 0; size < resource.size(); ++size)
        EXPECT_EQ(rewriteWith(rewriter, resource.substr(0, size)).status, PrepFailed) << "cut to " << size << " bytes";
    for (char& place : resource) {
        const char before = place;
        for (int value = 0; value < 256; ++value) {
            place = static_cast<char>(value);
            static_cast<void>(rewriteWith(rewriter, resource));
        }
        place = before;
    }
}
