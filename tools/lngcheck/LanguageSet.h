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

/// Returns "line 12", with the name of the file if that is not the file of `from`.
[[nodiscard]] std::string lineOf(const Place& place, const Place& from);

/// The files of one language, which count together: the first definition of a key in a context is the one that shows.
class Language {
public:
    explicit Language(WORD id) : m_id(id) {}

    /// The file must outlive the object.
    void add(const LanguageFile& file);

    [[nodiscard]] WORD id() const { return m_id; }
    [[nodiscard]] const std::vector<const LanguageFile*>& files() const { return m_files; }

    /// Whether each file could be read as a whole. Otherwise nothing can be said of the texts that are missing.
    [[nodiscard]] bool isReadable() const;

    [[nodiscard]] Place find(std::string_view context, std::string_view key) const;

    /// Returns the text that the library shows for a key: that of its own context, or else the shared one.
    [[nodiscard]] Place findShown(std::string_view key) const;

private:
    WORD m_id;
    std::vector<const LanguageFile*> m_files;
    std::map<std::pair<nocase_string_view, nocase_string_view>, Place> m_first;
};

/// Returns the languages in the order of their first file. Files without a language belong to none.
[[nodiscard]] std::vector<Language> languagesOf(const std::vector<LanguageFile>& files);

} // namespace lngcheck

} // namespace eq
