#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>

namespace eq {

/// Rewrites a compiled menu template: expands the keys in the items' texts.
///
/// Popups may nest to any depth that fits in the template, because the open levels are in a list and not on the call
/// stack.
class MenuReader : public TemplateReader {
protected:
    /// The place of an item in the tree of popups.
    struct ItemPlace {
        bool isPopup;
        bool isLast; ///< the last item of its level
    };

    /// Copies the version, the gap's size, and the gap before the first item. Fails if the gap has fewer than
    /// `leastGap` bytes.
    void copyHeader(std::size_t leastGap);

private:
    void readTemplate() final;
    virtual void ReadHeader() = 0;
    void ReadItems();
    virtual ItemPlace readItem() = 0;
};

/// Rewrites the templates that consist of a MENUITEMTEMPLATEHEADER and MENUITEMTEMPLATE records.
class MenuReaderStandard final : public MenuReader {
    void ReadHeader() override { copyHeader(0); }
    ItemPlace readItem() override;
};

/// Rewrites the templates that consist of a MENUEX_TEMPLATE_HEADER and MENUEX_TEMPLATE_ITEM records.
class MenuReaderExtended final : public MenuReader {
    void ReadHeader() override { copyHeader(4); } // the gap contains dwHelpId
    ItemPlace readItem() override;
};

/// Sets `*ppNewResource` to a new template and returns PrepReplaced if the template has keys to expand. The caller then
/// owns the new block. Reads at most `size` bytes.
PrepStatus PrepareMenuResource(const void* pMenuResource, std::size_t size, void** ppNewResource) noexcept;
/// Does the same for a template of unknown size. Reads at most TemplateRange bytes.
PrepStatus PrepareMenuResource(const void* pMenuResource, void** ppNewResource) noexcept;

} // namespace eq
