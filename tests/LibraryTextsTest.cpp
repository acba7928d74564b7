#include "plugin/AEffect.h"

#include "platform/win32.h"
#include "tests/support/LanguageSettings.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
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
    LibraryTexts() { fs::copy_file(libraryFile(), libraryCopy()); }

    fs::path libraryCopy() const { return folder.path() / libraryFile().filename(); }

    /// The copy, loaded with the language as the override.
    LoadedLibrary load(WORD language) const {
        const LanguageSettings settings(language, 1033);
        return LoadedLibrary(libraryCopy().string());
    }

    static std::string display(const LoadedLibrary& library, int32 index, float p) {
        AEffect* const effect = library.find<EffectMainProc>("main")(ScriptedHost::callback);
        if (effect == nullptr) return "(no effect)";
        char text[64];
        std::memset(text, '#', sizeof text);
        effect->setParameter(effect, index, p);
        effect->dispatcher(effect, effGetParamDisplay, index, 0, text, 0.0F);
        effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0F);
        return {text, strnlen(text, sizeof text)};
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

TEST_F(LibraryTexts, ShowsTheUnitWordsOfTheShippedLanguages) {
    const fs::path languages = libraryFile().parent_path();
    for (const fs::directory_entry& entry : fs::directory_iterator(languages)) {
        if (entry.path().extension() == ".lng") fs::copy(entry.path(), folder.path() / entry.path().filename());
    }
    struct Row {
        WORD language;
        const wchar_t* gain;
        const wchar_t* low;
        const wchar_t* high;
    };
    for (const Row& row : {
             Row{1031, L"+3.5 dB", L"20 Hz", L"20 kHz"},
             {1049, L"+3.5 \x0434\x0411", L"20 \x0413\x0446", L"20 \x043A\x0413\x0446"},
         }) {
        SCOPED_TRACE(row.language);
        const LoadedLibrary library = load(row.language);
        EXPECT_EQ(display(library, 7, 0.325F), inAnsiCodepage(row.gain));
        EXPECT_EQ(display(library, 1, 1.0F), inAnsiCodepage(row.low));
        EXPECT_EQ(display(library, 4, 0.0F), inAnsiCodepage(row.high));
    }
}

TEST_F(LibraryTexts, ShowsTheKeyWithoutATranslationAndCutsALongUnitWordBetweenCharacters) {
    folder.write("Texts1033.lng",
                 "<CODEPAGE 1252>\n[Parametric Equalizer]\nIDS_Hz = \xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9"
                 "\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\xE9\n");
    const LoadedLibrary library = load(0);
    EXPECT_EQ(display(library, 5, 0.325F), "+3.5 IDS_DB");
    // "20 " and as many whole characters as 24 bytes hold.
    const std::size_t width = inAnsiCodepage(L"\x00E9").size();
    EXPECT_EQ(display(library, 1, 1.0F), "20 " + inAnsiCodepage(std::wstring(24 / width, L'\x00E9')));
}

TEST_F(LibraryTexts, MakesNoEffectBesideABrokenLanguageFileUntilItIsMended) {
    folder.write("Texts1033.lng", "[Parametric Equalizer]\nthis line has no equals sign\n");
    const LoadedLibrary library = load(0);
    for (int i = 0; i < 50; ++i) EXPECT_EQ(display(library, 5, 0.0F), "(no effect)");
    folder.write("Texts1033.lng", "[Parametric Equalizer]\nIDS_DB = decibels\n");
    EXPECT_EQ(display(library, 5, 0.0F), "+10.0 decibels");
}
