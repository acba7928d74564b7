#pragma once

#include "curve/model/ParameterPort.h"
#include "parameters/UnitText.h"

#include <optional>
#include <string>
#include <string_view>

namespace eq {

/// The texts of the editor in the language of the host's side: labels, values with units, and typed values. English
/// where a translation is missing. Values have the decimal separator of the user.
class EditorTexts {
public:
    EditorTexts(ParameterPort& port, char decimalSeparator);

    /// Returns the name of a kind of parameter; for the volume its column's.
    [[nodiscard]] const std::string& label(ParameterKind kind) const;
    /// Returns the display text of a parameter for a normalised value, such as "+3.5 dB".
    [[nodiscard]] std::string display(int parameter, float p) const;
    /// Returns the number of a typed text in the parameter's unit; nothing if it is no number, or has another unit.
    /// Both a point and a comma separate decimals.
    [[nodiscard]] std::optional<double> parse(int parameter, std::string_view text) const;

private:
    std::string labels[ParameterKindCount];
    UnitWords words;
    char separator;
};

/// Returns the decimal separator of the user's settings.
[[nodiscard]] char userDecimalSeparator() noexcept;

} // namespace eq
