#include "wedge/CLanguageFile.h"
#include "tests/support/AnsiCodepage.h"
#include "tests/support/FailureText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

namespace {

/// Writes the events down, one a line.
class Recorder : public CLanguageFileHandler {
public:
    void OnTag(const std::string& tag, const std::string& value) override { log += "tag|" + tag + "|" + value + "\n"; }
    void OnContext(const std::string& name) override { log += "context|" + name + "\n"; }
    void OnString(const std::string& key, const std::string& value) override {
        log += "string|" + key + "|" + value + "\n";
    }
    void OnContextEnd() override { log += "end\n"; }
    void OnFileEnd() override { log += "file end\n"; }

    std::string log;
};

/// What a scan of a file of this text tells its handler.
std::string eventsOf(const std::string& text) {
    std::istringstream stream(text);
    Recorder recorder;
    scanLanguageStream(stream, "A1031.lng", recorder);
    return recorder.log;
}

class LanguageFile : public ::testing::Test {
protected:
    TemporaryFolder folder;
};

} // namespace

TEST(LanguageFileScan, ClassifiesLines) {
    const std::pair<const char*, const char*> cases[] = {
        {"\n  \t \r\n// a = b\n   // [x]\n", "file end\n"},
        {"a=b=c\n=x\na=\na b = c d\n", "string|a|b=c\nstring||x\nstring|a|\nstring|a b|c d\nfile end\n"},
        {"/ a = b // c\n", "string|/ a|b // c\nfile end\n"},
        {"\x01\x1F {a}\t=\t\xA0"
         "b\x80 \r\n",
         "string|{a}|\xA0"
         "b\x80\nfile end\n"},
        {"[Alpha]\na=b\n[Beta]\n", "context|Alpha\nstring|a|b\nend\ncontext|Beta\nend\nfile end\n"},
        {"[[Alpha]]]\n[Alpha\n[ Alpha ] x\n[]\n[a] = b\n[a]b[c]\n",
         "context|Alpha\nend\ncontext|Alpha\nend\ncontext| Alpha ] x\nend\ncontext|\nend\ncontext|a] = b\nend\n"
         "context|a]b[c\nend\nfile end\n"},
        {" <CODEPAGE 1252> any words\n", "tag|<CODEPAGE 1252>|\nfile end\n"},
        {"<codepage 1252> = x\n", "tag|<codepage 1252>|x\nfile end\n"},
        {"<ACCEL A>  = <ACCEL B> = >\n", "tag|<ACCEL A>|<ACCEL B> = >\nfile end\n"},
        {"\xEF\xBB\xBF[Alpha]=\n", "string|\xEF\xBB\xBF[Alpha]|\nfile end\n"},
    };
    for (const auto& [text, events] : cases) EXPECT_EQ(eventsOf(text), events) << text;
}

TEST(LanguageFileScan, TellsEachFaultInItsWords) {
    struct Case {
        const char* text;
        const char* name;
        const char* fault; ///< behind the name
    };
    const Case cases[] = {
        {"\n\n<ACCEL A = b\n", "A1031.lng", "line 3: Invalid tag syntax - cannot find '>'.\n"},
        {"a=b\r\n// c\r\n<FOO>\r\n", "A1031.lng", "line 3: Invalid tag '<FOO>':Tag type 'FOO' is unknown.\n"},
        {"<   > = x", "A1031.lng", "line 1: Invalid tag '<   >'.\n"},
        {"<CODEPAGE 932>", "A7.lng", "line 1: Specified codepage does not appear to match language of file.\n"},
        {"<CODEPAGE 1252>", "Fr1036_lng.lng",
         "line 1: Specified codepage does not appear to match language of file.\n"},
        {"<CODEPAGE 1252> any = words", "A1031.lng", "line 1: Unexpected text encountered between tag and '='."},
        {"<ACCEL A> any words", "A1031.lng", "line 1: equal (=) expected for this tag type.\n"},
        {"[Alpha]\na=b\n/\nc=d", "A1031.lng", "line 3: equal (=) expected.\n"},
    };
    Recorder recorder;
    for (const Case& row : cases) {
        std::istringstream stream(row.text);
        recorder.log.clear();
        EXPECT_EQ(failureOf<CLanguageFile::syntax_error>([&] { scanLanguageStream(stream, row.name, recorder); }),
                  "syntax_error thrown by CLanguageFile::ScanFile() [wedge/CLanguageFile:N] with context\n"
                  "In file '" +
                      std::string(row.name) + "', " + row.fault);
    }
    EXPECT_EQ(recorder.log, "context|Alpha\nstring|a|b\n") << "what was told ahead of a fault stands";
}

TEST(LanguageFileScan, LetsTheHandlersExceptionsThrough) {
    class Refusing : public Recorder {
        void OnString(const std::string&, const std::string&) override { throw std::domain_error("refused"); }
    };
    std::istringstream stream("a=b\n");
    Refusing refusing;
    EXPECT_THROW(scanLanguageStream(stream, "A1031.lng", refusing), std::domain_error);
}

TEST(LanguageFileScan, TellsAFailedReadFromTheEndOfTheFile) {
    class FailingBehind : public std::streambuf {
    public:
        explicit FailingBehind(std::string text) : m_text(std::move(text)) {
            setg(m_text.data(), m_text.data(), m_text.data() + m_text.size());
        }

    private:
        int_type underflow() override { throw std::ios_base::failure("the disk is gone"); }
        std::string m_text;
    };
    FailingBehind failing("[Alpha]\na=b\nc=");
    std::istream stream(&failing);
    Recorder recorder;
    EXPECT_THROW(scanLanguageStream(stream, "A1031.lng", recorder), CLanguageFile::open_failed);
    EXPECT_EQ(recorder.log, "context|Alpha\nstring|a|b\n");
}

TEST_F(LanguageFile, RefusesWhatItCannotRead) {
    folder.write("Folder1031.lng/inside", "");
    for (const char* name : {"Missing1031.lng", "Folder1031.lng"}) {
        const std::string path = folder.path(name);
        EXPECT_EQ(failureOf<CLanguageFile::open_failed>([&] { CLanguageFile(path.c_str()); }),
                  "open_failed thrown by CLanguageFile::CLanguageFile() [wedge/CLanguageFile:N] with context\n"
                  "Open of file '" +
                      path + "' failed.");
    }
    const std::string path = folder.write("A1031.lng", "\xFF\xFE"
                                                       "a=b\n");
    CLanguageFile wide(path.c_str());
    Recorder recorder;
    EXPECT_EQ(failureOf<CLanguageFile::no_unicode_file_support>([&] { wide.ScanFile(recorder); }),
              "no_unicode_file_support thrown by CLanguageFile::ScanFile() [wedge/CLanguageFile:N] with context\n"
              "filename=" +
                  path);
    EXPECT_EQ(recorder.log, "");

    CLanguageFile halfAMark(folder.write("B1031.lng", "\xFF").c_str());
    EXPECT_THROW(halfAMark.ScanFile(recorder), CLanguageFile::syntax_error);
    CLanguageFile otherMark(folder.write("C1031.lng", "\xFF\xFF=\n").c_str());
    otherMark.ScanFile(recorder);
    EXPECT_EQ(recorder.log, "string|\xFF\xFF|\nfile end\n");
}

TEST_F(LanguageFile, ReadsItsLanguageFromTheDigitsAheadOfTheLastDot) {
    const std::pair<const char*, WORD> cases[] = {{"1031.lng", 1031},
                                                  {"a1b2.lng", 2},
                                                  {"Fr1036_lng.lng", 0},
                                                  {"1033.1036.lng", 1036},
                                                  {"A66567.lng", 66567 - 65536},
                                                  {"Shared.lng", 0}};
    for (const auto& [name, language] : cases)
        EXPECT_EQ(CLanguageFile(folder.write(name, "").c_str()).FileLanguage(), language) << name;
    EXPECT_EQ(languageOfDigits("4294968327"), 1031); // 2^32 + 1031
    EXPECT_EQ(languageOfDigits(""), 0);
}

TEST_F(LanguageFile, ReadsALineOfTenMegabytesAndItsEscapesInOneGo) {
    std::string escapes;
    while (escapes.size() < 10'000'000) escapes += "\\n\\x41\\\\t\\xZZ";
    CLanguageFile file(folder.write("A1031.lng", "key = " + escapes + "\nnext=line").c_str());
    for (int scan = 0; scan < 2; ++scan) { // a file can be scanned again
        Recorder recorder;
        file.ScanFile(recorder);
        ASSERT_TRUE(recorder.log == "string|key|" + escapes + "\nstring|next|line\nfile end\n");
    }

    const std::string decoded = decode_value(escapes);
    EXPECT_EQ(decoded.size(), escapes.size() / 13 * 8);
    EXPECT_EQ(decoded.substr(0, 16), "\nA\\\t\\xZZ\nA\\\t\\xZZ");
}

TEST(LanguageFileText, DecodesEscapes) {
    const std::pair<const char*, const char*> cases[] = {
        {"a\\n\\nb\\r\\t", "a\n\nb\r\t"},
        {"\\\\n", "\\\n"},
        {"\\x41\\x6A\\xfC\\xFc", "Aj\xFC\xFC"},
        {"\\x5Cx41", "\\x41"},
        {"\\", "\\"},
        {"\\xG1\\x1G\\xx41", "\\xG1\\x1G\\xx41"},
        {"\\X41\\N\\a", "\\X41\\N\\a"},
        {"\\x4\\n1", "\\x4\n1"},
        {"\\x\\x41", "\\xA"},
    };
    const AnsiCodepage western(1252);
    if (!western) GTEST_SKIP() << "the system has another ANSI code page";
    for (const auto& [written, decoded] : cases) EXPECT_EQ(decode_value(written), decoded) << written;
    EXPECT_EQ(decode_value("a\\x00b"), std::string("a\0b", 3));
}

TEST(LanguageFileText, SparesBackslashesInsideDoubleByteCharacters) {
    const AnsiCodepage japanese(932);
    if (!japanese) GTEST_SKIP() << "the system has another ANSI code page";
    // 0x83 0x5C is one character, whose second byte looks like a backslash.
    const std::pair<const char*, const char*> cases[] = {
        {"\x83\\n", "\x83\\n"},
        {"\x83\\x41", "\x83\\x41"},
        {"\x83\x83\\n", "\x83\x83\n"},
        {"\\n\x83\\t\\t", "\n\x83\\t\t"},
        // A decoded first byte takes the next backslash along; \n has been decoded before.
        {"\\x83\\x41", "\x83\\x41"},
        {"\\x83\\x5C\\x41", "\x83\\x5CA"},
    };
    for (const auto& [written, decoded] : cases) EXPECT_EQ(decode_value(written), decoded) << written;
    const int kinds[] = {0, 1, 2, 0, 1, 0};
    for (std::size_t i = 0; i < std::size(kinds); ++i) EXPECT_EQ(byte_kind("a\x83\x5C\x5C\x83", i), kinds[i]) << i;
}
