#include "wedge/CLanguageFile.h"
#include "tests/support/AnsiCodepage.h"
#include "tests/support/FailureText.h"
#include "tests/support/LanguageFormat.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <utility>

namespace eq {

namespace {

/// Records the events, one per line.
class Recorder : public CLanguageFileHandler {
public:
    void OnTag(const std::string& tag, const std::string& value) override { log += "tag|" + tag + "|" + value + "\n"; }
    void OnContext(const std::string& name) override { log += "context|" + name + "\n"; }
    void OnString(const std::string& key, const std::string& value) override { log += key + "|" + value + "\n"; }
    void OnContextEnd() override { log += "end\n"; }
    void OnFileEnd() override { log += "file end\n"; }

    std::string log;
};

class LanguageFile : public ::testing::Test {
protected:
    TemporaryFolder folder;
    Recorder recorder;
};

} // namespace

TEST_F(LanguageFile, SendsTheEventsOfRandomFilesUpToTheFirstFault) {
    std::mt19937 random(4711);
    const std::string folders[] = {"1031/", "A1031.x/", ""};
    for (int i = 0; i < 5000; ++i) {
        // The names also have a dot only in the folder, or none.
        const std::string name = folders[random() % 3] + (random() % 8 == 0 ? "1031" : oracle::endingOfName(random));
        const std::string text = oracle::hostileFile(random);
        std::istringstream stream(text);
        recorder.log.clear();
        try {
            scanLanguageStream(stream, name, recorder);
        } catch (const CLanguageFile::syntax_error& fault) {
            recorder.log += fault.context();
        }
        ASSERT_EQ(recorder.log, oracle::eventsOf(name, text)) << text;
    }
}

TEST_F(LanguageFile, RefusesFilesThatItCannotRead) {
    folder.write("Folder1031.lng/inside", "");
    const std::string failed =
        "open_failed thrown by CLanguageFile::CLanguageFile() [wedge/CLanguageFile:N] with context\n";
    for (const std::string& path : {folder.path("Missing1031.lng"), folder.path("Folder1031.lng")})
        EXPECT_EQ(failureOf<CLanguageFile::open_failed>([&] { CLanguageFile(path.c_str()); }),
                  failed + "Open of file '" + path + "' failed.");
    std::istringstream broken("a=b\n");
    broken.setstate(std::ios::badbit);
    EXPECT_THROW(scanLanguageStream(broken, "A1031.lng", recorder), CLanguageFile::open_failed);

    const std::string path = folder.write("A1031.lng", "\xFF\xFE=\n");
    const auto scan = [&] { CLanguageFile(path.c_str()).ScanFile(recorder); };
    EXPECT_EQ(
        failureOf<CLanguageFile::no_unicode_file_support>(scan),
        "no_unicode_file_support thrown by CLanguageFile::ScanFile() [wedge/CLanguageFile:N] with context\nfilename=" +
            path);
    EXPECT_EQ(recorder.log, "");
    CLanguageFile(folder.write("C1031.lng", "\xFF\xFF=\n").c_str()).ScanFile(recorder);
    EXPECT_EQ(recorder.log, "\xFF\xFF|\nfile end\n") << "only FF FE is a mark";
}

TEST_F(LanguageFile, ReadsALineOfTenMegabytesWithEscapes) {
    std::string escapes, decoded;
    while (escapes.size() < 10'000'000) {
        escapes += "\\n\\x41\\\\t\\xZZ";
        decoded += "\nA\\\t\\xZZ";
    }
    CLanguageFile file(folder.write("1033.a1b2.lng", "key = " + escapes + "\nnext=line").c_str());
    EXPECT_EQ(file.FileLanguage(), 2) << "the digits before the last dot";
    file.ScanFile(recorder);
    recorder.log.clear();
    file.ScanFile(recorder); // a file can be scanned repeatedly
    EXPECT_TRUE(recorder.log == "key|" + escapes + "\nnext|line\nfile end\n");
    EXPECT_TRUE(decode_value(escapes) == decoded);
}

TEST(LanguageFileText, DecodesEscapes) {
    EXPECT_EQ(decode_value("a\\n\\nb\\r\\t \\\\n \\X41\\N\\a \\"), "a\n\nb\r\t \\\n \\X41\\N\\a \\");
    EXPECT_EQ(decode_value("\\x41\\x6A \\x5Cx41 \\xG1\\x1G\\xx41 \\xfC"), "Aj \\x41 \\xG1\\x1G\\xx41 \xFC");
    EXPECT_EQ(decode_value("\\x4\\n1 \\x\\x41 \\x4"), "\\x4\n1 \\xA \\x4");
    EXPECT_EQ(decode_value("a\\x00b"), std::string("a\0b", 3));
}

TEST(LanguageFileText, KeepsBackslashesInsideDoubleByteCharacters) {
    const AnsiCodepage japanese(932);
    if (!japanese) GTEST_SKIP() << "the system has another ANSI code page";
    // 0x83 0x5C is one character, whose second byte has the code of a backslash.
    EXPECT_EQ(decode_value("\x83\\n\x83\x83\\n\x83\\x41"), "\x83\\n\x83\x83\n\x83\\x41");
    // After a decoded lead byte, the next backslash is a trail byte. \n is decoded before \x83.
    EXPECT_EQ(decode_value("\\x83\\x41\\x83\\x5C\\x41\\x83\\n"), "\x83\\x41\x83\\x5CA\x83\n");
    std::string kinds;
    for (std::size_t i = 0; i < 6; ++i) kinds += std::to_string(byte_kind("a\x83\x5C\x5C\x83", i));
    EXPECT_EQ(kinds, "012010");
    for (std::size_t i = 0; i < 12; ++i)
        kinds += std::to_string(byte_kind("\x80\x81\x40\x9F\x40\xA0\xDF\xE0\x40\xFC\x40\xFD", i));
    EXPECT_EQ(kinds.substr(6), "012120012120") << "at the limits of the lead bytes";
}

} // namespace eq
