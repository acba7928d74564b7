#include "tests/support/Fingerprint.h"
#include "tests/support/TemplateBuilder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace eq {

// The fingerprint is of a template that was once put together by hand from the dialog's layout, not of what the
// resource compilers make of the sources. It tells that something has moved, not what.
TEST(DialogTemplate, StandsInTheLibraryAsItIsLaidOut) {
    constexpr std::size_t Size = 3138;
    std::ifstream file(EQ_DIALOG_HOLDER, std::ios::binary);
    const std::string library{std::istreambuf_iterator<char>(file), {}};
    const auto start = library.find(TemplateBuilder().words({1, 0xFFFF, 0, 0, 0, 0, 0x448, 0x4000, 44}).get());
    ASSERT_NE(start, library.npos);
    EXPECT_EQ(fingerprint(library.substr(start, Size)), 0x50162CC5670057CCU);
}

} // namespace eq
