#include "tools/lngcheck/Stats.h"

#include "tools/lngcheck/Checks.h"
#include "tools/lngcheck/Languages.h"

#include <cstdio>
#include <map>
#include <string>
#include <utility>

namespace eq {

namespace lngcheck {

void printStats(const std::vector<Language>& languages, const Findings& findings, StatsForm form) {
    std::map<std::pair<std::string, Severity>, int> counts;
    for (const Finding& finding : findings.all()) ++counts[{finding.file, finding.severity}];

    if (form == StatsForm::Table)
        std::printf("%-28s %8s %8s %8s %8s\n", "language", "keys", "missing", "faults", "warnings");
    for (const Language& language : languages) {
        const int missing = missingTexts(language);
        int faults = 0;
        int warnings = 0;
        for (const LanguageFile* file : language.files()) {
            faults += counts[{file->path, Severity::Fault}];
            warnings += counts[{file->path, Severity::Warning}];
        }
        const int keys = static_cast<int>(knownTexts().size()) - missing;
        if (form == StatsForm::Table)
            std::printf("%-28s %8d %8d %8d %8d\n", described(language.id()).c_str(), keys, missing, faults, warnings);
        else
            std::printf("{\"language\": %d, \"keys\": %d, \"missing\": %d, \"faults\": %d, \"warnings\": %d}\n",
                        language.id(), keys, missing, faults, warnings);
    }
}

} // namespace lngcheck

} // namespace eq
