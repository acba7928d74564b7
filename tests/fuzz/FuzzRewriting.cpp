#include "tests/fuzz/FuzzRewriting.h"

#include "wedge/CLanguageStore.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

void require(bool holds) {
    if (!holds) std::abort();
}

ExactCopy::ExactCopy(Bytes bytes) : m_bytes(new std::uint8_t[bytes.size()]), m_size(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), m_bytes.get());
}

Rewriting rewrite(SizedRewriter rewriter, const ExactCopy& resource, bool canChange) {
    // Without its language file a program would look at no replacement at all.
    static const bool hasTexts = GetLanguageString("T_Short") == "S";
    require(hasTexts);
    void* block = nullptr;
    const PrepStatus status = rewriter(resource.data(), resource.size(), &block);
    require(status == PrepFailed || status == PrepUnchanged || (status == PrepReplaced && canChange));
    require((block != nullptr) == (status == PrepReplaced));
    return {status, std::unique_ptr<std::byte[]>(static_cast<std::byte*>(block))};
}

void rewriteTwice(SizedRewriter rewriter, Bytes resource, bool canChange,
                  const std::function<std::size_t(const ExactCopy& resource, const std::byte* block)>& sizeOf) {
    const ExactCopy input(resource);
    const Rewriting first = rewrite(rewriter, input, canChange);
    if (first.status != PrepReplaced) return;
    const std::size_t size = sizeOf(input, first.block.get());
    const ExactCopy output({reinterpret_cast<const std::uint8_t*>(first.block.get()), size});
    require(rewrite(rewriter, output, true).status != PrepFailed);
}

bool hasBrace(Bytes resource) {
    return std::find(resource.begin(), resource.end(), '{') != resource.end();
}

std::uint16_t wordAt(const std::byte* block, std::size_t offset) {
    std::uint16_t word;
    std::memcpy(&word, block + offset, sizeof word);
    return word;
}
