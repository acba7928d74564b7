#include "wedge/AcceleratorRegistry.h"
#include "wedge/CountedBlock.h"
#include "wedge/OwnModule.h"
#include "wedge/ResourceCache.h"
#include "wedge/ResourceLoading.h"
#include "wedge/string_ext.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/WindowTexts.h"

#ifndef _WIN32
#include "platform/standin/TestHooks.h"
#endif

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// The resources are those of Wedge.rc, the texts those of the language file beside the test program.

namespace {

HMODULE module() {
    return ownModule();
}

constexpr std::uintptr_t DialogType = 5;

HRSRC findDialog(unsigned id) {
    return FindResourceW(module(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(DialogType));
}

std::wstring captionOf(HRSRC dialog) {
    const auto* const bytes = static_cast<const DLGTEMPLATE*>(LockResource(LoadResource(module(), dialog)));
    const platform::Window window(CreateDialogIndirectParamW(module(), bytes, nullptr, ignoreMessage, 0));
    return textOf(window.get());
}

std::wstring loadedString(UINT id, int room = 64) {
    std::vector<wchar_t> buffer(64, L'#');
    const int length = LoadStringW(module(), id, buffer.data(), room);
    EXPECT_EQ(buffer[static_cast<std::size_t>(length)], length == 0 && buffer[0] == L'#' ? L'#' : 0);
    return std::wstring(buffer.data(), static_cast<std::size_t>(length));
}

std::string loadedNarrowString(UINT id, int room = 64) {
    std::vector<char> buffer(64, '#');
    const int length = LoadStringA(module(), id, buffer.data(), room);
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

using Entries = std::vector<std::array<unsigned, 3>>;

/// Marks, key and command of each entry.
Entries entriesOf(HACCEL table) {
    std::array<ACCEL, 8> entries{};
    const int count = CopyAcceleratorTableW(table, entries.data(), 8);
    Entries result;
    for (int i = 0; i < count; ++i) {
        const ACCEL& entry = entries[static_cast<std::size_t>(i)];
        result.push_back({entry.fVirt, entry.key, entry.cmd});
    }
    return result;
}

std::wstring menuText(HMENU menu, int position) {
    std::array<wchar_t, 64> text{};
    GetMenuStringW(menu, static_cast<UINT>(position), text.data(), 64, MF_BYPOSITION);
    return text.data();
}

/// Ends a dialog box at its start, with one more than its parameter if it has the right caption.
INT_PTR CALLBACK endAtOnce(HWND dialog, UINT message, WPARAM, LPARAM parameter) {
    if (message == WM_INITDIALOG) EndDialog(dialog, parameter + (textOf(dialog) == L"named S" ? 1 : 0));
    return 0;
}

/// What `work` allocates.
template <typename Work>
std::size_t bytesAskedBy(const Work& work) {
    const std::size_t before = allocations::asked;
    work();
    return allocations::asked - before;
}

/// Does the same on four threads at once.
template <typename Work>
void onFourThreads(const Work& work) {
    std::latch start(4);
    std::vector<std::thread> threads;
    while (threads.size() < 4) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            work();
        });
    }
    for (std::thread& thread : threads) thread.join();
}

} // namespace

TEST(CountedRef, SharesOneOwnerForAnAddressAndEndsItWithTheLast) {
    const long before = allocations::live;
    {
        auto* const block = new std::byte[8];
        CountedBlockRef first(block);
        CountedBlockRef second(block); // a second owner would release twice
        CountedBlockRef copy = first;
        copy = *&copy;
        second = CountedBlockRef();
        first = std::move(copy);
        EXPECT_EQ(first.get(), block);
        const CountedBlockRef nothing(nullptr);
        const CountedBlockRef nothingAgain(nullptr);
        EXPECT_EQ(nothingAgain.get(), nullptr);
    }
    EXPECT_EQ(allocations::live, before);
}

TEST(CountedRef, LeavesTheBlockToTheCallerWhenMemoryIsShort) {
    const auto block = std::make_unique<std::byte[]>(8);
    const long before = allocations::live;
    for (const long granted : {0, 1}) {
        const allocations::Shortage shortage(granted);
        EXPECT_THROW(CountedBlockRef(block.get()), std::bad_alloc);
    }
    EXPECT_EQ(allocations::live, before);
}

TEST(CountedRef, ChangesHandsOnManyThreads) {
    const long before = allocations::live;
    const CountedBlockRef shared(new std::byte[8]);
    onFourThreads([&shared] {
        for (int turn = 0; turn < 1000; ++turn) {
            const CountedBlockRef copy = shared;
            const CountedBlockRef other(new std::byte[1]);
        }
    });
    EXPECT_EQ(allocations::live, before + 3) << "the block, its owner and its place in the index";
}

TEST(ResourceCache, RewritesOnceHoweverOftenAndByHoweverManyAResourceIsFound) {
    static_cast<void>(findDialog(143)); // the store is built
    const std::size_t once = bytesAskedBy([] { static_cast<void>(findDialog(110)); });
    ASSERT_GT(once, 0U);
    void* const block = ResourceCache::instance().Find(findDialog(110));
    EXPECT_EQ(bytesAskedBy([] { static_cast<void>(findDialog(110)); }), 0U);
    EXPECT_EQ(LoadResource(module(), findDialog(110)), block);
    EXPECT_EQ(LockResource(block), block);

    const std::size_t threadsAlone = bytesAskedBy([] { onFourThreads([] {}); });
    const std::size_t withTheResource =
        bytesAskedBy([] { onFourThreads([] { EXPECT_NE(LoadResource(module(), findDialog(111)), nullptr); }); });
    EXPECT_EQ(withTheResource - threadsAlone, once);
}

TEST(ResourceCache, RemembersWhatNeedsNoSubstitute) {
    const HRSRC dialog = findDialog(143);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ResourceCache::instance().Find(dialog), nullptr);
    EXPECT_EQ(bytesAskedBy([] { static_cast<void>(findDialog(143)); }), 0U);
    EXPECT_EQ(captionOf(dialog), L"no key");
}

TEST(ResourceCache, TriesAgainAfterAShortageOfMemory) {
    const HRSRC dialog = FindResourceA(module(), "nameddialog", MAKEINTRESOURCEA(DialogType));
    ASSERT_NE(dialog, nullptr);
    ResourceCache cache;
    for (long granted = 0; granted < 3; ++granted) {
        const long before = allocations::live;
        const allocations::Shortage shortage(granted);
        EXPECT_EQ(cache.Prepare(module(), dialog, DialogType), dialog);
        EXPECT_EQ(cache.Find(dialog), nullptr);
        EXPECT_EQ(allocations::live, before);
    }
    cache.Prepare(module(), dialog, DialogType);
    EXPECT_NE(cache.Find(dialog), nullptr);
}

TEST(Wedge, LeavesOtherTypesAndWhatItDidNotFindToTheSystem) {
    const HRSRC raw = FindResourceA(module(), MAKEINTRESOURCEA(501), MAKEINTRESOURCEA(10));
    const HRSRC keyed = FindResourceW(module(), MAKEINTRESOURCEW(502), L"KEYED");
    for (const HRSRC resource : {raw, keyed}) {
        EXPECT_EQ(ResourceCache::instance().Find(resource), nullptr);
        const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(module(), resource)));
        EXPECT_EQ(std::string(bytes, SizeofResource(module(), resource)), "{T_Short}");
    }
    EXPECT_EQ(findDialog(999), nullptr);
    EXPECT_EQ(CreateDialogParamA(module(), "missing", nullptr, ignoreMessage, 0), nullptr);
    EXPECT_EQ(CreateDialogParamW(module(), MAKEINTRESOURCEW(999), nullptr, ignoreMessage, 0), nullptr);
    EXPECT_EQ(DialogBoxParamA(module(), "missing", nullptr, endAtOnce, 41), -1);
    EXPECT_EQ(DialogBoxParamW(module(), L"missing", nullptr, endAtOnce, 41), -1);
    EXPECT_EQ(LoadMenuA(module(), "missing"), nullptr);
    EXPECT_EQ(LoadMenuW(module(), MAKEINTRESOURCEW(999)), nullptr);
    EXPECT_EQ(LoadAcceleratorsA(module(), "missing"), nullptr);
}

TEST(Wedge, FindsResourcesInTheStoresLanguageUnlessTheCallerNamesOne) {
    EXPECT_EQ(captionOf(findDialog(144)), L"English S");
    const HRSRC german = FindResourceExA(module(), MAKEINTRESOURCEA(DialogType), MAKEINTRESOURCEA(144), 0x407);
    EXPECT_EQ(captionOf(german), L"German S");
    const HRSRC other = FindResourceExW(module(), MAKEINTRESOURCEW(DialogType), MAKEINTRESOURCEW(144), 0x411);
    EXPECT_EQ(captionOf(other), L"neutral S");
}

TEST(Wedge, CreatesTranslatedDialogsWithTheControlsAsTheyWere) {
    const platform::Window dialog(CreateDialogParamW(module(), MAKEINTRESOURCEW(141), nullptr, ignoreMessage, 0));
    EXPECT_EQ(textOf(dialog.get()), L"S: A longer translation");
    struct Expected {
        int id;
        const wchar_t* text;
        RECT units; // left, top, width, height
    };
    const Expected controls[] = {
        {1001, L"A longer translation", {7, 11, 49, 8}},
        {1002, L"odd SS", {60, 10, 50, 14}},
        {1003, L"as it is {T_Unknown}", {7, 30, 50, 14}},
        {-1, L"", {100, 50, 30, 9}},
    };
    for (const Expected& expected : controls) {
        SCOPED_TRACE(expected.id);
        const HWND control = GetDlgItem(dialog.get(), expected.id);
        EXPECT_EQ(textOf(control), expected.text);
        RECT wanted = expected.units;
        MapDialogRect(dialog.get(), &wanted);
        RECT actual{};
        GetWindowRect(control, &actual);
        MapWindowPoints(nullptr, dialog.get(), reinterpret_cast<POINT*>(&actual), 2);
        const RECT withSize{actual.left, actual.top, actual.right - actual.left, actual.bottom - actual.top};
        EXPECT_EQ(std::memcmp(&withSize, &wanted, sizeof wanted), 0);
    }
    const platform::Window parent(
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 10, 10, nullptr, nullptr, module(), nullptr));
    const HWND child = CreateDialogParamA(module(), MAKEINTRESOURCEA(142), parent.get(), ignoreMessage, 0);
    EXPECT_EQ(textOf(GetDlgItem(child, 1002)), L"A longer translation");
    EXPECT_EQ(GetParent(child), parent.get());
    EXPECT_EQ(DialogBoxParamA(module(), "NamedDialog", nullptr, endAtOnce, 41), 42);
    EXPECT_EQ(DialogBoxParamW(module(), L"NAMEDDIALOG", nullptr, endAtOnce, 41), 42);
}

TEST(Wedge, LoadsTranslatedMenusOfBothForms) {
    const HMENU standard = LoadMenuA(module(), MAKEINTRESOURCEA(201));
    const HMENU popup = GetSubMenu(standard, 0);
    EXPECT_EQ(menuText(standard, 0), L"A longer translation");
    EXPECT_EQ(menuText(standard, 1), L"{T_Unknown}");
    EXPECT_EQ(menuText(popup, 0), L"S\tF1");
    EXPECT_EQ(menuText(GetSubMenu(popup, 2), 0), L"in SS depth");
    EXPECT_EQ(GetMenuItemID(GetSubMenu(popup, 2), 0), 2002U);
    DestroyMenu(standard);

    const HMENU extended = LoadMenuW(module(), MAKEINTRESOURCEW(202));
    const HMENU items = GetSubMenu(extended, 0);
    EXPECT_EQ(menuText(extended, 0), L"SS");
    EXPECT_EQ(menuText(items, 0), L"A longer translation");
    EXPECT_EQ(menuText(items, 2), L"S");
    EXPECT_EQ(GetMenuItemID(items, 2), 2103U);
    DestroyMenu(extended);
}

TEST(Wedge, LoadsTranslatedStrings) {
    EXPECT_EQ(loadedString(15), L"last of SS");
    EXPECT_EQ(loadedString(16), L"A longer translation");
    EXPECT_EQ(loadedString(17), L"no key");
    EXPECT_EQ(loadedString(32), L"first of a bundle without keys");
    EXPECT_EQ(loadedString(33), L"");
    // What the store's code page lacks is lost with the first key of a bundle.
    EXPECT_EQ(loadedString(31), L"na\u00EFve \u201ES\u201C ?");
    EXPECT_EQ(loadedNarrowString(31), convert_string(L"na\u00EFve \u201ES\u201C ?", 1252));

    EXPECT_EQ(LoadResourceStringW(module(), 500), nullptr);
    EXPECT_EQ(LoadResourceStringA(module(), 500), nullptr);
    EXPECT_STREQ(LoadResourceStringW(module(), 18).get(), L"");
    EXPECT_STREQ(LoadResourceStringA(module(), 18).get(), "");
}

TEST(Wedge, CutsStringsToTheBuffer) {
    EXPECT_EQ(loadedString(17, 7), L"no key");
    EXPECT_EQ(loadedString(17, 6), L"no ke");
    EXPECT_EQ(loadedNarrowString(17, 6), "no ke");
    EXPECT_EQ(loadedString(17, 1), L"");
    wchar_t untouched = L'#';
    EXPECT_EQ(LoadStringW(module(), 17, &untouched, 0), 0);
    EXPECT_EQ(LoadStringW(module(), 17, nullptr, -1), 0);
    EXPECT_EQ(LoadStringW(module(), 500, &untouched, 1), 0);
    EXPECT_EQ(untouched, L'#');
}

TEST(Wedge, LoadsTranslatedAcceleratorTables) {
    const Entries translated = {{FVIRTKEY | FALT, VK_F6, 3001}, {FCONTROL, 'Y', 3002}, {FVIRTKEY, VK_F9, 3003}};
    const HACCEL first = LoadAcceleratorsW(module(), MAKEINTRESOURCEW(301));
    const HACCEL second = LoadAcceleratorsA(module(), MAKEINTRESOURCEA(301));
    const HACCEL plain = LoadAcceleratorsW(module(), MAKEINTRESOURCEW(302));
    EXPECT_EQ(entriesOf(first), translated);
    EXPECT_EQ(entriesOf(second), translated);
    EXPECT_EQ(entriesOf(plain), (Entries{{FVIRTKEY | FSHIFT, 'A', 3004}}));
    ACCEL entry{};
    const HACCEL foreign = CreateAcceleratorTableW(&entry, 1);
    for (const HACCEL table : {first, second, plain, foreign}) EXPECT_NE(DestroyAcceleratorTable(table), 0);
    EXPECT_EQ(DestroyAcceleratorTable(first), 0);
}

#ifndef _WIN32
TEST(Wedge, LosesNoAcceleratorTableWhenMemoryIsShort) {
    const std::size_t before = standin::liveAcceleratorTables();
    std::array<HACCEL, 20> tables{};
    std::size_t loaded = 0;
    // Among them are the tables for which the registry has to grow.
    for (HACCEL& table : tables)
        allocations::refuseEachOf([&] {
            DestroyAcceleratorTable(std::exchange(table, nullptr));
            table = LoadAcceleratorsW(module(), MAKEINTRESOURCEW(301));
        });
    EXPECT_EQ(standin::liveAcceleratorTables(), before + tables.size());
    for (const HACCEL table : tables) loaded += DestroyAcceleratorTable(table) != 0;
    EXPECT_EQ(loaded, tables.size());
}
#endif

TEST(AcceleratorRegistry, DestroysWhatIsLeftOnce) {
    ACCEL entry{};
    const HACCEL left = CreateAcceleratorTableW(&entry, 1);
    const HACCEL removed = CreateAcceleratorTableW(&entry, 1);
    {
        AcceleratorRegistry registry;
        registry.Add(removed);
        registry.Add(left);
        registry.Add(removed);
        registry.Remove(removed);
        registry.Remove(removed);
        registry.Remove(removed);
    }
    EXPECT_EQ(CopyAcceleratorTableW(left, nullptr, 0), 0);
    EXPECT_EQ(CopyAcceleratorTableW(removed, nullptr, 0), 1);
    DestroyAcceleratorTable(removed);
}

TEST(Wedge, RewritesDialogInitialisationData) {
    const HRSRC resource = FindResourceW(module(), MAKEINTRESOURCEW(401), MAKEINTRESOURCEW(240));
    const void* const bytes = LockResource(LoadResource(module(), resource));
    constexpr char Expected[] = "\xE9\x03\x43\x01\x02\0\0\0S\0"
                                "\xE9\x03\x03\x04\x02\0\0\0xy"
                                "\xEA\x03\x43\x01\x04\0\0\0abc\0"
                                "\0"; // and the literal's own zero
    EXPECT_EQ(std::memcmp(bytes, Expected, sizeof Expected), 0);
}

#ifndef _WIN32
// Windows does not tell what a box was asked for.
TEST(Wedge, ShowsMessageBoxesInTheStoresLanguageOrTheCallers) {
    testing::internal::CaptureStderr();
    const auto languageOf = [](int answer) {
        EXPECT_EQ(answer, IDOK);
        return standin::shownMessageBoxes().lastLanguage;
    };
    EXPECT_EQ(languageOf(MessageBoxW(nullptr, L"{T_Short}", L"caption", MB_OK)), 0x409);
    EXPECT_EQ(languageOf(MessageBoxExW(nullptr, L"text", L"caption", MB_OK, 0x407)), 0x407);
    EXPECT_EQ(languageOf(MessageBoxA(nullptr, "narrow", "caption", MB_OK)), 0x409);
    EXPECT_EQ(languageOf(MessageBoxExA(nullptr, "narrow", nullptr, MB_OK, 7)), 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "caption: {T_Short}\ncaption: text\ncaption: narrow\nError: narrow\n");
}
#endif
