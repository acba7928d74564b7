#include "support/ContextException.h"
#include "wedge/resources/prep_exception.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <string>

namespace eq {

namespace {

constexpr unsigned long NoSuchCode = 0xE1234567;

template <typename Make>
ContextException withoutHeap(const Make& make) {
    const allocations::Shortage shortage(0);
    return make();
}

} // namespace

TEST(ContextException, ReportsNameThrowerPositionAndContext) {
    EXPECT_STREQ(prep_exception("NULL == input_address").what(),
                 "prep_exception thrown by  [:0] with context\nNULL == input_address");
    EXPECT_STREQ(ContextException("f()", "", "file", -12, "e").what(), "e thrown by f() [file:-12]");
    EXPECT_STREQ(ContextException(nullptr, nullptr, nullptr, 7, nullptr).what(),
                 "<exception not named> thrown by  [:7]");
}

TEST(ContextException, UsesTheHeapOnlyBeyond256BytesAndCopiesAllTexts) {
    // Without the file name, the texts need 40 bytes: three texts of one letter, a line number of one digit, and the
    // fixed parts.
    for (const std::size_t size : {256U, 257U}) {
        const std::string file(size - 40, 'f');
        const std::size_t before = allocations::asked;
        const ContextException source("t", "c", file.c_str(), 0, "n");
        EXPECT_EQ(allocations::asked - before, size > 256 ? size : 0);
        const ContextException copy(source); // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_EQ(copy.what(), "n thrown by t [" + file + ":0] with context\nc");
        EXPECT_EQ(std::string(copy.name()) + copy.throwingOperation() + copy.context(), "ntc");
        EXPECT_TRUE(copy.what() != source.what() && copy.name() != source.name() && copy.context() != source.context());
        EXPECT_NE(copy.throwingOperation(), source.throwingOperation());
    }
}

TEST(ContextException, CutsItsTextsIfTheHeapIsExhausted) {
    const std::string context(300, 'c');
    const auto make = [&] { return ContextException("f()", context.c_str(), "file", 1, "name"); };
    const ContextException source = make();
    const ContextException cut = withoutHeap(make);
    // The name and the thrower, with their terminators, use 9 of the 256 bytes. The report uses the rest. The
    // terminator of the report is also the empty context.
    EXPECT_EQ(cut.what(), std::string(source.what()).substr(0, 255 - 9));
    EXPECT_STREQ(cut.context(), "");
    EXPECT_STREQ(withoutHeap([&] { return ContextException(source); }).what(), "");

    const auto call = [] { return ContextException("f()", "Call()", NoSuchCode, "file", 1, "name"); };
    EXPECT_STREQ(call().what(), "name thrown by f() [file:1] with context\nCall to 'Call()' returned error 3777185127");
    EXPECT_STREQ(withoutHeap(call).what(), "name thrown by f() [file:1] with context\nCall()");
}

TEST(SystemErrorText, ReturnsTheSystemsTextOrTheFallbackSeparatelyForEachThread) {
    EXPECT_STREQ(SystemErrorText(NoSuchCode, "fallback"), "fallback");
    const std::string words = SystemErrorText(2, nullptr);
    EXPECT_TRUE(words.size() > 2 && words.ends_with("\r\n")) << words;
    EXPECT_EQ(CallFailureText("Call()", 2), "Call to 'Call()' returned error 2: " + words);

    const std::string expected[] = {CallFailureText("f", 5), CallFailureText("f", 6)};
    onThreads(2, [&](int i) {
        for (int round = 0; round < 500; ++round)
            EXPECT_EQ(CallFailureText("f", 5 + static_cast<unsigned long>(i)), expected[i]);
    });
}

} // namespace eq
