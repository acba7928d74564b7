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

/// The result of a rewriter.
struct Rewritten {
    PrepStatus status;
    std::unique_ptr<std::byte[]> block;

    /// Returns whether the new block begins with the expected bytes. A rewriter does not report the size of its block,
    /// but a sanitizer detects a block that is too short.
    [[nodiscard]] bool is(std::string_view expected) const {
        return block && std::equal(expected.begin(), expected.end(), reinterpret_cast<const char*>(block.get()));
    }
};

/// Runs a rewriter on a copy of the resource. The copy is in a block of exactly the resource's size, so that a
/// sanitizer detects any read beyond the end.
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

} // namespace eq
