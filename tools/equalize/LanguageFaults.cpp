#include "tools/equalize/LanguageFaults.h"

#include "support/AsciiText.h"
#include "tools/common/Text.h"
#include "tools/lngcheck/LanguageFile.h"

#include <algorithm>
#include <system_error>
#include <vector>

namespace eq {

std::string languageFaultText(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (entry->path().extension() == ".lng") paths.push_back(entry->path());
    std::ranges::sort(paths);
    const std::string command = "; the command  lngcheck " + eq::quoted(folder.string()) + "  shows all faults";
    for (const std::filesystem::path& path : paths) {
        lngcheck::Findings findings;
        if (!lngcheck::readLanguageFile(path.string(), findings).isBroken) continue;
        const lngcheck::Finding fault = findings.firstFault();
        return "a language file is broken: " + fault.file + ":" + std::to_string(fault.line) + ": " +
               std::string(trim_chars(fault.text, ". ")) + command;
    }
    return "a language file may be broken" + command;
}

} // namespace eq
