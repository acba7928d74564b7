// The language files as they are delivered, beside the UTF-8 sources that they are made from.

#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStore.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string inFolder(const char* variable, const char* otherwise, const std::string& name) {
    const char* const folder = std::getenv(variable);
    return (std::filesystem::path(folder ? folder : otherwise) / name).make_preferred().string();
}

} // namespace

TEST(ShippedLanguages, HoldAllTextsOfTheirSources) {
    for (const int id : {1031, 1032, 1033, 1034, 1036, 1040, 1041, 1042, 1045, 1046, 1049, 1055, 2052}) {
        const std::string module = inFolder("EQ_LANGUAGES_DIR", EQ_LANGUAGES_DIR, "Parametric Equalizer.dll");
        const CLanguageStore store(module, static_cast<WORD>(id));
        EXPECT_EQ(store.language(), id);
        const std::string name = "Equalizer" + std::to_string(id) + ".txt";
        std::ifstream source(inFolder("EQ_LANGUAGE_SOURCES_DIR", EQ_LANGUAGE_SOURCES_DIR, name));
        int texts = 0;
        for (std::string line; std::getline(source, line);) {
            const std::size_t equals = line.find(" = ");
            if (line.starts_with("//") || equals == std::string::npos) continue;
            const wchar_t* const text = store.Find(line.substr(0, equals).c_str());
            EXPECT_EQ(text ? text : L"(none)", convert_wstring(decode_value(line.substr(equals + 3)), 65001)) << line;
            ++texts;
        }
        EXPECT_GE(texts, 24) << name;
    }
}
