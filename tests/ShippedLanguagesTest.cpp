// The language files as they are delivered, beside the UTF-8 sources that they are made from.

#include "wedge/CLanguageFile.h"
#include "wedge/CLanguageStore.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string inFolder(const char* variable, const char* otherwise, const std::string& name) {
    const char* const folder = std::getenv(variable);
    return (std::filesystem::path(folder ? folder : otherwise) / name).make_preferred().string();
}

/// Expects to find each text of a source in the store.
class Comparison : public CLanguageFileHandler {
public:
    explicit Comparison(const CLanguageStore& store) : m_store(store) {}

    void OnTag(const std::string&, const std::string&) override {}
    void OnContext(const std::string&) override {}
    void OnString(const std::string& key, const std::string& value) override {
        const wchar_t* const text = m_store.Find(key.c_str());
        EXPECT_EQ(text ? text : L"(none)", convert_wstring(decode_value(value), 65001)) << key;
    }
    void OnContextEnd() override {}
    void OnFileEnd() override {}

private:
    const CLanguageStore& m_store;
};

} // namespace

TEST(ShippedLanguages, HoldAllTextsOfTheirSources) {
    for (const int id : {1031, 1032, 1033, 1034, 1036, 1040, 1041, 1042, 1045, 1046, 1049, 1055, 2052}) {
        SCOPED_TRACE(id);
        const std::string module = inFolder("EQ_LANGUAGES_DIR", EQ_LANGUAGES_DIR, "Parametric Equalizer.dll");
        const CLanguageStore store(module, static_cast<WORD>(id));
        EXPECT_EQ(store.language(), id);
        const std::string source = "Equalizer" + std::to_string(id) + ".txt";
        Comparison comparison(store);
        CLanguageFile(inFolder("EQ_LANGUAGE_SOURCES_DIR", EQ_LANGUAGE_SOURCES_DIR, source).c_str())
            .ScanFile(comparison);
    }
}
