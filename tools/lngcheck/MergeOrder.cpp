#include "tools/lngcheck/MergeOrder.h"

#include "tools/common/Printable.h"

#include "support/AsciiText.h"
#include "tools/lngcheck/FileAccess.h"
#include "tools/lngcheck/KnownTexts.h"
#include "tools/lngcheck/LanguageSet.h"
#include "wedge/CLanguageFile.h"
#include "wedge/LanguageSelection.h"

#include <array>
#include <cstdio>
#include <set>
#include <string_view>

namespace eq {

namespace lngcheck {
namespace {

constexpr std::array Reasons = {"language override", "system's language", "its primary language", "English"};

std::string namesOf(const SearchStep& step) {
    std::string names;
    for (const std::string& path : step.paths) names += (names.empty() ? "" : ", ") + fileName(path);
    return names.empty() ? "nothing new" : names;
}

/// Returns a key without the braces in which the user may write it.
std::string withoutBraces(std::string_view key) {
    key = trim(key);
    if (key.starts_with('{')) key.remove_prefix(1);
    if (key.ends_with('}')) key.remove_suffix(1);
    return std::string(key);
}

void addPlaces(std::vector<Place>& places, const std::vector<LanguageFile>& files, const std::string& key,
               std::string_view context) {
    for (const LanguageFile& file : files) {
        for (const Definition& definition : file.definitions) {
            if (equalNoCase(definition.key, key) && equalNoCase(definition.context, context))
                places.push_back({&file, &definition});
        }
    }
}

void printPlace(const char* introduction, const Place& place) {
    const std::wstring& text = place.definition->text.value_or(L"?");
    std::printf("  %s %s:%d [%s] '%s'\n", introduction, printable(place.file->path).c_str(), place.definition->line,
                printable(place.definition->context).c_str(), printable(inUtf8(text)).c_str());
}

} // namespace

std::vector<SearchStep> searchSteps(const std::string& folder, WORD overrideLanguage, WORD systemLanguage) {
    std::vector<SearchStep> steps;
    std::set<std::string> read;
    for (const std::string& place : {folder, secondFolder(folder)}) {
        if (!steps.empty() && place == folder) break; // reading the same folder again adds nothing
        const auto languages = languageOrder(overrideLanguage, systemLanguage);
        for (std::size_t i = 0; i < languages.size(); ++i) {
            SearchStep step{place, Reasons[i], languages[i], {}};
            for (const std::string& path : languageFilesOf(toLibraryPath(place), languages[i])) {
                if (read.insert(path).second) step.paths.push_back(fromLibraryPath(path));
            }
            steps.push_back(std::move(step));
        }
    }
    return steps;
}

void printSteps(const std::vector<SearchStep>& steps) {
    std::string folder;
    for (const SearchStep& step : steps) {
        if (step.folder != folder) std::printf("order of reading in %s:\n", printable(step.folder).c_str());
        folder = step.folder;
        std::printf("  %s, %s: %s\n", step.reason.c_str(),
                    step.language == 0 ? "none" : std::to_string(step.language).c_str(),
                    printable(namesOf(step)).c_str());
    }
}

void explain(const std::string& key, const std::vector<LanguageFile>& files) {
    std::vector<Place> places;
    addPlaces(places, files, withoutBraces(key), ModuleContext);
    addPlaces(places, files, withoutBraces(key), SharedContext);

    std::printf("%s:\n", printable(withoutBraces(key)).c_str());
    if (places.empty()) std::printf("  in no file that is read\n");
    for (std::size_t i = 0; i < places.size(); ++i) printPlace(i == 0 ? "taken from" : "ignored:  ", places[i]);
}

} // namespace lngcheck

} // namespace eq
