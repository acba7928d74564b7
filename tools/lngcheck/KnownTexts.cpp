#include "tools/lngcheck/KnownTexts.h"

#include "support/AsciiText.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace eq {

namespace lngcheck {
namespace {

constexpr int ReadOut = 28;
constexpr int LeftLabel = 49;
constexpr int RightLabel = 40;
constexpr int ColumnName = 28;
constexpr int SheetButton = 50;

/// Returns a unit word and its longest number. `value` must be the value that shows this number.
KnownText unitWord(ParameterKind kind, double value) {
    const DisplayParts parts = displayPartsOf(kind, value);
    return {parts.unitKey, ReadOut, parts.number + " "};
}

std::vector<KnownText> makeTexts() {
    return {
        unitWord(ParameterKind::Volume, VolumeRange.highest),
        // Each frequency is just below a limit, so its number is rounded up to the limit.
        unitWord(ParameterKind::Frequency, std::nextafter(LowestInKilohertz, 0.0F)),
        unitWord(ParameterKind::Frequency, std::nextafter(LowestInWholeKilohertz, 0.0F)),
        {"IDD_Options_Q", LeftLabel},
        {"IDD_Options_20KHz", LeftLabel},
        {"IDD_Options_Freq", LeftLabel},
        {"IDD_Options_20Hz", LeftLabel},
        {"IDD_Options_p10dB", LeftLabel},
        {"IDD_Options_Gain", RightLabel}, // also shown at the left, where it may be LeftLabel wide
        {"IDD_Options_m10dB", LeftLabel},
        {"IDD_Options_B1", ColumnName},
        {"IDD_Options_B2", ColumnName},
        {"IDD_Options_B3", ColumnName},
        {"IDD_Options_B4", ColumnName},
        {"IDD_Options_Master", ColumnName},
        {"IDD_Options_p12dB", RightLabel},
        {"IDD_Options_m12dB", RightLabel},
        {"MSGBOX_OK", SheetButton},
        {"MSGBOX_CANCEL", SheetButton},
        {"MSGBOX_HELP", SheetButton},
        {"PRSHT_APPLY_NOW", SheetButton},
        {"PRSHT_WIZBACK", SheetButton},
        {"PRSHT_WIZNEXT", SheetButton},
        {"PRSHT_WIZFINISH", SheetButton},
    };
}

} // namespace

std::span<const KnownText> knownTexts() {
    static const std::vector<KnownText> texts = makeTexts();
    return texts;
}

const KnownText* findKnownText(std::string_view key) {
    const auto texts = knownTexts();
    const auto found = std::ranges::find_if(texts, [&](const KnownText& text) { return equalNoCase(text.key, key); });
    return found == texts.end() ? nullptr : &*found;
}

bool isKnownContext(std::string_view context) noexcept {
    return equalNoCase(context, ModuleContext) || equalNoCase(context, SharedContext);
}

} // namespace lngcheck

} // namespace eq
