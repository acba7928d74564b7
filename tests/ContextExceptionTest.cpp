#include "support/ContextException.h"
#include "wedge/prep_exception.h"

#include "tests/support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned long FileNotFound = 2;
constexpr unsigned long NoSuchCode = 0xE1234567;

std::string longContext() {
    return std::string(300, 'c') + "end";
}

template <typename Make>
ContextException withoutHeap(const Make& make) {
    const allocations::Shortage shortage(0);
    return make();
}

} // namespace

TEST(ContextException, ReportsNameThrowerPositionAndContext) {
    const ContextException full("CLanguageFile::CLanguageFile()", "Open of file 'x' failed.", "wedge/CLanguageFile",
                                574, "open_failed");
    EXPECT_STREQ(full.what(), "open_failed thrown by CLanguageFile::CLanguageFile() [wedge/CLanguageFile:574]"
                              " with context\nOpen of file 'x' failed.");
    EXPECT_STREQ(full.name(), "open_failed");
    EXPECT_STREQ(full.throwingOperation(), "CLanguageFile::CLanguageFile()");
    EXPECT_STREQ(full.context(), "Open of file 'x' failed.");

    EXPECT_STREQ(prep_exception("NULL == input_address").what(),
                 "prep_exception thrown by  [:0] with context\nNULL == input_address");
    EXPECT_STREQ(ContextException("f()", "", "file", -12, "e").what(), "e thrown by f() [file:-12]");

    const ContextException nameless(nullptr, nullptr, nullptr, 7, nullptr);
    EXPECT_STREQ(nameless.what(), "<exception not named> thrown by  [:7]");
    EXPECT_STREQ(nameless.name(), "<exception not named>");
    EXPECT_STREQ(nameless.throwingOperation(), "");
    EXPECT_STREQ(nameless.context(), "");
}

TEST(ContextException, UsesTheHeapOnlyBeyond256Bytes) {
    // Beside the file, two one-letter names, a line of one digit and the fixed pieces take 22 bytes.
    for (const std::size_t size : {256U, 257U}) {
        SCOPED_TRACE(size);
        const std::string file(size - 22, 'f');
        const std::size_t before = allocations::asked;
        const ContextException exception(nullptr, nullptr, file.c_str(), 0, "n");
        EXPECT_EQ(allocations::asked - before, size > 256 ? size : 0);
        EXPECT_EQ(exception.what(), "n thrown by  [" + file + ":0]");
    }
}

TEST(ContextException, CopiesReferToNothingInTheirSource) {
    for (const std::string& text : {std::string("short"), longContext()}) {
        auto source = std::make_unique<ContextException>("f()", text.c_str(), "file", 1, "name");
        const ContextException copy(*source);
        source.reset();
        EXPECT_EQ(copy.what(), "name thrown by f() [file:1] with context\n" + text);
        EXPECT_STREQ(copy.name(), "name");
        EXPECT_STREQ(copy.throwingOperation(), "f()");
        EXPECT_EQ(copy.context(), text);
    }
}

TEST(ContextException, CutsItsTextsWhenThereIsNoHeap) {
    const std::string context = longContext();
    const auto make = [&] { return ContextException("f()", context.c_str(), "file", 1, "name"); };
    const ContextException source = make();
    const ContextException cut = withoutHeap(make);
    // Of 256 bytes, name and thrower with their ends take 9. The report ends on the last byte, where the context lies.
    EXPECT_EQ(cut.what(), std::string(source.what()).substr(0, 255 - 9));
    EXPECT_STREQ(cut.context(), "");
    EXPECT_STREQ(ContextException(cut).what(), cut.what());

    const ContextException copy = withoutHeap([&] { return ContextException(source); });
    EXPECT_STREQ(copy.what(), "");
    EXPECT_STREQ(ContextException(copy).name(), "");
}

TEST(ContextException, TellsOfAFailedSystemCall) {
    const auto make = [] { return ContextException("f()", "Call()", NoSuchCode, "file", 1, "name"); };
    EXPECT_STREQ(make().what(), "name thrown by f() [file:1] with context\nCall to 'Call()' returned error 3777185127");
    EXPECT_STREQ(withoutHeap(make).what(), "name thrown by f() [file:1] with context\nCall()");
}

TEST(SystemErrorText, GivesTheSystemsWordsOrTheFallback) {
    EXPECT_STREQ(SystemErrorText(NoSuchCode, "fallback"), "fallback");
    EXPECT_EQ(SystemErrorText(NoSuchCode, nullptr), nullptr);

    const std::string words = SystemErrorText(FileNotFound, nullptr);
    EXPECT_GT(words.size(), 2U);
    EXPECT_EQ(words.substr(words.size() - 2), "\r\n");
    EXPECT_EQ(CallFailureText("Call()", FileNotFound), "Call to 'Call()' returned error 2: " + words);
}

TEST(CallFailureText, KeepsTheWordsOfEachThreadApart) {
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (const unsigned long code : {2UL, 5UL, 6UL, 87UL}) {
        threads.emplace_back([&wrong, code, expected = CallFailureText("f", code)] {
            for (int round = 0; round < 500; ++round) wrong += CallFailureText("f", code) != expected;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}
