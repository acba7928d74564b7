#include "wedge/CLanguageFile.h"
#include "tests/support/AnsiCodepage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>

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

/// What a scan of a file of this name and text tells its handler.
std::string eventsOf(const std::string& text, const std::string& filename = "A1031.lng") {
    std::istringstream stream(text);
    Recorder recorder;
    scanLanguageStream(stream, filename, recorder);
    return recorder.log;
}

class LanguageFile : public ::testing::Test {
protected:
    TemporaryFolder folder;
};

} // namespace

TEST(LanguageFileScan, ClassifiesLines) {
    struct Case {
        const char* text;
        const char* events;
    };
    const Case cases[] = {
        {"", "file end\n"},
        {"\n  \t \r\n// a = b\n   // [x]\n", "file end\n"},
        {"a=b", "string|a|b\nfile end\n"},
        {"a=b=c\n=x\na=\na b = c d\n", "string|a|b=c\nstring||x\nstring|a|\nstring|a b|c d\nfile end\n"},
        {"/ a = b // c\n", "string|/ a|b // c\nfile end\n"},
        {"\"a\" = \"b\"\n", "string|\"a\"|\"b\"\nfile end\n"},
        {"\x01\x1F {a}\t=\t\xA0"
         "b\x80 \r\n",
         "string|{a}|\xA0"
         "b\x80\nfile end\n"},
        {"a = x\\n\\x20\n", "string|a|x\\n\\x20\nfile end\n"},
        {"[Alpha]\na=b\n[Beta]\n", "context|Alpha\nstring|a|b\nend\ncontext|Beta\nend\nfile end\n"},
        {"[Alpha]\n[Alpha]", "context|Alpha\nend\ncontext|Alpha\nend\nfile end\n"},
        {"[[Alpha]]]\n[Alpha\n[ Alpha ] x\n[]\n[a] = b\n[a]b[c]\n",
         "context|Alpha\nend\ncontext|Alpha\nend\ncontext| Alpha ] x\nend\ncontext|\nend\ncontext|a] = b\nend\n"
         "context|a]b[c\nend\nfile end\n"},
        {"<CODEPAGE 1252>\na=b\n", "tag|<CODEPAGE 1252>|\nstring|a|b\nfile end\n"},
        {" <CODEPAGE 1252> any words\n", "tag|<CODEPAGE 1252>|\nfile end\n"},
        {"<codepage 1252> = x\n", "tag|<codepage 1252>|x\nfile end\n"},
        {"<ACCEL A>  = <ACCEL B> = >\n", "tag|<ACCEL A>|<ACCEL B> = >\nfile end\n"},
        {"<ACCEL A>=\n", "tag|<ACCEL A>|\nfile end\n"},
        {"<ACCEL A> = what no tag is\n", "tag|<ACCEL A>|what no tag is\nfile end\n"},
        {"\xEF\xBB\xBF[Alpha]=\n", "string|\xEF\xBB\xBF[Alpha]|\nfile end\n"},
        {"\xFE\xFF=\n", "string|\xFE\xFF|\nfile end\n"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(eventsOf(row.text), row.events);
    }
}

TEST(LanguageFileScan, TellsEachFaultInItsWords) {
    struct Case {
        const char* text;
        const char* filename;
        const char* message;
    };
    const Case cases[] = {
        {"\n\n<ACCEL A = b\n", "A1031.lng", "In file 'A1031.lng', line 3: Invalid tag syntax - cannot find '>'.\n"},
        {"a=b\r\n// c\r\n<FOO>\r\n", "A1031.lng",
         "In file 'A1031.lng', line 3: Invalid tag '<FOO>':Tag type 'FOO' is unknown.\n"},
        {"<ACCEL VK_F1=>\n", "A1031.lng",
         "In file 'A1031.lng', line 1: Invalid tag '<ACCEL VK_F1=>':Unknown identifier 'VK_F1=' in accelerator "
         "definition.\n"},
        {"<>", "A1031.lng", "In file 'A1031.lng', line 1: Invalid tag '<>'.\n"},
        {"<   > = x", "A1031.lng", "In file 'A1031.lng', line 1: Invalid tag '<   >'.\n"},
        {"<CODEPAGE 932>", "A1031.lng",
         "In file 'A1031.lng', line 1: Specified codepage does not appear to match language of file.\n"},
        {"<CODEPAGE 932> = x", "A7.lng",
         "In file 'A7.lng', line 1: Specified codepage does not appear to match language of file.\n"},
        {"<CODEPAGE 1252>", "Fr1036_lng.lng",
         "In file 'Fr1036_lng.lng', line 1: Specified codepage does not appear to match language of file.\n"},
        {"<CODEPAGE 1252> any = words", "A1031.lng",
         "In file 'A1031.lng', line 1: Unexpected text encountered between tag and '='."},
        {"<CODEPAGE 1252 x=y>", "A1031.lng",
         "In file 'A1031.lng', line 1: Unexpected text encountered between tag and '='."},
        {"<ACCEL A> any words", "A1031.lng", "In file 'A1031.lng', line 1: equal (=) expected for this tag type.\n"},
        {"\nx // a", "A1031.lng", "In file 'A1031.lng', line 2: equal (=) expected.\n"},
        {"/", "A1031.lng", "In file 'A1031.lng', line 1: equal (=) expected.\n"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.text);
        try {
            eventsOf(row.text, row.filename);
            FAIL() << "no fault";
        } catch (const CLanguageFile::syntax_error& error) {
            EXPECT_STREQ(error.context(), row.message);
            EXPECT_STREQ(error.name(), "syntax_error");
            EXPECT_STREQ(error.throwingOperation(), "CLanguageFile::ScanFile()");
            EXPECT_EQ(std::string(error.what())
                          .find("syntax_error thrown by CLanguageFile::ScanFile() "
                                "[wedge/CLanguageFile:"),
                      0U);
        }
    }
}

TEST(LanguageFileScan, StopsAtTheFirstFaultAndLetsTheEventsStand) {
    std::istringstream stream("[Alpha]\na=b\nfault\nc=d\n");
    Recorder recorder;
    EXPECT_THROW(scanLanguageStream(stream, "A1031.lng", recorder), CLanguageFile::syntax_error);
    EXPECT_EQ(recorder.log, "context|Alpha\nstring|a|b\n");
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

TEST_F(LanguageFile, CanBeScannedAgain) {
    CLanguageFile file(folder.write("A1031.lng", "[Alpha]\r\na=b\r\n").c_str());
    for (int scan = 0; scan < 2; ++scan) {
        Recorder recorder;
        file.ScanFile(recorder);
        EXPECT_EQ(recorder.log, "context|Alpha\nstring|a|b\nend\nfile end\n");
    }
}

TEST_F(LanguageFile, RefusesWhatCannotBeOpened) {
    folder.write("Folder1031.lng/inside", "");
    for (const char* name : {"Missing1031.lng", "Folder1031.lng"}) {
        SCOPED_TRACE(name);
        const std::string path = folder.path(name);
        try {
            const CLanguageFile file(path.c_str());
            FAIL() << "opened";
        } catch (const CLanguageFile::base_exception& error) {
            EXPECT_TRUE(dynamic_cast<const CLanguageFile::open_failed*>(&error));
            EXPECT_EQ(error.context(), "Open of file '" + path + "' failed.");
            EXPECT_STREQ(error.name(), "open_failed");
            EXPECT_STREQ(error.throwingOperation(), "CLanguageFile::CLanguageFile()");
        }
    }
}

TEST_F(LanguageFile, RefusesAWideFileWhenTheScanStarts) {
    const std::string path = folder.write("A1031.lng", "\xFF\xFE"
                                                       "a=b\n");
    CLanguageFile file(path.c_str());
    Recorder recorder;
    try {
        file.ScanFile(recorder);
        FAIL() << "scanned";
    } catch (const CLanguageFile::no_unicode_file_support& error) {
        EXPECT_EQ(error.context(), "filename=" + path);
        EXPECT_STREQ(error.name(), "no_unicode_file_support");
        EXPECT_STREQ(error.throwingOperation(), "CLanguageFile::ScanFile()");
    }
    EXPECT_EQ(recorder.log, "");
}

TEST_F(LanguageFile, TakesHalfAWideMarkForText) {
    const std::string path = folder.write("A1031.lng", "\xFF");
    CLanguageFile file(path.c_str());
    Recorder recorder;
    try {
        file.ScanFile(recorder);
        FAIL() << "scanned";
    } catch (const CLanguageFile::syntax_error& error) {
        EXPECT_EQ(error.context(), "In file '" + path + "', line 1: equal (=) expected.\n");
    }
    CLanguageFile other(folder.write("B1031.lng", "\xFF\xFF=\n").c_str());
    other.ScanFile(recorder);
    EXPECT_EQ(recorder.log, "string|\xFF\xFF|\nfile end\n");
}

TEST_F(LanguageFile, ReadsItsLanguageFromTheDigitsAheadOfTheLastDot) {
    struct Case {
        const char* name;
        WORD language;
    };
    const Case cases[] = {
        {"Sample1031.lng", 1031}, {"1031.lng", 1031},
        {"a1b2.lng", 2},          {"Fr1036_lng.lng", 0},
        {"1033.1036.lng", 1036},  {"A66567.lng", 66567 - 65536},
        {"Shared.lng", 0},        {"7.", 7},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        // A trailing dot is no part of a name on every system, so the name is looked at without a folder's help.
        const std::string name = row.name;
        if (name.back() == '.') continue;
        EXPECT_EQ(CLanguageFile(folder.write(name, "").c_str()).FileLanguage(), row.language);
    }
    EXPECT_EQ(languageOfDigits("4294968327"), 1031); // 2^32 + 1031
    EXPECT_EQ(languageOfDigits(""), 0);
}

TEST_F(LanguageFile, ReadsALineOfTenMegabytesAndItsEscapesInOneGo) {
    std::string escapes;
    while (escapes.size() < 10'000'000) escapes += "\\n\\x41\\\\t\\xZZ";
    CLanguageFile file(folder.write("A1031.lng", "key = " + escapes + "\nnext=line").c_str());
    Recorder recorder;
    file.ScanFile(recorder);
    ASSERT_EQ(recorder.log, "string|key|" + escapes + "\nstring|next|line\nfile end\n");

    const std::string decoded = decode_value(escapes);
    EXPECT_EQ(decoded.size(), escapes.size() / 13 * 8);
    EXPECT_EQ(decoded.substr(0, 16), "\nA\\\t\\xZZ\nA\\\t\\xZZ");
}

TEST(LanguageFileText, TrimsBothEnds) {
    EXPECT_EQ(trim(std::string_view("\0 \t\r\x1F a b \x80 \n", 14)), "a b \x80");
    EXPECT_EQ(trim(" \t "), "");
    EXPECT_EQ(trim(""), "");
    EXPECT_EQ(trim_chars("[]a]b[[", "[]"), "a]b");
    EXPECT_EQ(trim_chars("[ a ]", "[]"), " a ");
    EXPECT_EQ(trim_chars("]][[", "[]"), "");
}

TEST(LanguageFileText, DecodesEscapes) {
    struct Case {
        const char* written;
        const char* decoded;
    };
    const Case cases[] = {
        {"", ""},
        {"a\\n\\nb\\r\\t", "a\n\nb\r\t"},
        {"\\\\n", "\\\n"},
        {"\\x41\\x6A\\xfC\\xFc", "Aj\xFC\xFC"},
        {"\\x5Cn", "\\n"},
        {"\\x5Cx41", "\\x41"},
        {"x\\x4", "x\\x4"},
        {"\\x", "\\x"},
        {"\\", "\\"},
        {"\\xG1\\x1G\\xx41", "\\xG1\\x1G\\xx41"},
        {"\\X41\\N\\a", "\\X41\\N\\a"},
        {"\\x4\\n1", "\\x4\n1"},
        {"\\x\\x41", "\\xA"},
    };
    const AnsiCodepage western(1252);
    if (!western) GTEST_SKIP() << "the system has another ANSI code page";
    for (const Case& row : cases) {
        SCOPED_TRACE(row.written);
        EXPECT_EQ(decode_value(row.written), row.decoded);
    }
    EXPECT_EQ(decode_value("a\\x00b"), std::string("a\0b", 3));
}

TEST(LanguageFileText, SparesBackslashesInsideDoubleByteCharacters) {
    const AnsiCodepage japanese(932);
    if (!japanese) GTEST_SKIP() << "the system has another ANSI code page";
    struct Case {
        const char* written;
        const char* decoded;
    };
    // 0x83 0x5C is one character, whose second byte looks like a backslash.
    const Case cases[] = {
        {"\x83\\n", "\x83\\n"},
        {"\x83\\\\n", "\x83\\\n"},
        {"\x83\\x41", "\x83\\x41"},
        {"\x83\x83\\n", "\x83\x83\n"},
        {"\\n\x83\\t\\t", "\n\x83\\t\t"},
        // A decoded first byte takes the next backslash along; \n has been decoded before.
        {"\\x83\\x41", "\x83\\x41"},
        {"\\x83\\n", "\x83\n"},
        {"\\x83\\x5C\\x41", "\x83\\x5CA"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.written);
        EXPECT_EQ(decode_value(row.written), row.decoded);
    }
    const std::string text = "a\x83\x5C\x5C\x83";
    const int kinds[] = {0, 1, 2, 0, 1, 0};
    for (std::size_t i = 0; i < std::size(kinds); ++i) EXPECT_EQ(byte_kind(text, i), kinds[i]) << i;
}
