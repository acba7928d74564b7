#include "tests/support/Fingerprint.h"
#include "tests/support/TemplateBuilder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace eq {

// The fingerprint was computed from a template that was written by hand from the dialog's layout, not from the output
// of a resource compiler. A different fingerprint shows that the dialog has changed, but not which part of it.
TEST(DialogTemplate, IsInTheLibraryWithItsLayout) {
    constexpr std::size_t Size = 3138;
    std::ifstream file(EQ_DIALOG_HOLDER, std::ios::binary);
    const std::string library{std::istreambuf_iterator<char>(file), {}};
    const auto start = library.find(TemplateBuilder().words({1, 0xFFFF, 0, 0, 0, 0, 0x448, 0x4000, 44}).get());
    ASSERT_NE(start, library.npos);
    EXPECT_EQ(fingerprint(library.substr(start, Size)), 0x50162CC5670057CCU);
}

} // namespace eq
