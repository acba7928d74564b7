#pragma once

#include "wedge/CLanguageFile.h"
#include "wedge/NocaseString.h"

#include <functional>
#include <map>
#include <string>

namespace eq {

/// Maps a key to its text. A map never moves its nodes, so a pointer to a text stays valid.
using LanguageTable = std::map<nocase_string, std::wstring, std::less<>>;
/// Maps the name of a context to its table.
using LanguageContexts = std::map<nocase_string, LanguageTable, std::less<>>;

/// Adds the texts of one file to the store's tables while the file is scanned. The first definition of a key counts:
/// the loader never replaces a text.
class CLanguageStoreLoader : public CLanguageFileHandler {
public:
    /// `codepage` applies to the values before the first code page tag. The caller owns `contexts`, which must outlive
    /// the loader.
    CLanguageStoreLoader(UINT codepage, LanguageContexts& contexts) noexcept
        : m_codepage(codepage), m_contexts(&contexts) {}

    void OnTag(const std::string& tag, const std::string& value) override;
    void OnContext(const std::string& name) override;
    /// Throws convert_wstring_failed if the value cannot be converted from its code page.
    void OnString(const std::string& key, const std::string& value) override;
    void OnContextEnd() override;
    void OnFileEnd() override {}

    /// Returns the code page of the values that follow.
    [[nodiscard]] UINT codepage() const noexcept { return m_codepage; }

private:
    std::string m_context;
    UINT m_codepage;
    LanguageContexts* m_contexts;
};

} // namespace eq
