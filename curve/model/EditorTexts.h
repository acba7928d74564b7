#pragma once

#include "curve/model/ParameterPort.h"
#include "parameters/UnitText.h"

#include <optional>
#include <string>
#include <string_view>

namespace eq {

/// The texts of the editor: labels, values with units, and typed values. The translations come from
/// `ParameterPort::text`; a text without a translation is English. Values have the user's decimal separator.
class EditorTexts {
public:
    EditorTexts(ParameterPort& port, char decimalSeparator);

    /// Returns the label of a kind of parameter. The label of the volume is the name of its column, "Master".
    [[nodiscard]] const std::string& label(ParameterKind kind) const;
    /// Returns the display text of a parameter for a normalised value, such as "+3.5 dB".
    [[nodiscard]] std::string display(int parameter, float p) const;
    /// Returns the value of a typed text, in the parameter's unit. Returns nothing if the text is not a number, or if
    /// its unit does not fit. The decimal separator may be a point or a comma.
    [[nodiscard]] std::optional<double> parse(int parameter, std::string_view text) const;

private:
    std::string labels[ParameterKindCount];
    UnitWords words;
    char separator;
};

/// Returns the decimal separator of the user's settings, a comma or a point.
[[nodiscard]] char userDecimalSeparator() noexcept;

} // namespace eq
