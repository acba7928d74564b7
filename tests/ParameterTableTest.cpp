#include "parameters/ParameterTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace eq {

TEST(ParameterTable, IsConsistentInBothDirections) {
    for (int index = 0; index < ParameterCount; ++index) {
        const Parameter& parameter = Parameters[index];
        SCOPED_TRACE(parameter.name);
        const auto [lowest, highest] = scaleOf(parameter.kind).range;
        EXPECT_NEAR(valueOf(parameter.kind, 0.0) / highest, 1.0, 1e-12);
        EXPECT_NEAR(valueOf(parameter.kind, 1.0) / lowest, 1.0, 1e-12);
        EXPECT_EQ(normalisedOf(parameter.kind, parameter.defaultValue), parameter.defaultP);
        for (const double low : {lowest, lowest - 1.0, -1e9, std::nan("")})
            EXPECT_EQ(normalisedOf(parameter.kind, low), 1.0F);
        for (const double high : {highest, highest + 1.0}) EXPECT_EQ(normalisedOf(parameter.kind, high), 0.0F);
        EXPECT_EQ(indexOf(parameter.kind, parameter.band), index);
        const std::string band = parameter.band == 0 ? "" : "(" + std::to_string(parameter.band) + ")";
        EXPECT_TRUE(std::string(parameter.name).ends_with(band));
    }
}

} // namespace eq
