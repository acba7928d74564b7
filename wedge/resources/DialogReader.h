#pragma once

#include "wedge/resources/PrepStatus.h"
#include "wedge/resources/TemplateReader.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace eq {

/// Rewrites a compiled dialog template: expands the keys in the caption and in the items' titles, and replaces the font
/// "MS Shell Dlg" by the system's dialog font. Classes, ordinals, styles, positions, sizes and ids stay the same.
class DialogReader : public TemplateReader {
protected:
    /// Reads and writes the menu, the window class and the caption, in this order.
    void readNames();
    /// Reads and writes the point size, `headerSize` further bytes and the face name.
    void readFont(std::size_t headerSize);
    /// Reads and writes `count` items. Each item has `fixedSize` bytes, then its window class, title and creation data.
    void readItems(unsigned count, std::size_t fixedSize);

private:
    void ReadStringOrOrdinal(bool translate);
};

/// Rewrites the templates that begin with a DLGTEMPLATE.
class DialogReaderStandard final : public DialogReader {
    void readTemplate() override;
};

/// Rewrites the templates that begin with a DLGTEMPLATEEX.
class DialogReaderExtended final : public DialogReader {
    void readTemplate() override;
};

/// Sets `face` and `pointSize` to the platform's dialog font. Leaves both unchanged if the platform has none.
void SystemDialogFont(std::wstring& face, std::uint16_t& pointSize);

/// Sets `*ppNewResource` to a new template and returns PrepReplaced if the template has keys to expand or names the
/// font to replace. The caller then owns the new block. Reads at most `size` bytes.
PrepStatus PrepareDialogResource(const void* pDialogResource, std::size_t size, void** ppNewResource) noexcept;
/// Does the same for a template of unknown size. Reads at most TemplateRange bytes.
PrepStatus PrepareDialogResource(const void* pDialogResource, void** ppNewResource) noexcept;

} // namespace eq
