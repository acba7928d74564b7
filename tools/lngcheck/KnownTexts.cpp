#include "tools/lngcheck/KnownTexts.h"

#include "wedge/NocaseString.h"

#include <algorithm>
#include <array>

namespace lngcheck {
namespace {

constexpr int ReadOut = 28;
constexpr int LeftLabel = 49;
constexpr int RightLabel = 40;
constexpr int ColumnName = 28;
constexpr int SheetButton = 50;

constexpr std::array Texts = {
    KnownText{"IDS_DB", "+12.0 ", ReadOut},         KnownText{"IDS_Hz", "1000 ", ReadOut},
    KnownText{"IDS_kHz", "10.0 ", ReadOut},         KnownText{"IDD_Options_Q", "", LeftLabel},
    KnownText{"IDD_Options_20KHz", "", LeftLabel},  KnownText{"IDD_Options_Freq", "", LeftLabel},
    KnownText{"IDD_Options_20Hz", "", LeftLabel},   KnownText{"IDD_Options_p10dB", "", LeftLabel},
    KnownText{"IDD_Options_Gain", "", RightLabel}, // at the left, too
    KnownText{"IDD_Options_m10dB", "", LeftLabel},  KnownText{"IDD_Options_B1", "", ColumnName},
    KnownText{"IDD_Options_B2", "", ColumnName},    KnownText{"IDD_Options_B3", "", ColumnName},
    KnownText{"IDD_Options_B4", "", ColumnName},    KnownText{"IDD_Options_Master", "", ColumnName},
    KnownText{"IDD_Options_p12dB", "", RightLabel}, KnownText{"IDD_Options_m12dB", "", RightLabel},
    KnownText{"MSGBOX_OK", "", SheetButton},        KnownText{"MSGBOX_CANCEL", "", SheetButton},
    KnownText{"MSGBOX_HELP", "", SheetButton},      KnownText{"PRSHT_APPLY_NOW", "", SheetButton},
    KnownText{"PRSHT_WIZBACK", "", SheetButton},    KnownText{"PRSHT_WIZNEXT", "", SheetButton},
    KnownText{"PRSHT_WIZFINISH", "", SheetButton},
};
static_assert(Texts.size() == 24);

} // namespace

std::span<const KnownText> knownTexts() noexcept {
    return Texts;
}

const KnownText* findKnownText(std::string_view key) noexcept {
    const auto found =
        std::ranges::find_if(Texts, [&](const KnownText& text) { return asNocase(text.key) == asNocase(key); });
    return found == Texts.end() ? nullptr : &*found;
}

bool isKnownContext(std::string_view context) noexcept {
    return asNocase(context) == asNocase(ModuleContext) || asNocase(context) == asNocase(SharedContext);
}

} // namespace lngcheck
