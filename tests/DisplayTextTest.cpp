#include "parameters/DisplayText.h"

#include "plugin/ParametricEqualizer.h"
#include "tests/support/HostedEffect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>

// The unit words come from UnitTests1033.lng.

namespace eq {

namespace {

struct DisplayText : testing::Test {
    const HostedEffect effect{(new ParametricEqualizer(nullptr))->getAeffect()};

    [[nodiscard]] std::string display(int32 index, float p) const {
        effect.set(index, p);
        return effect.display(index);
    }
};

} // namespace

TEST_F(DisplayText, ShowsEachQuantityInItsOwnForm) {
    const std::tuple<int32, float, const char*> rows[] = {
        // The first frequency is 999.6 Hz: the effect chooses the unit before it rounds the number.
        {1, 0.4337F, "1000 Hz"}, {0, 0.0F, "+12.0 dB"}, {0, 0.5F, "+0.0 dB"},     {8, 1.0F, "-10.0 dB"},
        {7, 0.325F, "+3.5 dB"},  {2, 0.44F, "957 Hz"},  {2, 0.43F, "1.0 kHz"},    {3, 0.11F, "9.4 kHz"},
        {3, 0.10F, "10 kHz"},    {4, 0.0F, "20 kHz"},   {12, 5.0F / 9.0F, "5.0"}, {1, NAN, "0 kHz"},
    };
    for (const auto& [index, p, text] : rows) EXPECT_EQ(display(index, p), text) << index << " at " << p;
    EXPECT_EQ(displayPartsOf(ParameterKind::Frequency, 1000.0).number, "1.0");
    EXPECT_EQ(displayPartsOf(ParameterKind::Frequency, 10000.0).number, "10");
}

TEST_F(DisplayText, StaysInsideItsBufferForValuesOfAnySize) {
    for (const int32 index : {-1, 13}) EXPECT_EQ(display(index, 0.0F), std::string(64, '#'));
    for (int32 index = 0; index < 13; ++index) {
        for (const float p : {1e38F, -1e38F, 1e9F, -30.0F, std::numeric_limits<float>::infinity(), std::nanf("")})
            EXPECT_LT(display(index, p).size(), 28U) << index << " at " << p;
    }
    EXPECT_EQ(display(0, 1e38F), "-23999999232685661916157502");
    EXPECT_EQ(display(1, -30.0F), "2147483647 kHz");
}

} // namespace eq
