#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>

/// Reads a compiled menu template and writes the same menu with its items' texts expanded.
///
/// Popups nest to any depth that the bytes allow: the levels that are open are kept in a list, not on the call stack.
class MenuReader : public TemplateReader {
public:
    /// Reads a whole template of at most `input_size` bytes. Throws prep_exception.
    void Read(const void* input_address, std::size_t input_size);

protected:
    /// What an item tells of the tree it stands in.
    struct ItemPlace {
        bool isPopup;
        bool isLast; ///< of its level
    };

private:
    virtual void ReadHeader() = 0;
    virtual ItemPlace readItem() = 0;
    void ReadItems();

protected:
    /// Copies all in front of the first item, which lies `gap` bytes behind the first two words.
    void copyHeader(std::size_t leastGap);
    void appendExpanded();
};

/// MENUITEMTEMPLATEHEADER and MENUITEMTEMPLATE
class MenuReaderStandard final : public MenuReader {
    void ReadHeader() override;
    ItemPlace readItem() override;
};

/// MENUEX_TEMPLATE_HEADER and MENUEX_TEMPLATE_ITEM
class MenuReaderExtended final : public MenuReader {
    void ReadHeader() override;
    ItemPlace readItem() override;
};

/// Makes a new template if the one given has keys to expand. The caller owns the block at `*ppNewResource` on
/// PrepReplaced. Throws nothing.
PrepStatus PrepareMenuResource(const void* pMenuResource, std::size_t size, void** ppNewResource) noexcept;
/// The same for a template whose size is not known, which is bounded by TemplateRange.
PrepStatus PrepareMenuResource(const void* pMenuResource, void** ppNewResource) noexcept;
