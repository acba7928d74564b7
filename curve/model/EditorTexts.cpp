#include "curve/model/EditorTexts.h"

#include "parameters/DisplayText.h"
#include "platform/win32.h"

#include <algorithm>

namespace eq {

namespace {

std::string translated(ParameterPort& port, const char* key, const char* english) {
    std::string text = port.text(key);
    return text.empty() ? english : text;
}

} // namespace

EditorTexts::EditorTexts(ParameterPort& port, char decimalSeparator)
    : labels{translated(port, "IDD_Options_Master", "Master"), translated(port, "IDD_Options_Freq", "Frequency"),
             translated(port, "IDD_Options_Gain", "Gain"), translated(port, "IDD_Options_Q", "Q")},
      words{translated(port, DecibelKey, "dB"), translated(port, HertzKey, "Hz"),
            translated(port, KilohertzKey, "kHz")},
      separator(decimalSeparator) {}

const std::string& EditorTexts::label(ParameterKind kind) const {
    return labels[static_cast<int>(kind)];
}

std::string EditorTexts::display(int parameter, float p) const {
    const ParameterKind kind = Parameters[parameter].kind;
    auto [text, unitKey] = displayPartsOf(kind, valueOf(kind, static_cast<double>(p)));
    std::ranges::replace(text, '.', separator);
    if (unitKey == nullptr) return text;
    const std::string_view key = unitKey;
    return text + " " + (key == DecibelKey ? words.decibel : key == KilohertzKey ? words.kilohertz : words.hertz);
}

std::optional<double> EditorTexts::parse(int parameter, std::string_view text) const {
    const ParameterKind kind = Parameters[parameter].kind;
    std::string number(text);
    std::ranges::replace(number, ',', '.');
    const std::optional<double> value = parseWithUnit(kind, number, words);
    return value ? value : parseWithUnit(kind, number); // English units are always understood
}

char userDecimalSeparator() noexcept {
    wchar_t separator[5];
    const bool isKnown = GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, 5) != 0;
    return isKnown && separator[0] == L',' ? ',' : '.';
}

} // namespace eq
