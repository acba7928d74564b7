#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>
#include <cstring>
#include <exception>

/// Runs a rewriter. Whatever fails in it leaves the compiled resource in use, and nobody is told.
template <typename Rewriter>
PrepStatus guardedRewrite(const Rewriter& rewriter) noexcept {
    try {
        return rewriter();
    } catch (const std::exception&) {
        return PrepFailed;
    }
}

/// Hands out a copy of `size` bytes as a rewriter's new block.
inline PrepStatus replacedBy(const void* content, std::size_t size, void** ppNewResource) {
    auto* const block = new std::byte[size];
    if (size > 0) std::memcpy(block, content, size);
    *ppNewResource = block;
    return PrepReplaced;
}

/// The end of a template's rewriting.
inline PrepStatus finishedTemplate(const TemplateReader& reader, void** ppNewResource) {
    if (reader.IsBad()) return PrepFailed;
    if (!reader.IsChanged()) return PrepUnchanged;
    const std::u16string& output = reader.GetOutput();
    return replacedBy(output.data(), output.size() * sizeof(char16_t), ppNewResource);
}
