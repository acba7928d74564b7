#include "wedge/CLanguageStore.h"

#include "support/LanguageText.h"
#include "tests/support/AnsiCodepage.h"
#include "tests/support/FreshStore.h"
#include "tests/support/LanguageSettings.h"
#include "tests/support/MessageBoxWatch.h"
#include "tests/support/ModuleCopy.h"
#include "tests/support/TemporaryFolder.h"
#include "wedge/LanguageSelection.h"
#include "wedge/OwnModule.h"
#include "wedge/string_ext.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// No override, and no language of the system's: English files and those without a language are read.
class LanguageStore : public ::testing::Test {
protected:
    LanguageStore() {
        settings.setOverride(std::nullopt);
        settings.setSystemLanguage(0);
    }

    /// The store of a module "Module", beside which one language file lies.
    CLanguageStore storeOf(std::string_view text) const {
        folder.write("A1033.lng", text);
        return CLanguageStore(folder.path("Module.dll"), 0);
    }

    LanguageSettings settings;
    TemporaryFolder folder;
};

std::wstring found(const CLanguageStore& store, const char* key) {
    const wchar_t* text = store.Find(key);
    return text ? text : L"(none)";
}

} // namespace

TEST_F(LanguageStore, FindsAKeyInAnyCaseWithOrWithoutBraces) {
    const CLanguageStore store = storeOf("[Module]\nIDS_DB = dB\n = nothing\n");
    for (const char* key : {"IDS_DB", "{IDS_DB}", " IDS_DB ", "{IDS_DB", "IDS_DB}", "ids_db", "\t{Ids_dB}\n"}) {
        EXPECT_EQ(found(store, key), L"dB") << key;
    }
    for (const char* key : {"{ IDS_DB }", "{{IDS_DB}}", "IDS_D", "IDS_DB2", "IDS DB"}) {
        EXPECT_EQ(store.Find(key), nullptr) << key;
    }
    for (const char* key : {"", "  ", "{}", "{", "}"}) EXPECT_EQ(found(store, key), L"nothing") << key;
    EXPECT_EQ(store.Find(nullptr), nullptr);
}

TEST_F(LanguageStore, ReadsAndDecodesTheTextsOfItsContexts) {
    struct Case {
        const char* text;
        std::vector<std::pair<const char*, const wchar_t*>> found;
    };
    const Case cases[] = {
        {"[Module]\n\xC4 = upper\n\xE4 = lower\n@ = at\n` = grave\n",
         {{"\xC4", L"upper"}, {"\xE4", L"lower"}, {"@", L"at"}, {"`", L"grave"}}},
        {"[Other]\na = other\nd = other\n[SHARED]\na = shared\nb = shared\n[ module ]\na = module\n"
         "[Shared]\nb = late\nc = shared too\n",
         {{"a", L"module"}, {"b", L"shared"}, {"c", L"shared too"}, {"d", L"(none)"}}},
        {"[Shared]\na = shared\n", {{"a", L"shared"}}},
        {"[Module]\na = first\nA = second\n[Shared]\n[Module]\na = third\n", {{"a", L"first"}}},
        // Ahead of any context, a code page counts alone.
        {"<CODEPAGE 437>\na = lost\n<ACCEL A> = <ACCEL B>\n[Module]\nb = \\x81\n",
         {{"a", L"(none)"}, {"ACCEL_0x41", L"(none)"}, {"b", L"\u00FC"}}},
        {"<CODEPAGE 437>\n[Module]\na = \xE4\n<CODEPAGE 1252>\nb = \xE4\\xFC\n",
         {{"a", L"\u03A3"}, {"b", L"\u00E4\u00FC"}}},
        {"[Module]\na = \\x20x\\ny\\t\nb = x\\x00y\nc =\n", {{"a", L" x\ny\t"}, {"b", L"x"}, {"c", L""}}},
        {"[Module]\n<accel control virtkey vk_f5> = <ACCEL VIRTKEY ALT VK_F6>\n<ACCEL A> = no tag\n",
         {{"ACCEL_VIRTKEY_CONTROL_0x74", L"<ACCEL VIRTKEY ALT VK_F6>"}, {"ACCEL_0x41", L"no tag"}}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.text);
        const CLanguageStore store = storeOf(row.text);
        for (const auto& [key, text] : row.found) EXPECT_EQ(found(store, key), text) << key;
    }
}

TEST_F(LanguageStore, RefusesACodePageThatTheSystemLacks) {
    folder.write("A2052.lng", "<CODEPAGE 1381>\n[Module]\na = b\n");
    EXPECT_THROW(CLanguageStore(folder.path("Module.dll"), 2052), convert_wstring_failed);
}

TEST_F(LanguageStore, KeepsATextWithBytesThatItsCodePageLeavesOpen) {
    folder.write("A1032.lng", "<CODEPAGE 1253>\n[Module]\na = x\xD2y\nb = \xE1\n");
    const CLanguageStore store(folder.path("Module.dll"), 1032);
    const std::wstring text = found(store, "a");
    ASSERT_EQ(text.size(), 3U);
    EXPECT_EQ(text.front(), L'x');
    EXPECT_EQ(text.back(), L'y');
    EXPECT_EQ(found(store, "b"), L"\u03B1");
}

TEST_F(LanguageStore, ExpandsReferences) {
    const CLanguageStore store = storeOf("[Module]\nA = alpha\nB = b\nBRACES = {A}{\nA{B = nested\nEMPTY =\n");
    struct Case {
        std::string text;
        std::string expanded;
    };
    const Case cases[] = {
        {"", ""},
        {"{A}", "alpha"},
        {"x{a}y{B}z", "xalphaybz"},
        {"{ A }", "alpha"},
        {"{BRACES}{B}", "{A}{b"},
        {"{A{B}", "nested"},
        {"{C}{B}", "{C}b"},
        {"{EMPTY}{B}", "{EMPTY}b"},
        {"{}{B}", "{}{B}"}, // the key is "}{B", since a key has a character at least
        {"{B} {A", "b {A"},
        {std::string("{B}\0{B}", 7), "b"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.text);
        const std::string source = row.text.c_str();
        bool changed = row.expanded == source;
        EXPECT_EQ(store.ExpandKeys(row.text, &changed), row.expanded);
        EXPECT_EQ(changed, row.expanded != source);

        const std::wstring wide(row.text.begin(), row.text.end());
        changed = row.expanded == source;
        EXPECT_EQ(store.ExpandKeys(wide, &changed), std::wstring(row.expanded.begin(), row.expanded.end()));
        EXPECT_EQ(changed, row.expanded != source);
        EXPECT_EQ(store.ExpandKeys(wide, nullptr).size(), row.expanded.size());
    }
}

TEST_F(LanguageStore, ExpandsInTheAnsiCodePageWhateverTheFileSays) {
    const CLanguageStore store = storeOf("<CODEPAGE 437>\n[Module]\n\xC3\xA4 = \\x81\\x84\\x94\\xE1\n");
    const AnsiCodepage utf8(65001);
    if (utf8) {
        EXPECT_EQ(store.ExpandKeys(std::string("{\xC3\xA4}"), nullptr), "\xC3\xBC\xC3\xA4\xC3\xB6\xC3\x9F");
        EXPECT_EQ(store.ExpandKeys(std::wstring(L"{\u00E4}"), nullptr), L"\u00FC\u00E4\u00F6\u00DF");
    }
    const AnsiCodepage western(1252);
    if (western) {
        EXPECT_EQ(store.ExpandKeys(std::string("{\xC3\xA4}"), nullptr), "\xFC\xE4\xF6\xDF");
        EXPECT_EQ(store.ExpandKeys(std::wstring(L"{\u00C3\u00A4}"), nullptr), L"\u00FC\u00E4\u00F6\u00DF");
    }
    EXPECT_TRUE(utf8 || western);
}

namespace {

/// The process's store, for a module "Sample Module" in a folder of its own.
class StoreInstance : public LanguageStore {
protected:
    StoreInstance() {
        setOwnModule(module.handle());
        g_language_override = 0;
    }
    ~StoreInstance() override {
        setOwnModule(nullptr);
        g_language_override = override_before;
    }

    const WORD override_before = g_language_override;
    ModuleCopy module{folder.path("Sample Module.dll")};
    FreshStore fresh;
};

} // namespace

TEST_F(StoreInstance, AnswersForTheLibrarysOwnModuleInTheLanguageOfTheOverride) {
    folder.write("A1031.lng", "<CODEPAGE 1252>\n[Sample Module]\nunit = \xB5s\nempty =\n");
    folder.write("A1033.lng", "[Sample Module]\nunit = English\n");
    g_language_override = 1031;
    EXPECT_EQ(GetLanguageId(), 1031);
    EXPECT_EQ(GetLanguageCodepage(), 1252U);
    EXPECT_EQ(GetLanguageString("{unit}"), "\xB5s");
    EXPECT_EQ(GetLanguageString("missing"), "");

    bool changed = false;
    EXPECT_EQ(ExpandLanguageKeys(std::wstring(L"[{unit}]"), &changed), L"[\u00B5s]");
    EXPECT_TRUE(changed);
    EXPECT_EQ(ExpandLanguageKeys(std::string("[{empty}]"), &changed), "[{empty}]");
    EXPECT_FALSE(changed);

    EXPECT_STREQ(LanguageText("{unit}", nullptr).wide(), L"\u00B5s");
    EXPECT_STREQ(LanguageText("empty", nullptr).narrow(), "");
    EXPECT_STREQ(LanguageText("{missing} ", nullptr).narrow(), "{missing} ") << "the key is the text of a miss";
    EXPECT_EQ(LanguageText(static_cast<const char*>(nullptr), nullptr).narrow(), nullptr);
}

TEST_F(StoreInstance, IsMadeOnceForTheFirstModule) {
    folder.write("A1033.lng", "[Sample Module]\na = b\n");
    const ModuleCopy other(folder.path("Other/Other Module.dll"));
    const CLanguageStore& store = CLanguageStore::Instance(module.handle());
    const wchar_t* text = store.Find("a");
    folder.write("A1033.lng", "[Sample Module]\na = changed\n");
    EXPECT_EQ(&CLanguageStore::Instance(other.handle()), &store);
    EXPECT_EQ(&CLanguageStore::Instance(), &store);
    EXPECT_EQ(store.Find("a"), text);
    EXPECT_STREQ(text, L"b");
}

TEST_F(StoreInstance, StartsOverAfterABrokenFileAndHoldsNoLock) {
    folder.write("A1033.lng", "[Sample Module]\na = b\nfault\n");
    EXPECT_THROW(GetLanguageId(), CLanguageFile::syntax_error);
    EXPECT_THROW(static_cast<void>(GetLanguageString("a")), CLanguageFile::syntax_error);

    folder.write("A1033.lng", "[Sample Module]\nb = c\n");
    auto elsewhere = std::async(std::launch::async, [] { return GetLanguageString("b"); });
    ASSERT_EQ(elsewhere.wait_for(std::chrono::seconds(30)), std::future_status::ready) << "the lock is held";
    EXPECT_EQ(elsewhere.get(), "c");
    EXPECT_EQ(GetLanguageString("a"), "") << "left over from the broken file";
}

TEST_F(StoreInstance, ReportsOnceThatThereAreNoFilesAndCanBeUsedMeanwhile) {
    int language_meanwhile = -1;
    const wchar_t* text_meanwhile = L"";
    const MessageBoxWatch watch([&] {
        language_meanwhile = GetLanguageId();
        text_meanwhile = CLanguageStore::Instance().Find("a");
    });
    EXPECT_EQ(GetLanguageId(), 0);
    EXPECT_EQ(GetLanguageId(), 0);
    EXPECT_EQ(watch.count(), 1);
    EXPECT_EQ(watch.text(), L"LNG0001:  No language files were found.");
    EXPECT_EQ(watch.caption(), L"Error");
    EXPECT_EQ(language_meanwhile, 0);
    EXPECT_EQ(text_meanwhile, nullptr);
    EXPECT_EQ(ExpandLanguageKeys(std::string("{a}"), nullptr), "{a}");
}

TEST_F(StoreInstance, IsFullForEveryThreadThatArrivesWhileItIsMade) {
    constexpr int Keys = 2000;
    constexpr int Threads = 8;
    std::string text = "[Sample Module]\n";
    for (int i = 0; i < Keys; ++i) text += "key" + std::to_string(i) + " = text\n";
    folder.write("A1033.lng", text);
    std::atomic<int> missing{Threads};
    std::atomic<int> hits{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            for (--missing; missing > 0;) std::this_thread::yield();
            for (int key = 0; key < Keys; ++key) hits += GetLanguageString("key" + std::to_string(key)) == "text";
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(hits, Threads * Keys);
}

#ifndef _WIN32
TEST_F(StoreInstance, FailsForAFileThatIsGoneWhenItIsOpened) {
    std::filesystem::create_symlink("nowhere", folder.path("A1033.lng"));
    EXPECT_THROW(GetLanguageId(), CLanguageFile::open_failed);
}
#endif
