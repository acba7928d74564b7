#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>
#include <cstring>
#include <exception>
#include <string_view>

namespace eq {

/// Runs a rewriter and returns its status, or PrepFailed for an exception. The compiled resource then stays in use, and
/// no message is shown.
template <typename Rewriter>
PrepStatus guardedRewrite(const Rewriter& rewriter) noexcept {
    try {
        return rewriter();
    } catch (const std::exception&) {
        return PrepFailed;
    }
}

/// Sets `*ppNewResource` to a new block with a copy of the content. Returns PrepReplaced.
inline PrepStatus replacedBy(std::string_view content, void** ppNewResource) {
    auto* const block = new std::byte[content.size()];
    std::memcpy(block, content.data(), content.size());
    *ppNewResource = block;
    return PrepReplaced;
}

/// Returns the status of a template that was read, and its new block if the template was changed.
inline PrepStatus finishedTemplate(const TemplateReader& reader, void** ppNewResource) {
    if (reader.IsBad()) return PrepFailed;
    if (!reader.IsChanged()) return PrepUnchanged;
    return replacedBy(reader.GetOutput(), ppNewResource);
}

} // namespace eq
