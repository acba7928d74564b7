#pragma once

#include "wedge/CLanguageFile.h"
#include "wedge/NocaseString.h"

#include <functional>
#include <map>
#include <string>

namespace eq {

/// From key to text. A node keeps its place for life, so a pointer to its text stays valid.
using LanguageTable = std::map<nocase_string, std::wstring, std::less<>>;
/// From context name to the context's table.
using LanguageContexts = std::map<nocase_string, LanguageTable, std::less<>>;

/// Fills the store's tables from the scan of one file. Only ever adds: the first definition of a key stands.
class CLanguageStoreLoader : public CLanguageFileHandler {
public:
    /// `codepage` is that of the values up to the first code page tag. `contexts` stays with the caller.
    CLanguageStoreLoader(UINT codepage, LanguageContexts& contexts) noexcept
        : m_codepage(codepage), m_contexts(&contexts) {}

    void OnTag(const std::string& tag, const std::string& value) override;
    void OnContext(const std::string& name) override;
    /// Throws convert_wstring_failed for a value that is no text of its code page.
    void OnString(const std::string& key, const std::string& value) override;
    void OnContextEnd() override;
    void OnFileEnd() override {}

    /// The code page in which values are read now.
    [[nodiscard]] UINT codepage() const noexcept { return m_codepage; }

private:
    std::string m_context;
    UINT m_codepage;
    LanguageContexts* m_contexts;
};

} // namespace eq
