// Parses any bytes as the settings of another equalizer. The parser may throw only the exceptions that it declares, and
// the response must be finite. If the filters have an exact form, an export and an import must return the same filters.

#include "tests/fuzz/Require.h"
#include "tools/common/Errors.h"
#include "tools/equalize/settings/BellExport.h"
#include "tools/equalize/settings/ExactBells.h"
#include "tools/equalize/settings/FilterText.h"
#include "tools/equalize/settings/TargetResponse.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <sstream>
#include <string>

namespace eq {

namespace {

constexpr int Rate = 44100;

FilterText parsed(const std::string& text) {
    std::istringstream stream(text);
    return FilterText::parse(stream, "fuzz.txt");
}

bool isSame(const Bell& a, const Bell& b) {
    const auto same = [](ParameterKind kind, double x, double y) {
        return normalisedOf(kind, x) == normalisedOf(kind, y);
    };
    return same(ParameterKind::Frequency, a.frequency, b.frequency) && same(ParameterKind::Gain, a.gain, b.gain) &&
           same(ParameterKind::Q, a.q, b.q);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const FilterText text = parsed(std::string(reinterpret_cast<const char*>(data), size));
        const TargetResponse response(text, Rate);
        for (const double frequency : {20.0, 1000.0, 20000.0}) require(std::isfinite(response.decibelsAt(frequency)));
        const BellExport bells{Rate, text.preamp, exactBells(text, Rate)};
        const std::vector<Bell> again = exactBells(parsed(bells.equalizerApoText()), Rate);
        require(std::ranges::equal(again, bells.bells, isSame));
    } catch (const FileError&) {
        // A line is wrong, or has no exact form.
    }
    return 0;
}

} // namespace eq
