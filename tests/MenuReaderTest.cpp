#include "wedge/resources/MenuReader.h"

#include "tests/support/Rewritten.h"

#include <gtest/gtest.h>

namespace eq {

TEST(PrepareMenuResource, ReadsPopupsOfAnyDepth) {
    TemplateBuilder menu = TemplateBuilder().words({0, 0});
    for (int depth = 0; depth < 16000; ++depth) menu.word(0x90).text(u"");
    EXPECT_EQ(statusOf(PrepareMenuResource, menu.words({0x80, 1}).text(u"{T_Short}")), PrepReplaced);
}

} // namespace eq
