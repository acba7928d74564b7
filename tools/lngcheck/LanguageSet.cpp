#include "tools/lngcheck/LanguageSet.h"

#include <algorithm>

namespace eq {

namespace lngcheck {

std::string lineOf(const Place& place, const Place& from) {
    return "line " + std::to_string(place.definition->line) +
           (place.file == from.file ? "" : " of " + place.file->name);
}

void Language::add(const LanguageFile& file) {
    m_files.push_back(&file);
    for (const Definition& definition : file.definitions)
        m_first.try_emplace({asNocase(definition.context), asNocase(definition.key)}, Place{&file, &definition});
}

bool Language::isReadable() const {
    return std::ranges::all_of(m_files, &LanguageFile::isReadable);
}

Place Language::find(std::string_view context, std::string_view key) const {
    const auto found = m_first.find({asNocase(context), asNocase(key)});
    return found == m_first.end() ? Place{} : found->second;
}

Place Language::findShown(std::string_view key) const {
    const Place own = find(ModuleContext, key);
    return own ? own : find(SharedContext, key);
}

std::vector<Language> languagesOf(const std::vector<LanguageFile>& files) {
    std::vector<Language> languages;
    std::map<WORD, std::size_t> indices;
    for (const LanguageFile& file : files) {
        if (file.language == 0) continue;
        const auto [index, isNew] = indices.try_emplace(file.language, languages.size());
        if (isNew) languages.emplace_back(file.language);
        languages[index->second].add(file);
    }
    return languages;
}

} // namespace lngcheck

} // namespace eq
