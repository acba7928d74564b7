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
template <SizedRewriter Rewriter>
Rewritten rewriteWith(const std::string& resource) {
    const auto copy = std::make_unique<char[]>(resource.size());
    std::memcpy(copy.get(), resource.data(), resource.size());
    void* block = nullptr;
    const PrepStatus status = Rewriter(copy.get(), resource.size(), &block);
    EXPECT_EQ(block != nullptr, status == PrepReplaced);
    return {status, std::unique_ptr<std::byte[]>(static_cast<std::byte*>(block))};
}

template <SizedRewriter Rewriter>
void expectFailureAtEveryCut(const std::string& resource) {
    for (std::size_t size = 0; size < resource.size(); ++size) {
        ASSERT_EQ(rewriteWith<Rewriter>(resource.substr(0, size)).status, PrepFailed) << "cut to " << size << " bytes";
    }
    EXPECT_NE(rewriteWith<Rewriter>(resource).status, PrepFailed);
}

/// Puts every value into every byte in turn: any result is right that comes without a read outside.
template <SizedRewriter Rewriter>
void tryEveryByteValue(std::string resource) {
    for (char& place : resource) {
        const char before = place;
        for (int value = 0; value < 256; ++value) {
            place = static_cast<char>(value);
            static_cast<void>(rewriteWith<Rewriter>(resource));
        }
        place = before;
    }
}
