// Compares the delivered language files with their UTF-8 sources.

#include "tests/support/LanguageSettings.h"
#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStore.h"
#include "wedge/LanguageSelection.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace eq {

namespace {

constexpr WORD English = 1033;

/// The language ids of the delivered files, one row per source. The first id of a row is in the source's name.
// clang-format off
const std::vector<WORD> Sources[] = {
    {1031, 2055, 3079, 4103, 5127}, {1032}, {English}, {1034, 2058, 3082, 10}, {1036, 2060, 3084, 4108, 5132},
    {1040, 2064}, {1041}, {1042}, {1045}, {1046, 2070}, {1049, 2073}, {1055}, {2052, 4100}};
// clang-format on

/// One row per locale that Debian has for the thirteen languages: the locale, the language id of its region (the usual
/// id of the language if the region has no id), and the id of the file that is read first.
// clang-format off
const std::tuple<const char*, WORD, WORD> Regions[] = {
    {"de_AT", 3079, 3079}, {"de_BE", 1031, 1031}, {"de_CH", 2055, 2055}, {"de_DE", 1031, 1031}, {"de_IT", 1031, 1031},
    {"de_LI", 5127, 5127}, {"de_LU", 4103, 4103}, {"el_GR", 1032, 1032}, {"el_CY", 1032, 1032}, {"en_AG", 1033, 1033},
    {"en_AU", 3081, 1033}, {"en_BW", 1033, 1033}, {"en_CA", 4105, 1033}, {"en_DK", 1033, 1033}, {"en_GB", 2057, 1033},
    {"en_HK", 15369, 1033}, {"en_IE", 6153, 1033}, {"en_IL", 1033, 1033}, {"en_IN", 16393, 1033}, {"en_NG", 1033, 1033},
    {"en_NZ", 5129, 1033}, {"en_PH", 13321, 1033}, {"en_SC", 1033, 1033}, {"en_SG", 18441, 1033}, {"en_US", 1033, 1033},
    {"en_ZA", 7177, 1033}, {"en_ZM", 1033, 1033}, {"en_ZW", 12297, 1033}, {"es_AR", 11274, 10}, {"es_BO", 16394, 10},
    {"es_CL", 13322, 10}, {"es_CO", 9226, 10}, {"es_CR", 5130, 10}, {"es_CU", 23562, 10}, {"es_DO", 7178, 10},
    {"es_EC", 12298, 10}, {"es_ES", 3082, 3082}, {"es_GT", 4106, 10}, {"es_HN", 18442, 10}, {"es_MX", 2058, 2058},
    {"es_NI", 19466, 10}, {"es_PA", 6154, 10}, {"es_PE", 10250, 10}, {"es_PR", 20490, 10}, {"es_PY", 15370, 10},
    {"es_SV", 17418, 10}, {"es_US", 21514, 10}, {"es_UY", 14346, 10}, {"es_VE", 8202, 10}, {"fr_BE", 2060, 2060},
    {"fr_CA", 3084, 3084}, {"fr_CH", 4108, 4108}, {"fr_FR", 1036, 1036}, {"fr_LU", 5132, 5132}, {"it_CH", 2064, 2064},
    {"it_IT", 1040, 1040}, {"ja_JP", 1041, 1041}, {"ko_KR", 1042, 1042}, {"pl_PL", 1045, 1045}, {"pt_BR", 1046, 1046},
    {"pt_PT", 2070, 2070}, {"ru_RU", 1049, 1049}, {"ru_UA", 1049, 1049}, {"tr_CY", 1055, 1055}, {"tr_TR", 1055, 1055},
    {"zh_CN", 2052, 2052}, {"zh_HK", 3076, 1033}, {"zh_SG", 4100, 4100}, {"zh_TW", 1028, 1033}};
// clang-format on

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string languageFile(WORD id) {
    return EQ_LANGUAGES_DIR "/Equalizer" + std::to_string(id) + ".lng";
}

std::string libraryPath() {
    return std::filesystem::path(EQ_LANGUAGES_DIR "/Parametric Equalizer.dll").make_preferred().string();
}

bool isAscii(const std::string& text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Returns the keys and the values of a source that the library can look up, in UTF-8.
std::map<std::string, std::string> textsOfSource(WORD id) {
    std::ifstream source(EQ_LANGUAGE_SOURCES_DIR "/Equalizer" + std::to_string(id) + ".txt");
    std::map<std::string, std::string> texts;
    for (std::string line; std::getline(source, line) && line != "[LV2]";) {
        const std::size_t equals = line.find(" = ");
        if (!line.starts_with("//") && equals != std::string::npos)
            texts[line.substr(0, equals)] = decode_value(line.substr(equals + 3));
    }
    EXPECT_GE(texts.size(), 24U) << id;
    return texts;
}

} // namespace

TEST(ShippedLanguages, ContainAllTextsOfTheirSources) {
    const LanguageSettings settings(0, 0);
    auto english = textsOfSource(English);
    for (const std::vector<WORD>& ids : Sources) {
        const auto texts = textsOfSource(ids.front());
        for (const WORD id : ids) {
            const CLanguageStore store(libraryPath(), id);
            EXPECT_EQ(store.language(), id);
            for (const auto& [key, text] : texts) {
                const std::string& expected = id == 10 && !isAscii(text) ? english[key] : text;
                const wchar_t* const found = store.Find(key.c_str());
                EXPECT_EQ(found ? found : L"(none)", convert_wstring(expected, 65001)) << id << " " << key;
            }
        }
    }
}

TEST(ShippedLanguages, AreInTheAnsiCodePageAndEqualForAllIdsOfASource) {
    std::size_t files = 0;
    for (const std::vector<WORD>& ids : Sources) {
        const std::string contents = contentsOf(languageFile(ids.front()));
        for (const WORD id : ids) {
            ++files;
            const std::string file = contentsOf(languageFile(id));
            if (id == 10) {
                EXPECT_TRUE(isAscii(file) && file.find("<CODEPAGE") == std::string::npos);
                continue;
            }
            EXPECT_EQ(file, contents) << id;
            EXPECT_NE(file.find("<CODEPAGE " + std::to_string(DefaultCodepage(id)) + ">"), std::string::npos) << id;
        }
    }
    std::size_t shipped = 0;
    for (const auto& entry : std::filesystem::directory_iterator(EQ_LANGUAGES_DIR))
        shipped += entry.path().extension() == ".lng";
    EXPECT_EQ(shipped, files) << "in " EQ_LANGUAGES_DIR;
}

TEST(ShippedLanguages, AreFoundForEachRegion) {
    LanguageSettings settings(0, 0);
    for (const auto& [locale, system, file] : Regions) {
        SCOPED_TRACE(locale);
#ifdef _WIN32
        // Windows reports the same id for all regions that have no id. The library shows English there.
        std::wstring name(locale, locale + 5);
        name[2] = L'-';
        const LCID own = LocaleNameToLCID(name.c_str(), 0);
        const bool has_none = own == LOCALE_CUSTOM_UNSPECIFIED;
        EXPECT_TRUE(has_none || own == system) << own;
        settings.setSystemLanguage(static_cast<WORD>(own));
        EXPECT_EQ(CLanguageStore(libraryPath(), 0).language(), has_none ? English : file);
#else
        for (const char* const rest : {"", ".UTF-8", "@euro"}) {
            settings.setSystemLocale(locale + std::string(rest));
            EXPECT_EQ(ReadUiLanguage(uilanguage_default), system) << rest;
            EXPECT_EQ(CLanguageStore(libraryPath(), 0).language(), file) << rest;
        }
#endif
    }
}

} // namespace eq
