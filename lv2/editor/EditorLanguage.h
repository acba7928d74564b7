#pragma once

#include <memory>
#include <string>

namespace eq {
class CLanguageStore;
} // namespace eq

namespace eq::lv2 {

/// The texts of the language files in the folder of the bundle. If a file is broken, or if there is no file, there are
/// no texts.
class EditorLanguage {
public:
    explicit EditorLanguage(const std::string& bundleFolder);
    ~EditorLanguage();

    /// Returns the translation of a key in UTF-8, or an empty text.
    [[nodiscard]] std::string text(const char* key) const;

private:
    std::unique_ptr<CLanguageStore> store;
};

} // namespace eq::lv2
