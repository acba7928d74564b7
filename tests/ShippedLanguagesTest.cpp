// The language files as they are delivered, beside the UTF-8 sources that they are made from.

#include "wedge/CLanguageFile.h"
#include "wedge/Codepages.h"
#include "wedge/LanguageTag.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

namespace {

constexpr unsigned Utf8 = 65001;

std::string folder(const char* variable, const char* otherwise) {
    const char* const value = std::getenv(variable);
    return value ? value : otherwise;
}

/// All that a scan tells. Texts are kept under "context/key".
class Recorder : public CLanguageFileHandler {
public:
    explicit Recorder(unsigned codepageOfAll = 0) : m_codepageOfAll(codepageOfAll) {}

    void OnTag(const std::string& tag, const std::string&) override {
        std::string reason;
        const LanguageTagPtr record = ParseLanguageTag(tag, reason);
        EXPECT_TRUE(texts.empty()) << "a tag below texts does not count for these: " << tag;
        if (const CodepageDefinition* const definition = asCodepage(*record)) codepage = definition->codepage;
    }
    void OnContext(const std::string& name) override { m_context = name; }
    void OnString(const std::string& key, const std::string& value) override {
        const unsigned page = m_codepageOfAll != 0 ? m_codepageOfAll : static_cast<unsigned>(codepage);
        const std::string bytes = decode_value(value);
        const std::wstring text = convert_wstring(bytes, page);
        if (page != Utf8) {
            EXPECT_EQ(convert_string(text, page), bytes) << key;
        }
        EXPECT_TRUE(texts.emplace(m_context + "/" + key, text).second) << key << " is defined twice";
    }
    void OnContextEnd() override {}
    void OnFileEnd() override { hasEnded = true; }

    long codepage = 0;
    bool hasEnded = false;
    std::map<std::string, std::wstring> texts;

private:
    unsigned m_codepageOfAll;
    std::string m_context;
};

void scan(const std::string& path, Recorder& recorder) {
    CLanguageFile(path.c_str()).ScanFile(recorder);
    EXPECT_TRUE(recorder.hasEnded);
}

struct Language {
    int id;
    long codepage;
    /// A text that another code page would give otherwise, in code points.
    const char* key;
    std::wstring text;
};

class ShippedLanguage : public ::testing::TestWithParam<Language> {};

TEST_P(ShippedLanguage, HoldsAllTextsOfItsSourceOnceInTheCodePageOfItsLanguage) {
    const Language& language = GetParam();
    const std::string name = "/Equalizer" + std::to_string(language.id);
    Recorder shipped;
    Recorder source(Utf8);
    scan(folder("EQ_LANGUAGES_DIR", EQ_LANGUAGES_DIR) + name + ".lng", shipped);
    scan(folder("EQ_LANGUAGE_SOURCES_DIR", EQ_LANGUAGE_SOURCES_DIR) + name + ".txt", source);
    EXPECT_EQ(shipped.texts, source.texts);

    EXPECT_EQ(shipped.codepage, language.codepage);
    EXPECT_TRUE(CodepageFitsLanguage(shipped.codepage, static_cast<WORD>(language.id)));
    EXPECT_EQ(shipped.texts.size(), 24U);
    for (const auto& [key, text] : shipped.texts) EXPECT_FALSE(text.empty()) << key;
    EXPECT_EQ(shipped.texts[language.key], language.text);
}

INSTANTIATE_TEST_SUITE_P(
    All, ShippedLanguage,
    ::testing::Values(Language{1033, 1252, "Parametric Equalizer/IDD_Options_Freq", L"Frequency"},
                      Language{1031, 1252, "Parametric Equalizer/IDD_Options_Q", L"G\u00FCte (Q)"},
                      Language{1036, 1252, "Parametric Equalizer/IDD_Options_Freq", L"Fr\u00E9quence"},
                      Language{1034, 1252, "Shared/PRSHT_WIZBACK", L"< &Atr\u00E1s"},
                      Language{1040, 1252, "Parametric Equalizer/IDD_Options_Gain", L"Guadagno"},
                      Language{1046, 1252, "Shared/PRSHT_WIZNEXT", L"A&van\u00E7ar >"},
                      Language{1045, 1250, "Parametric Equalizer/IDD_Options_Freq", L"Cz\u0119stotliwo\u015B\u0107"},
                      Language{1049, 1251, "Parametric Equalizer/IDS_DB", L"\u0434\u0411"},
                      Language{1032, 1253, "Shared/MSGBOX_CANCEL", L"\u0386\u03BA\u03C5\u03C1\u03BF"},
                      Language{1055, 1254, "Shared/MSGBOX_CANCEL", L"\u0130ptal"},
                      Language{1041, 932, "Parametric Equalizer/IDD_Options_Freq", L"\u5468\u6CE2\u6570"},
                      Language{1042, 949, "Parametric Equalizer/IDD_Options_Freq", L"\uC8FC\uD30C\uC218"},
                      Language{2052, 936, "Parametric Equalizer/IDD_Options_Freq", L"\u9891\u7387"}),
    [](const auto& row) { return std::to_string(row.param.id); });

} // namespace
