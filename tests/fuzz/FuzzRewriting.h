#pragma once

#include "wedge/PrepStatus.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

// What the fuzz targets of the rewriters share. The texts are those of the language file beside the programs.

using SizedRewriter = PrepStatus (*)(const void* resource, std::size_t size, void** newResource) noexcept;
using Bytes = std::span<const std::uint8_t>;

/// Aborts, which is a finding.
void require(bool holds);

/// Bytes whose end is the end of their memory, where the sanitizer sees any read beyond.
class ExactCopy {
public:
    explicit ExactCopy(Bytes bytes);

    [[nodiscard]] const void* data() const { return m_bytes.get(); }
    [[nodiscard]] std::size_t size() const { return m_size; }

private:
    std::unique_ptr<std::uint8_t[]> m_bytes;
    std::size_t m_size;
};

struct Rewriting {
    PrepStatus status;
    std::unique_ptr<std::byte[]> block; // of PrepReplaced alone
};

/// Runs a rewriter. Its result is consistent, and no replacement for bytes in which nothing can be replaced.
Rewriting rewrite(SizedRewriter rewriter, const ExactCopy& resource, bool canChange);

/// The same, and then once more over what came out, whose size `sizeOf` tells: that is a good resource.
void rewriteTwice(SizedRewriter rewriter, Bytes resource, bool canChange,
                  const std::function<std::size_t(const ExactCopy& resource, const std::byte* block)>& sizeOf);

/// Whether a key can start somewhere.
bool hasBrace(Bytes resource);

/// A number of a block that holds it.
std::uint16_t wordAt(const std::byte* block, std::size_t offset);

/// The size of what a reader of templates makes of a template.
template <typename Reader>
std::size_t outputSize(const ExactCopy& resource) {
    Reader reader;
    reader.Read(resource.data(), resource.size());
    return reader.GetOutput().size() * sizeof(char16_t);
}
