#include "tools/lngcheck/checks/FileChecks.h"
#include "wedge/CLanguageFile.h"
#include "wedge/LanguageTag.h"

namespace eq {

namespace lngcheck {

void checkAccelerators(const LanguageFile& file, Findings& findings) {
    for (const Definition& definition : file.definitions) {
        if (!definition.isAccelerator) continue;
        std::string reason;
        const std::string tag = decode_value(definition.value);
        const LanguageTagPtr record = ParseLanguageTag(tag, reason);
        if (record && asAccelerator(*record)) continue;
        const std::string why = record ? "it is not an accelerator" : reason.empty() ? "it is not a <tag>" : reason;
        findings.add(file.path, definition.line, Severity::Fault, "'" + tag + "' cannot be the new accelerator: " + why,
                     "Write <ACCEL keys> after the =. Keys are named VK_F5 and so on, letters, digits, SHIFT, CONTROL, "
                     "ALT.");
    }
}

} // namespace lngcheck

} // namespace eq
