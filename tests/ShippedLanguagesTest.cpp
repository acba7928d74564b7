// The language files as they are delivered, beside the UTF-8 sources that they are made from.

#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStore.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

TEST(ShippedLanguages, HoldAllTextsOfTheirSources) {
    for (const int id : {1031, 1032, 1033, 1034, 1036, 1040, 1041, 1042, 1045, 1046, 1049, 1055, 2052}) {
        std::filesystem::path module = EQ_LANGUAGES_DIR "/Parametric Equalizer.dll";
        const CLanguageStore store(module.make_preferred().string(), static_cast<WORD>(id));
        EXPECT_EQ(store.language(), id);
        std::ifstream source(EQ_LANGUAGE_SOURCES_DIR "/Equalizer" + std::to_string(id) + ".txt");
        int texts = 0;
        for (std::string line; std::getline(source, line);) {
            const std::size_t equals = line.find(" = ");
            if (line.starts_with("//") || equals == std::string::npos) continue;
            const wchar_t* const text = store.Find(line.substr(0, equals).c_str());
            EXPECT_EQ(text ? text : L"(none)", convert_wstring(decode_value(line.substr(equals + 3)), 65001)) << line;
            ++texts;
        }
        EXPECT_GE(texts, 24) << id;
    }
}
