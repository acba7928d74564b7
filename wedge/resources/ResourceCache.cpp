#include "wedge/resources/ResourceCache.h"

#include "wedge/resources/DialogReader.h"
#include "wedge/resources/MenuReader.h"
#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/ResourceFormats.h"
#include "wedge/resources/ResourceRewriters.h"
#include "wedge/resources/SystemFunctions.h"

#include <algorithm>
#include <array>
#include <exception>
#include <memory>

namespace eq {

namespace {

using Rewriter = PrepStatus (*)(const void* resource, std::size_t size, void** newResource) noexcept;

struct RewriterOfType {
    ResourceType type;
    Rewriter rewrite;
};

constexpr std::array Rewriters = {
    RewriterOfType{ResourceType::Menu, PrepareMenuResource},
    RewriterOfType{ResourceType::Dialog, PrepareDialogResource},
    RewriterOfType{ResourceType::String, PrepareStringResource},
    RewriterOfType{ResourceType::Accelerator, PrepareAcceleratorResource},
    RewriterOfType{ResourceType::DialogInit, PrepareDialogInitResource},
};

Rewriter rewriterOf(std::uintptr_t type) noexcept {
    const auto* const found = std::find_if(Rewriters.begin(), Rewriters.end(), [type](const RewriterOfType& row) {
        return static_cast<std::uintptr_t>(row.type) == type;
    });
    return found == Rewriters.end() ? nullptr : found->rewrite;
}

} // namespace

HRSRC ResourceCache::Prepare(HMODULE module, HRSRC hResInfo, std::uintptr_t type) noexcept {
    const Rewriter rewrite = rewriterOf(type);
    if (!rewrite) return hResInfo;
    try {
        const CriticalSectionEntry entry(m_lock);
        if (m_entries.contains(hResInfo)) return hResInfo;

        // The compiled bytes come from the system's LoadResource, because the wedge's own LoadResource would search
        // this cache.
        const void* const bytes = LockResource(systems::LoadResource(module, hResInfo));
        void* newResource = nullptr;
        const PrepStatus status = rewrite(bytes, SizeofResource(module, hResInfo), &newResource);
        if (status != PrepReplaced && status != PrepUnchanged) return hResInfo;

        std::unique_ptr<std::byte[]> block(static_cast<std::byte*>(newResource));
        CountedBlockRef ref(m_blocks, block.get());
        static_cast<void>(block.release());
        m_entries.emplace(hResInfo, std::move(ref));
    } catch (const std::exception&) {
        // Without memory for an entry, the resource stays in its compiled form.
    }
    return hResInfo;
}

void* ResourceCache::Find(HRSRC hResInfo) noexcept {
    const CriticalSectionEntry entry(m_lock);
    const auto found = m_entries.find(hResInfo);
    return found == m_entries.end() ? nullptr : found->second.get();
}

} // namespace eq
