#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>

namespace eq {

/// Reads a compiled menu template and writes the same menu with its items' texts expanded.
///
/// Popups nest to any depth that the bytes allow: the levels that are open are kept in a list, not on the call stack.
class MenuReader : public TemplateReader {
protected:
    /// The place of an item in the tree of popups.
    struct ItemPlace {
        bool isPopup;
        bool isLast; ///< of its level
    };

    /// Copies the version, the gap's size, and the gap before the first item.
    void copyHeader(std::size_t leastGap);

private:
    void readTemplate() final;
    virtual void ReadHeader() = 0;
    void ReadItems();
    virtual ItemPlace readItem() = 0;
};

/// MENUITEMTEMPLATEHEADER and MENUITEMTEMPLATE
class MenuReaderStandard final : public MenuReader {
    void ReadHeader() override { copyHeader(0); }
    ItemPlace readItem() override;
};

/// MENUEX_TEMPLATE_HEADER and MENUEX_TEMPLATE_ITEM
class MenuReaderExtended final : public MenuReader {
    void ReadHeader() override { copyHeader(4); } // dwHelpId
    ItemPlace readItem() override;
};

/// Makes a new template if the one given has keys to expand. The caller owns the block at `*ppNewResource` on
/// PrepReplaced. Throws nothing.
PrepStatus PrepareMenuResource(const void* pMenuResource, std::size_t size, void** ppNewResource) noexcept;
/// The same for a template whose size is not known, which is bounded by TemplateRange.
PrepStatus PrepareMenuResource(const void* pMenuResource, void** ppNewResource) noexcept;

} // namespace eq
