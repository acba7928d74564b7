#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>
#include <cstring>
#include <exception>
#include <string_view>

namespace eq {

/// Runs a rewriter. Whatever fails in it leaves the compiled resource in use, and nobody is told.
template <typename Rewriter>
PrepStatus guardedRewrite(const Rewriter& rewriter) noexcept {
    try {
        return rewriter();
    } catch (const std::exception&) {
        return PrepFailed;
    }
}

/// Returns a copy of the content as a rewriter's new block.
inline PrepStatus replacedBy(std::string_view content, void** ppNewResource) {
    auto* const block = new std::byte[content.size()];
    std::memcpy(block, content.data(), content.size());
    *ppNewResource = block;
    return PrepReplaced;
}

/// The end of a template's rewriting.
inline PrepStatus finishedTemplate(const TemplateReader& reader, void** ppNewResource) {
    if (reader.IsBad()) return PrepFailed;
    if (!reader.IsChanged()) return PrepUnchanged;
    return replacedBy(reader.GetOutput(), ppNewResource);
}

} // namespace eq
