#include "platform/SystemHandles.h"
#include "wedge/OwnModule.h"
#include "wedge/functions/WedgeState.h"
#include "wedge/resources/AcceleratorRegistry.h"
#include "wedge/resources/CountedBlock.h"
#include "wedge/resources/GuardedMap.h"
#include "wedge/string_ext.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/TestWindows.h"
#include "tests/support/Threads.h"

#ifndef _WIN32
#include "platform/desktop/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

// The resources are in Wedge.rc, their texts in UnitTests1033.lng.

namespace eq {

namespace {

constexpr std::uintptr_t DialogType = 5;

HRSRC findDialog(unsigned id) {
    return FindResourceW(ownModule(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(DialogType));
}

const char* bytesOf(HRSRC resource) {
    return static_cast<const char*>(LockResource(LoadResource(ownModule(), resource)));
}

std::wstring captionOf(HRSRC dialog) {
    const auto* const bytes = reinterpret_cast<const DLGTEMPLATE*>(bytesOf(dialog));
    const Window window(CreateDialogIndirectParamW(ownModule(), bytes, nullptr, ignoreMessage, 0));
    return textOf(window.get());
}

std::wstring menuText(HMENU menu, UINT position) {
    std::array<wchar_t, 64> text{};
    GetMenuStringW(menu, position, text.data(), 64, MF_BYPOSITION);
    return text.data();
}

/// Ends a dialog box at its start. The result of the box is its parameter, plus 1 if the caption is right.
INT_PTR CALLBACK endAtOnce(HWND dialog, UINT message, WPARAM, LPARAM parameter) {
    if (message == WM_INITDIALOG) EndDialog(dialog, parameter + (textOf(dialog) == L"named S" ? 1 : 0));
    return 0;
}

} // namespace

#ifndef _WIN32
// Counts the calls of an 8-bit function. The stand-in's 8-bit and 16-bit forms have the same effect.
#define EQ_COUNT(RESULT, NAME, PARAMETERS, ...)                                                                        \
    RESULT real##NAME PARAMETERS asm("__real_" #NAME);                                                                 \
    RESULT counted##NAME PARAMETERS asm("__wrap_" #NAME);                                                              \
    RESULT counted##NAME PARAMETERS {                                                                                  \
        ++narrowCalls;                                                                                                 \
        return real##NAME(__VA_ARGS__);                                                                                \
    }
EQ_COUNT(HWND, CreateDialogIndirectParamA, (HINSTANCE m, LPCDLGTEMPLATEA t, HWND w, DLGPROC f, LPARAM p), m, t, w, f, p)
EQ_COUNT(INT_PTR, DialogBoxIndirectParamA, (HINSTANCE m, LPCDLGTEMPLATEA t, HWND w, DLGPROC f, LPARAM p), m, t, w, f, p)
EQ_COUNT(HMENU, LoadMenuIndirectA, (const MENUTEMPLATEA* t), t)
EQ_COUNT(LONG_PTR, SetWindowLongPtrA, (HWND w, int i, LONG_PTR v), w, i, v)

TEST(Wedge, UsesTheSystemsFunctionsOfTheCallersWidth) {
    narrowCalls = 0;
    Window(CreateDialogParamA(ownModule(), "NamedDialog", nullptr, ignoreMessage, 0));
    DialogBoxParamA(ownModule(), "NamedDialog", nullptr, endAtOnce, 0);
    DestroyMenu(LoadMenuA(ownModule(), MAKEINTRESOURCEA(201)));
    EXPECT_EQ(narrowCalls, 3);
    Window(CreateDialogParamW(ownModule(), L"NamedDialog", nullptr, ignoreMessage, 0));
    DialogBoxParamW(ownModule(), L"NamedDialog", nullptr, endAtOnce, 0);
    DestroyMenu(LoadMenuW(ownModule(), MAKEINTRESOURCEW(201)));
    EXPECT_EQ(narrowCalls, 3);
}
#endif

TEST(CountedRef, SharesOneOwnerPerAddressAndFreesItWithTheLastReference) {
    CountedBlockIndex index;
    const long before = allocations::live;
    {
        auto* const block = new std::byte[8];
        CountedBlockRef first(index, block);
        CountedBlockRef second(index, block); // a second owner would free the block twice
        CountedBlockRef copy = first;
        copy = *&copy;
        second = CountedBlockRef();
        first = std::move(copy);
        onThreads(4, [&](int) {
            for (int turn = 0; turn < 1000; ++turn) {
                const CountedBlockRef shared = first; // NOLINT(performance-unnecessary-copy-initialization)
                const CountedBlockRef other(index, new std::byte[1]);
            }
        });
        EXPECT_EQ(first.get(), block);
        EXPECT_EQ(CountedBlockRef(index, nullptr).get(), nullptr);
        EXPECT_EQ(allocations::live, before + 3) << "the block, its owner and its place in the index";
    }
    EXPECT_EQ(allocations::live, before);
}

TEST(GuardedMap, MayBeUsedByManyThreads) {
    GuardedMap<int, int> map;
    onThreads(4, [&map](int thread) {
        for (int key = 40000 + thread; key > 0; key -= 4) {
            map.put(key, thread);
            EXPECT_EQ(map.find(key), thread);
            EXPECT_EQ(map.take(key), thread);
        }
    });
}

TEST(ResourceCache, RewritesAResourceOnceForAllCallsAndThreads) {
    const auto find = [](unsigned id) { static_cast<void>(findDialog(id)); };
    find(143); // fills the store
    EXPECT_EQ(wedgeState().resourceCache.Find(findDialog(143)), nullptr) << "the resource needs no substitute";
    const std::size_t once = allocations::askedBy([&] { find(110); });
    EXPECT_GT(once, 0U);
    EXPECT_EQ(bytesOf(findDialog(110)), wedgeState().resourceCache.Find(findDialog(110)));
    EXPECT_EQ(allocations::askedBy([&] { find(110), find(143); }), 0U);

    const auto useCache = [&](int) {
        for (int turn = 0; turn < 1000; ++turn) static_cast<void>(wedgeState().resourceCache.Find(nullptr));
        find(111);
    };
    const std::size_t threadsAlone = allocations::askedBy([] { onThreads(4, [](int) {}); });
    EXPECT_EQ(allocations::askedBy([&] { onThreads(4, useCache); }) - threadsAlone, once);
}

TEST(ResourceCache, TriesAgainAfterAShortageOfMemory) {
    const HRSRC dialog = findDialog(110);
    CountedBlockIndex blocks;
    ResourceCache cache(blocks);
    const long before = allocations::live;
    allocations::refuseEachOf([&] {
        EXPECT_EQ(cache.Prepare(ownModule(), dialog, DialogType), dialog);
        EXPECT_EQ(cache.Find(dialog) == nullptr, allocations::live == before);
    });
    EXPECT_NE(cache.Find(dialog), nullptr);
}

TEST(Wedge, PassesOtherTypesAndMissingResourcesToTheSystem) {
    for (const HRSRC resource : {FindResourceA(ownModule(), MAKEINTRESOURCEA(501), MAKEINTRESOURCEA(10)),
                                 FindResourceW(ownModule(), MAKEINTRESOURCEW(502), L"KEYED")})
        EXPECT_EQ(std::string(bytesOf(resource), SizeofResource(ownModule(), resource)), "{T_Short}");
    EXPECT_EQ(CreateDialogParamA(ownModule(), "missing", nullptr, ignoreMessage, 0), nullptr);
    EXPECT_EQ(DialogBoxParamA(ownModule(), "missing", nullptr, endAtOnce, 41), -1);
    EXPECT_EQ(DialogBoxParamW(ownModule(), L"missing", nullptr, endAtOnce, 41), -1);
    EXPECT_EQ(LoadMenuW(ownModule(), MAKEINTRESOURCEW(999)), nullptr);
    EXPECT_EQ(LoadAcceleratorsA(ownModule(), "missing"), nullptr);
}

TEST(Wedge, FindsResourcesInTheStoresLanguageUnlessTheCallerNamesALanguage) {
    EXPECT_EQ(captionOf(findDialog(144)), L"English S");
    const auto* const narrowType = MAKEINTRESOURCEA(DialogType);
    EXPECT_EQ(captionOf(FindResourceA(ownModule(), MAKEINTRESOURCEA(144), narrowType)), L"English S");
    const Window narrow(CreateDialogParamA(ownModule(), MAKEINTRESOURCEA(144), nullptr, ignoreMessage, 0));
    const Window wide(CreateDialogParamW(ownModule(), MAKEINTRESOURCEW(144), nullptr, ignoreMessage, 0));
    EXPECT_EQ(textOf(narrow.get()) + textOf(wide.get()), L"English SEnglish S");
    EXPECT_EQ(captionOf(FindResourceExA(ownModule(), narrowType, MAKEINTRESOURCEA(144), 0x407)), L"German S");
    const auto* const wideType = MAKEINTRESOURCEW(DialogType);
    EXPECT_EQ(captionOf(FindResourceExW(ownModule(), wideType, MAKEINTRESOURCEW(144), 0x411)), L"neutral S");
}

TEST(Wedge, CreatesTranslatedDialogs) {
    const Window dialog(CreateDialogParamW(ownModule(), MAKEINTRESOURCEW(141), nullptr, ignoreMessage, 0));
    EXPECT_EQ(textOf(dialog.get()), L"S: A longer translation");
    EXPECT_EQ(textOf(GetDlgItem(dialog.get(), 1003)), L"as it is {T_Unknown}");
    const HWND child = CreateDialogParamA(ownModule(), MAKEINTRESOURCEA(142), dialog.get(), ignoreMessage, 0);
    EXPECT_EQ(textOf(GetDlgItem(child, 1002)), L"A longer translation");
    EXPECT_EQ(GetParent(child), dialog.get());
    EXPECT_EQ(DialogBoxParamA(ownModule(), "NamedDialog", nullptr, endAtOnce, 41), 42);
    EXPECT_EQ(DialogBoxParamW(ownModule(), L"NAMEDDIALOG", nullptr, endAtOnce, 41), 42);
}

TEST(Wedge, LoadsTranslatedMenusOfBothForms) {
    const HMENU standard = LoadMenuA(ownModule(), MAKEINTRESOURCEA(201));
    EXPECT_EQ(menuText(GetSubMenu(GetSubMenu(standard, 0), 2), 0), L"in SS depth");
    const HMENU extended = LoadMenuW(ownModule(), MAKEINTRESOURCEW(202));
    EXPECT_EQ(menuText(GetSubMenu(extended, 0), 2), L"S");
    for (const HMENU menu : {standard, extended}) DestroyMenu(menu);
}

TEST(Wedge, LoadsTranslatedStringsCutToTheBuffer) {
    // If a bundle contains a key, its strings lose the characters that the store's code page lacks.
    // clang-format off
    const std::tuple<UINT, int, std::wstring> rows[] = {
        {15, 64, L"last of SS"}, {32, 64, L"first of a bundle without keys"}, {63, 64, L"after a longer string"},
        {33, 64, L""}, {31, 64, L"na\u00EFve \u201ES\u201C ?"}, {17, 7, L"no key"}, {17, 6, L"no ke"}, {17, 1, L""}};
    // clang-format on
    for (const auto& [id, room, text] : rows) {
        SCOPED_TRACE(id);
        std::wstring wide(64, L'#');
        EXPECT_EQ(LoadStringW(ownModule(), id, wide.data(), room), static_cast<int>(text.size()));
        EXPECT_EQ(wide.c_str(), text);
        std::string narrow(64, '#');
        EXPECT_EQ(LoadStringA(ownModule(), id, narrow.data(), room), static_cast<int>(text.size()));
        EXPECT_EQ(narrow.c_str(), convert_string(text, 1252));
    }
    wchar_t untouched = L'#';
    EXPECT_EQ(LoadStringW(ownModule(), 17, &untouched, 0), 0);
    EXPECT_EQ(LoadStringA(ownModule(), 17, nullptr, -1), 0);
    EXPECT_EQ(LoadStringW(ownModule(), 500, &untouched, 1), 0);
    EXPECT_EQ(untouched, L'#');
    const allocations::Shortage shortage(0);
    EXPECT_EQ(LoadStringW(ownModule(), 17, &untouched, 1), 0);
}

TEST(Wedge, LoadsTranslatedAcceleratorTables) {
    const HACCEL wide = LoadAcceleratorsW(ownModule(), MAKEINTRESOURCEW(301));
    const HACCEL narrow = LoadAcceleratorsA(ownModule(), MAKEINTRESOURCEA(301));
    ACCEL entry{};
    const HACCEL foreign = CreateAcceleratorTableW(&entry, 1);
    const auto entriesOf = [](HACCEL table) {
        std::array<ACCEL, 5> entries{};
        EXPECT_EQ(CopyAcceleratorTableW(table, entries.data(), 5), 4);
        return entries;
    };
    for (const HACCEL table : {wide, narrow}) EXPECT_EQ(entriesOf(table)[0].key, VK_F6);
    EXPECT_EQ(entriesOf(wide)[3].key, 0x80);
    EXPECT_NE(entriesOf(narrow)[3].key, 0x80) << "the character must be converted from the ANSI code page";
    for (const HACCEL table : {wide, narrow, foreign}) EXPECT_NE(DestroyAcceleratorTable(table), 0);
    EXPECT_EQ(DestroyAcceleratorTable(wide), 0);
    EXPECT_EQ(LoadAcceleratorsW(ownModule(), MAKEINTRESOURCEW(302)), nullptr) << "the next table must not be read";
}

TEST(Wedge, DestroysOnlyTheAcceleratorTablesThatAreLeft) {
    const HACCEL left = LoadAcceleratorsW(ownModule(), MAKEINTRESOURCEW(301));
    std::destroy_at(&wedgeState().acceleratorRegistry);
    std::construct_at(&wedgeState().acceleratorRegistry);
    EXPECT_EQ(CopyAcceleratorTableW(left, nullptr, 0), 0);

    const auto turns = [](int count) {
        for (; count > 0; --count) DestroyAcceleratorTable(LoadAcceleratorsW(ownModule(), MAKEINTRESOURCEW(301)));
    };
    turns(1);
    const std::size_t once = allocations::askedBy([&] { turns(1); });
    EXPECT_EQ(allocations::askedBy([&] { turns(500); }), 500 * once);
}

TEST(AcceleratorRegistry, DestroysTheRemainingTables) {
    ACCEL entry{};
    const HACCEL left = CreateAcceleratorTableW(&entry, 1), removed = CreateAcceleratorTableW(&entry, 1);
    {
        AcceleratorRegistry registry;
        registry.Add(left);
        onThreads(4, [&](int) {
            for (int turn = 0; turn < 1000; ++turn) registry.Add(removed), registry.Remove(removed);
        });
        registry.Remove(removed); // the handle is no longer in the registry
    }
    EXPECT_EQ(DestroyAcceleratorTable(left), 0);
    EXPECT_NE(DestroyAcceleratorTable(removed), 0);
}

TEST(Wedge, RewritesDialogInitialisationData) {
    EXPECT_STREQ(bytesOf(FindResourceW(ownModule(), MAKEINTRESOURCEW(401), MAKEINTRESOURCEW(240))) + 8, "S");
}

#ifndef _WIN32
// On Windows a test cannot read the language of a message box.
TEST(Wedge, ShowsMessageBoxesInTheStoresLanguageOrTheCallers) {
    testing::internal::CaptureStderr();
    const auto languageOf = [](int /*answer*/) { return standin::shownMessageBoxes().lastLanguage; };
    EXPECT_EQ(languageOf(MessageBoxW(nullptr, L"text", L"caption", MB_OK)), 0x409);
    EXPECT_EQ(languageOf(MessageBoxExW(nullptr, L"text", L"caption", MB_OK, 0x407)), 0x407);
    EXPECT_EQ(languageOf(MessageBoxA(nullptr, "narrow", "caption", MB_OK)), 0x409);
    EXPECT_EQ(languageOf(MessageBoxExA(nullptr, "narrow", nullptr, MB_OK, 7)), 7);
    constexpr UINT TwoButtons = 4; // which the stand-in refuses
    EXPECT_EQ(MessageBoxA(nullptr, "", "", TwoButtons) + MessageBoxW(nullptr, L"", L"", TwoButtons), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "caption: text\ncaption: text\ncaption: narrow\nError: narrow\n");
}
#endif

} // namespace eq
