#include "wedge/CLanguageStore.h"

#include "parameters/DisplayText.h"
#include "support/LanguageText.h"
#include "tests/support/AnsiCodepage.h"
#include "tests/support/FailureText.h"
#include "tests/support/LanguageSettings.h"
#include "tests/support/LoadedLibrary.h"
#include "tests/support/MessageBoxWatch.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Threads.h"
#include "wedge/LanguageSelection.h"
#include "wedge/OwnModule.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace eq {

struct CLanguageStoreTestAccess {
    static void drop() noexcept { CLanguageStore::dropInstance(); }
};

namespace {

/// Sets no override and no system language, so that only English files and files without a language id are read.
class LanguageStore : public ::testing::Test {
protected:
    /// Returns the store of a module "Module", whose only language file contains `text`.
    CLanguageStore storeOf(const std::string& text) const {
        folder.write("A1033.lng", text);
        return CLanguageStore(folder.path("Module.dll"), 0);
    }

    LanguageSettings settings{0, 0};
    TemporaryFolder folder;
};

/// Sets the module of the process's store to "Sample Module", which is in its own folder.
class StoreInstance : public LanguageStore {
protected:
    StoreInstance() {
        HMODULE module = nullptr;
        GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           library.find<const char*>("openOneOfEach"), &module);
        setOwnModule(module);
        CLanguageStoreTestAccess::drop();
    }
    ~StoreInstance() override {
        setOwnModule(nullptr);
        g_language_override = 0;
        CLanguageStoreTestAccess::drop();
    }

    std::string copiedModule() const {
        std::filesystem::copy_file(EQ_WEDGE_LIBRARY, folder.path("Sample Module.dll"));
        return folder.path("Sample Module.dll");
    }

    const LoadedLibrary library{copiedModule()};
};

UINT typeOfLastBox = MB_ICONERROR; // on Windows a test cannot read the type

std::wstring found(const CLanguageStore& store, const char* key) {
    const wchar_t* text = store.Find(key);
    return text ? text : L"(none)";
}

} // namespace

#ifndef _WIN32
int realMessageBox(HWND, LPCWSTR, LPCWSTR, UINT,
                   WORD) asm("__real__ZN2eq7standin6system13MessageBoxExWEP13StandinWindowPKwS5_jt");
int messageBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type,
               WORD language) asm("__wrap__ZN2eq7standin6system13MessageBoxExWEP13StandinWindowPKwS5_jt");
int messageBox(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type, WORD language) {
    typeOfLastBox = type;
    return realMessageBox(owner, text, caption, type, language);
}
#endif

TEST_F(LanguageStore, FindsAKeyInAnyCaseWithOrWithoutBraces) {
    const CLanguageStore store = storeOf("[Module]\nIDS_DB = dB\n = nothing\n");
    for (const char* key : {"IDS_DB", " IDS_DB ", "{IDS_DB", "IDS_DB}", "\t{Ids_dB}\n"})
        EXPECT_EQ(found(store, key), L"dB") << key;
    for (const char* key : {"{ IDS_DB }", "{{IDS_DB}}", "IDS_D", "IDS_DB2"}) EXPECT_EQ(store.Find(key), nullptr) << key;
    for (const char* key : {"", "  ", "{}", "{"}) EXPECT_EQ(found(store, key), L"nothing") << key;
    EXPECT_EQ(store.Find(nullptr), nullptr);
}

TEST_F(LanguageStore, ReadsAndDecodesTheTextsOfItsContexts) {
    // clang-format off
    const std::pair<const char*, std::vector<std::pair<const char*, const wchar_t*>>> cases[] = {
        {"[Module]\n\xC4 = upper\n\xE4 = lower\n@ = at\n` = grave\n", {{"\xE4", L"lower"}, {"`", L"grave"}}},
        {"[Other]\na = other\nd = other\n[SHARED]\na = shared\nb = shared\n[ module ]\na = module\n"
         "[Shared]\nb = late\nc = shared too\n",
         {{"a", L"module"}, {"b", L"shared"}, {"c", L"shared too"}, {"d", L"(none)"}}},
        {"[Shared]\na = first\nA = second\n[Other]\n[Shared]\na = third\n", {{"a", L"first"}}},
        {"[Module]\na =\n[Shared]\na = shared\n", {{"a", L""}}},
        // Before the first context, only a code page tag has an effect.
        {"<CODEPAGE 437>\na = lost\n<ACCEL A> = <ACCEL B>\n[Module]\nb = \\x81\n<CODEPAGE 1252>\nc = \xE4\\xFC\n",
         {{"a", L"(none)"}, {"ACCEL_0x41", L"(none)"}, {"b", L"\u00FC"}, {"c", L"\u00E4\u00FC"}}},
        {"[Module]\na = \\x20x\\ny\\t\nb = x\\x00y\nc =\n", {{"a", L" x\ny\t"}, {"b", L"x"}, {"c", L""}}},
        {"[Module]\n<accel control virtkey vk_f5> = <ACCEL A>\n", {{"ACCEL_VIRTKEY_CONTROL_0x74", L"<ACCEL A>"}}}};
    // clang-format on
    for (const auto& [file, texts] : cases) {
        SCOPED_TRACE(file);
        const CLanguageStore store = storeOf(file);
        for (const auto& [key, text] : texts) EXPECT_EQ(found(store, key), text) << key;
    }
}

TEST_F(LanguageStore, IsNotBuiltIfAValueCannotBeConverted) {
    // Code page 942 fits Japanese, but the systems do not have it.
    for (const char* text : {"[Module]\n<CODEPAGE 942>\na = b\n", "[Module]\na = b\n<CODEPAGE 942>\nA = repeated\n"}) {
        folder.write("A1041.lng", text);
        EXPECT_THROW(CLanguageStore(folder.path("Module.dll"), 1041), convert_wstring_failed) << text;
    }
    folder.write("A1041.lng", "<CODEPAGE 942>\na = outside\n[Module]\nb =\n");
    EXPECT_EQ(found(CLanguageStore(folder.path("Module.dll"), 1041), "b"), L"");
}

TEST_F(LanguageStore, ReadsTheOverrideWhenTheLibraryIsLoaded) {
    std::filesystem::copy_file(EQ_WEDGE_LIBRARY, folder.path("Module.dll"));
    for (const char* const name : {"A1031.lng", "A1033.lng", "A1036.lng"}) folder.write(name, "");
    const LanguageSettings settingsAtLoad(1031, 1036);
    const LoadedLibrary library(folder.path("Module.dll"));
    const LanguageSettings settingsAtUse(1033, 1036);
    EXPECT_EQ(library.find<WORD (*)()>("languageOfTheStore")(), 1031);
}

TEST_F(LanguageStore, ExpandsReferences) {
    const CLanguageStore store = storeOf("[Module]\nA = alpha\nB = b\nBRACES = {A}{\nA{B = nested\nEMPTY =\n");
    // A key has at least one character, so that the key in the text "{}{B}" is "}{B".
    // clang-format off
    const std::pair<std::string, std::string> cases[] = {
        {"", ""}, {"x{a}y{B}z", "xalphaybz"}, {"{ A }", "alpha"}, {"{BRACES}{B}", "{A}{b"}, {"{A{B}", "nested"},
        {"{C}{B}", "{C}b"}, {"{EMPTY}", "{EMPTY}"}, {"{}{B}", "{}{B}"}, {"{B} {A", "b {A"},
        {std::string("{B}\0{B}", 7), "b"}};
    // clang-format on
    for (const auto& [text, expanded] : cases) {
        bool changed = expanded == text;
        EXPECT_EQ(store.ExpandKeys(text, &changed), expanded);
        EXPECT_EQ(changed, expanded != text) << text;
    }
}

TEST_F(LanguageStore, ExpandsWideTextsAndAnsiTextsWithAnyCodePageOfTheFile) {
    const CLanguageStore store = storeOf("<CODEPAGE 437>\n[Module]\n\xC3\xA4 = \\x81\\xE1\n\xE4 = \\x81\\xE1\n");
    for (const UINT codepage : {65001U, 1252U}) {
        const AnsiCodepage ansi(codepage);
        if (!ansi) continue;
        EXPECT_EQ(store.ExpandKeys(convert_string(L"{\u00E4}", codepage), nullptr),
                  convert_string(L"\u00FC\u00DF", codepage));
        EXPECT_EQ(store.ExpandKeys(std::wstring(L"{\u00E4}"), nullptr), L"\u00FC\u00DF");
    }
}

TEST_F(StoreInstance, ReturnsTextsForTheLibrarysModuleInTheLanguageOfTheOverride) {
    folder.write("A1031.lng", "<CODEPAGE 1252>\n[Sample Module]\nunit = \xB5s\nempty =\n");
    folder.write("A1033.lng", "[Sample Module]\nunit = English\n");
    g_language_override = 1031;
    EXPECT_EQ(std::tuple(GetLanguageId(), GetLanguageCodepage()), std::tuple(1031, 1252U));
    EXPECT_EQ(GetLanguageString("{unit}"), "\xB5s");
    EXPECT_EQ(GetLanguageString("missing"), "");
    EXPECT_EQ(ExpandLanguageKeys(std::wstring(L"[{unit}]"), nullptr), L"[\u00B5s]");
    EXPECT_EQ(ExpandLanguageKeys(std::string("[{empty}]"), nullptr), "[{empty}]");

    EXPECT_STREQ(LanguageText("empty", nullptr).narrow(), "");
    EXPECT_STREQ(LanguageText("{missing} ", nullptr).narrow(), "{missing} ") << "the key replaces a missing text";
    EXPECT_EQ(LanguageText(static_cast<const char*>(nullptr), nullptr).narrow(), nullptr);
}

TEST_F(StoreInstance, ShowsTheKeyOfAMissingUnitAndWholeCharactersOfALongUnit) {
    folder.write("A1033.lng", "<CODEPAGE 1252>\n[Sample Module]\nIDS_Hz = " + std::string(26, '\xE9') + "\n");
    char text[DisplayCapacity];
    writeDisplay(Parameters[5], 0.325F, text);
    EXPECT_STREQ(text, "+3.5 IDS_DB");
    // The display is "957 " and as many whole characters as fit in 23 bytes.
    for (const auto& [codepage, count] : {std::pair{1252U, 23U}, {65001U, 11U}}) {
        const AnsiCodepage ansi(codepage);
        if (!ansi) continue;
        writeDisplay(Parameters[2], 0.44F, text);
        EXPECT_EQ(text, convert_string(L"957 " + std::wstring(count, L'\u00E9'), codepage));
    }
}

TEST_F(StoreInstance, CutsLoadedStringsBetweenCharactersOfItsCodePage) {
    folder.write("A1041.lng", "<CODEPAGE 932>\n");
    g_language_override = 1041;
    for (int room = 1; room <= 6; ++room) {
        char text[6];
        const int size = LoadStringA(GetModuleHandleA(nullptr), 64, text, room);
        EXPECT_EQ(size, room < 3 ? 0 : room < 5 ? 2 : 4);
        EXPECT_EQ(text, std::string("\x8A\xBF\x8E\x9A").substr(0, static_cast<std::size_t>(size)));
    }
}

TEST_F(StoreInstance, ReportsOnceThatThereAreNoFilesAndCanBeUsedDuringTheReport) {
    std::wstring textMeanwhile = L"(none)";
    const MessageBoxWatch watch([&] { textMeanwhile = found(CLanguageStore::Instance(), "a"); });
    EXPECT_EQ(GetLanguageId(), 0);
    EXPECT_EQ(ExpandLanguageKeys(std::string("{a}"), nullptr), "{a}");
    EXPECT_EQ(watch.count(), 1);
    EXPECT_EQ(typeOfLastBox, UINT{MB_ICONERROR});
    EXPECT_EQ(watch.last(), L"Error\nLNG0001:  No language files were found.");
    EXPECT_EQ(textMeanwhile, L"(none)");

    CLanguageStoreTestAccess::drop();
    MessageBoxExA(nullptr, "box", "A", MB_OK, 0);
    EXPECT_EQ(watch.count(), 3) << "the store's message, and the caller's";
    CLanguageStoreTestAccess::drop();
    MessageBoxExW(nullptr, L"box", L"W", MB_OK, 0);
    EXPECT_EQ(watch.count(), 5);
    EXPECT_EQ(watch.last(), L"W\nbox");
}

TEST_F(StoreInstance, IsBuiltAgainAfterABrokenFileAndOnlyOnceForAllThreads) {
    const std::string path = folder.write("A1033.lng", "[Sample Module]\na = b\nfault\n");
    EXPECT_EQ(failureOf<CLanguageFile::syntax_error>(GetLanguageId),
              "syntax_error thrown by CLanguageFile::ScanFile() [wedge/CLanguageFile:N] with context\nIn file '" +
                  path + "', line 3: equal (=) expected.\n");

    std::string text = "[Sample Module]\n";
    for (int i = 0; i < 2000; ++i) text += "key" + std::to_string(i) + " = text\n";
    folder.write("A1033.lng", text + "last = text\n");
    onThreads(8, [](int) { EXPECT_EQ(GetLanguageString("last"), "text"); });
    EXPECT_EQ(GetLanguageString("a"), "") << "a text of the broken file is left";

    folder.write("A1033.lng", "[Sample Module]\na = b\n");
    EXPECT_EQ(CLanguageStore::Instance(GetModuleHandleA(nullptr)).Find("a"), nullptr);
}

} // namespace eq
