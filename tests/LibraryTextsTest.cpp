#include "plugin/AEffect.h"

#include "platform/win32.h"
#include "tests/support/LanguageSettings.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

// The built library beside language files, in a folder of its own. Each copy of the library reads the settings and
// the files anew.

namespace {

namespace fs = std::filesystem;

fs::path libraryFile() {
    const char* const path = std::getenv("EQ_LIBRARY_PATH");
    return path != nullptr ? path : EQ_LIBRARY_PATH;
}

class LibraryTexts : public testing::Test {
protected:
    /// A copy in the folder, loaded with the language as the override.
    LoadedLibrary load(WORD language) const {
        const LanguageSettings settings(language, 1033);
        fs::copy(libraryFile(), folder.path());
        return LoadedLibrary(folder.path(libraryFile().filename().string()));
    }

    static std::string display(const LoadedLibrary& library, int32 index, float p) {
        AEffect* const effect = library.find<EffectMainProc>("main")(ScriptedHost::callback);
        if (effect == nullptr) return "(no effect)";
        char text[64] = "";
        effect->setParameter(effect, index, p);
        effect->dispatcher(effect, effGetParamDisplay, index, 0, text, 0.0F);
        effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
        return text;
    }

    ScriptedHost host{2400};
    TemporaryFolder folder;
};

std::string inAnsiCodepage(const std::wstring& text) {
    char bytes[128] = {};
    WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
    return bytes;
}

} // namespace

TEST_F(LibraryTexts, ShowsTheUnitWordsOfAShippedLanguage) {
    fs::copy(libraryFile().replace_filename("Equalizer1049.lng"), folder.path());
    const LoadedLibrary library = load(1049);
    EXPECT_EQ(display(library, 7, 0.325F), inAnsiCodepage(L"+3.5 \x0434\x0411"));
    EXPECT_EQ(display(library, 4, 0.0F), inAnsiCodepage(L"20 \x043A\x0413\x0446"));
}

TEST_F(LibraryTexts, ShowsTheKeyWithoutATranslationAndCutsALongUnitWordBetweenCharacters) {
    folder.write("Texts1033.lng",
                 "<CODEPAGE 1252>\n[Parametric Equalizer]\nIDS_Hz = " + std::string(26, '\xE9') + "\n");
    const LoadedLibrary library = load(0);
    EXPECT_EQ(display(library, 5, 0.325F), "+3.5 IDS_DB");
    // "957 " and as many whole characters as 23 bytes hold.
    const std::size_t width = inAnsiCodepage(L"\x00E9").size();
    EXPECT_EQ(display(library, 2, 0.44F), "957 " + inAnsiCodepage(std::wstring(23 / width, L'\x00E9')));
}

TEST_F(LibraryTexts, MakesNoEffectBesideABrokenLanguageFileUntilItIsMended) {
    folder.write("Texts1033.lng", "[Parametric Equalizer]\nthis line has no equals sign\n");
    const LoadedLibrary library = load(0);
    EXPECT_EQ(display(library, 5, 0.0F), "(no effect)");
    folder.write("Texts1033.lng", "[Parametric Equalizer]\nIDS_DB = decibels\n");
    EXPECT_EQ(display(library, 5, 0.0F), "+10.0 decibels");
}
