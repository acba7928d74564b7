#pragma once

#include "tests/support/TemplateBuilder.h"
#include "wedge/resources/PrepStatus.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace eq {

using SizedRewriter = PrepStatus (*)(const void* resource, std::size_t size, void** newResource) noexcept;

/// What a rewriter made of a resource.
struct Rewritten {
    PrepStatus status;
    std::unique_ptr<std::byte[]> block;

    /// Whether it made these bytes. The block's size is not told; a block that is too short shows under a sanitizer.
    [[nodiscard]] bool is(std::string_view expected) const {
        return block && std::equal(expected.begin(), expected.end(), reinterpret_cast<const char*>(block.get()));
    }
};

/// Runs a rewriter over a copy whose end is the end of its memory, where a sanitizer sees any read beyond.
inline Rewritten rewriteWith(SizedRewriter rewriter, std::string_view resource) {
    const std::unique_ptr<char[]> copy(new char[resource.size()]);
    resource.copy(copy.get(), resource.size());
    void* block = nullptr;
    const PrepStatus status = rewriter(copy.get(), resource.size(), &block);
    if ((block != nullptr) != (status == PrepReplaced)) throw std::logic_error("a block without its status");
    return {status, std::unique_ptr<std::byte[]>(static_cast<std::byte*>(block))};
}

inline PrepStatus statusOf(SizedRewriter rewriter, const TemplateBuilder& resource) {
    return rewriteWith(rewriter, resource.get()).status;
}

/// Whether a rewriter makes `after` of `before`, and nothing of any `before` that ends too soon.
inline bool replaces(SizedRewriter rewriter, const TemplateBuilder& before, const TemplateBuilder& after) {
    const std::string_view resource = before.get();
    for (std::size_t size = 0; size < resource.size(); ++size)
        if (rewriteWith(rewriter, resource.substr(0, size)).status != PrepFailed) return false;
    return rewriteWith(rewriter, resource).is(after.get());
}

} // namespace eq
