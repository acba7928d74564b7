#pragma once

#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/LanguageFile.h"
#include "wedge/NocaseString.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace eq {

namespace lngcheck {

/// A definition and its file.
struct Place {
    const LanguageFile* file = nullptr;
    const Definition* definition = nullptr;

    explicit operator bool() const { return definition != nullptr; }
};

/// Returns "line 12", or "line 12 of FILE" if `place` and `from` are in different files.
[[nodiscard]] std::string lineOf(const Place& place, const Place& from);

/// The files of one language. The library merges them, and uses the first definition of a key in a context.
class Language {
public:
    explicit Language(WORD id) : m_id(id) {}

    /// Adds a file, which must outlive the object.
    void add(const LanguageFile& file);

    [[nodiscard]] WORD id() const { return m_id; }
    [[nodiscard]] const std::vector<const LanguageFile*>& files() const { return m_files; }

    /// Returns whether each file could be read as a whole. Otherwise the missing texts are unknown.
    [[nodiscard]] bool isReadable() const;

    /// Returns the definition of a key in a context, or an empty place.
    [[nodiscard]] Place find(std::string_view context, std::string_view key) const;

    /// Returns the definition that the library uses for a key: from the library's own context, or else from the shared
    /// context.
    [[nodiscard]] Place findShown(std::string_view key) const;

private:
    WORD m_id;
    std::vector<const LanguageFile*> m_files;
    std::map<std::pair<nocase_string_view, nocase_string_view>, Place> m_first;
};

/// Returns the languages in the order of their first files. Ignores files without a language.
[[nodiscard]] std::vector<Language> languagesOf(const std::vector<LanguageFile>& files);

} // namespace lngcheck

} // namespace eq
