#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace eq {

/// Reads a compiled dialog template and writes the same dialog with its caption and its items' titles expanded, and
/// with the system's dialog font in place of "MS Shell Dlg". Nothing else is changed: no class, ordinal, style,
/// position, size or id.
class DialogReader : public TemplateReader {
protected:
    /// Menu, window class and caption, in this order.
    void readNames();
    /// Point size, `headerSize` further bytes, and face name.
    void readFont(std::size_t headerSize);
    /// `fixedSize` bytes, then window class, title and creation data.
    void readItems(unsigned count, std::size_t fixedSize);

private:
    void ReadStringOrOrdinal(bool translate);
};

/// DLGTEMPLATE
class DialogReaderStandard final : public DialogReader {
    void readTemplate() override;
};

/// DLGTEMPLATEEX
class DialogReaderExtended final : public DialogReader {
    void readTemplate() override;
};

/// The platform's dialog font. Leaves both as they are if the platform has none.
void SystemDialogFont(std::wstring& face, std::uint16_t& pointSize);

/// Makes a new template if the one given has keys to expand or names the font to replace. The caller owns the block at
/// `*ppNewResource` on PrepReplaced. Throws nothing.
PrepStatus PrepareDialogResource(const void* pDialogResource, std::size_t size, void** ppNewResource) noexcept;
/// The same for a template whose size is not known, which is bounded by TemplateRange.
PrepStatus PrepareDialogResource(const void* pDialogResource, void** ppNewResource) noexcept;

} // namespace eq
