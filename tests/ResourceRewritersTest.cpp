#include "wedge/resources/ResourceRewriters.h"

#include "tests/support/Rewritten.h"
#include "wedge/resources/DialogReader.h"
#include "wedge/resources/MenuReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <tuple>
#include <utility>

// The keys and their texts are in UnitTests1033.lng.

namespace eq {

namespace {

using Text = std::u16string;
using UnsizedRewriter = PrepStatus (*)(const void* resource, void** newResource) noexcept;

/// A random resource in two forms: as compiled, and as the model of its format rewrites it.
class RandomResource {
    std::mt19937& m_numbers;

public:
    explicit RandomResource(std::mt19937& numbers) : m_numbers(numbers), mayChange(below(3) != 0) {}

    unsigned below(unsigned count) { return static_cast<unsigned>(m_numbers() % count); }

    void word(unsigned value) { compiled.word(value), rewritten.word(value); }
    void randomWords(int count) {
        for (; count > 0; --count) word(below(0x10000));
    }
    void data(const std::string& bytes) { compiled.bytes(bytes), rewritten.bytes(bytes); }

    /// Adds padding. In the rewritten form the padding is zero.
    void align() {
        while (compiled.get().size() % 4 != 0) {
            const bool isZero = below(30) != 0;
            isDirty = isDirty || !isZero;
            compiled.bytes(isZero ? std::string(1, '\0') : "p");
        }
        rewritten.align();
    }

    /// Marks the start of an element, which must be within the first 65536 bytes.
    void element() { isInvalid = isInvalid || compiled.get().size() >= 0x10000; }

    /// Returns a size in bytes. Rarely, data of this size ends near the end of the range.
    unsigned sizeOfData() {
        const std::size_t start = compiled.get().size();
        if (below(50) != 0 || start >= 0xFFF0) return below(6);
        return static_cast<unsigned>(std::min<std::size_t>(0xFFF8 + below(12) - start, 0xFFFF));
    }

    /// Returns a text and its expanded form.
    std::pair<Text, Text> text() {
        // clang-format off
        static const std::pair<Text, Text> pieces[] = {
            {u"{T_Short}", u"S"}, {u"{ t_two }", u"SS"}, {u"{T_Long}", u"A longer translation"},
            {u"{T_Empty}", u"{T_Empty}"}, {u"{T_Unknown}", u"{T_Unknown}"}, {u"\u00E9}", u"\u00E9}"},
            {u"&b\t", u"&b\t"}};
        // clang-format on
        const Text start(sizeOfData() / 2, u'c');
        std::pair<Text, Text> result(start, start);
        for (unsigned count = below(3); count > 0; --count) {
            const auto& [given, expanded] = pieces[mayChange && below(4) == 0 ? below(3) : 3 + below(4)];
            result.first += given;
            result.second += expanded;
        }
        return result;
    }
    void text(bool isTranslated) {
        const auto [given, expanded] = text();
        compiled.text(given);
        rewritten.text(isTranslated ? expanded : given);
        isChanged = isChanged || (isTranslated && given != expanded);
    }
    void ordinalOrText(bool isTranslated) {
        element();
        if (below(4) != 0) return text(isTranslated);
        word(0xFFFF);
        randomWords(1);
    }

    void expectFrom(SizedRewriter rewriter, UnsizedRewriter unsized) {
        const std::string& all = compiled.get();
        const bool fails = isInvalid || (isDirty && !isChanged);
        const PrepStatus status = fails ? PrepFailed : isChanged ? PrepReplaced : PrepUnchanged;
        const Rewritten result = rewriteWith(rewriter, all + std::string(below(3), '\xFF'));
        EXPECT_EQ(result.status, status);
        EXPECT_TRUE(status != PrepReplaced || result.is(rewritten.get()));
        EXPECT_EQ(rewriteWith(rewriter, all.substr(0, m_numbers() % all.size())).status, PrepFailed);
        const std::string large = all + std::string(0x10000 - std::min<std::size_t>(all.size(), 0x10000), '\0');
        void* block = nullptr;
        EXPECT_EQ(unsized(large.data(), &block), all.size() <= 0x10000 ? status : PrepFailed);
        delete[] static_cast<std::byte*>(block);
    }

    const bool mayChange;
    TemplateBuilder compiled, rewritten;
    bool isChanged = false, isInvalid = false;
    bool isDirty = false; ///< the padding has a byte that is not zero
};

void addDialog(RandomResource& dialog) {
    const bool isExtended = dialog.below(2) != 0;
    const unsigned style = dialog.below(0x100);
    const unsigned items = dialog.below(4);
    for (const unsigned value : {1, 0xFFFF, 2, 3, 4, 5})
        if (isExtended) dialog.word(value);
    dialog.word(style);
    dialog.randomWords(isExtended ? 1 : 3);
    dialog.word(items);
    dialog.randomWords(4);
    for (int name = 0; name < 2; ++name) dialog.ordinalOrText(false);
    dialog.element();
    dialog.text(true);
    if ((style & (isExtended ? 0x48U : 0x40U)) != 0) {
        std::wstring face;
        std::uint16_t points = 0;
        SystemDialogFont(face, points);
        const bool isReplaced = dialog.mayChange && dialog.below(4) == 0;
        const Text other = dialog.below(2) == 0 ? u"MS Shell Dlg 2" : u"";
        dialog.isChanged = dialog.isChanged || isReplaced;
        dialog.element();
        dialog.compiled.word(9);
        dialog.rewritten.word(isReplaced ? points : 9);
        dialog.randomWords(isExtended ? 2 : 0);
        dialog.compiled.text(isReplaced ? u"MS Shell DLG" : other);
        dialog.rewritten.text(isReplaced ? Text(face.begin(), face.end()) : other);
    }
    for (unsigned item = 0; item < items; ++item) {
        dialog.align();
        dialog.randomWords(isExtended ? 12 : 9);
        dialog.ordinalOrText(false);
        dialog.ordinalOrText(true);
        const unsigned size = dialog.sizeOfData();
        dialog.word(size);
        dialog.data(std::string(size, 'd'));
    }
}

void addMenuLevel(RandomResource& menu, bool isExtended, unsigned depth) {
    for (bool isLast = false; !isLast;) {
        isLast = menu.below(3) == 0;
        const bool isPopup = menu.below(2 + depth) == 0;
        const unsigned popup = isExtended ? 0x01 : 0x10;
        if (isExtended) menu.align();
        menu.randomWords(isExtended ? 6 : 0);
        menu.word((menu.below(0x10000) & ~(popup | 0x80)) | (isPopup ? popup : 0) | (isLast ? 0x80U : 0));
        menu.randomWords(isExtended || isPopup ? 0 : 1);
        menu.text(true);
        if (isExtended && isPopup) menu.align();
        menu.randomWords(isExtended && isPopup ? 2 : 0);
        if (isPopup) addMenuLevel(menu, isExtended, depth + 1);
    }
}

void addMenu(RandomResource& menu) {
    const unsigned versions[] = {0, 1, 2, 0x100, 0x101};
    const unsigned version = versions[menu.below(menu.below(40) == 0 ? 5 : 2)];
    const unsigned gap = menu.below(40) == 0 ? menu.below(12) : 2 * (menu.below(4) + 2 * version);
    menu.isInvalid = version > 1 || gap < 4 * version || gap % 2 != 0;
    menu.word(version);
    menu.word(gap);
    menu.data(std::string(gap, 'g'));
    addMenuLevel(menu, version != 0, 0);
    menu.element();
}

void addStrings(RandomResource& bundle) {
    for (int i = 0; i < 16; ++i) {
        const auto [given, expanded] = bundle.text();
        bundle.compiled.word(static_cast<unsigned>(given.size())).units(given);
        bundle.rewritten.word(static_cast<unsigned>(expanded.size())).units(expanded);
        bundle.isChanged = bundle.isChanged || given != expanded;
    }
}

void addAccelerators(RandomResource& table) {
    // The flags and the key of an entry, and of its translation.
    const std::array<unsigned, 4> rows[] = {
        {0x09, 0x74, 0x11, 0x75}, {0x10, 'X', 0x08, 'Y'}, {0x01, 0x78, 0, 0}, {0x01, 0x79, 0, 0}, {0x08, 'X', 0, 0}};
    for (bool isLast = false; !isLast;) {
        isLast = table.below(3) == 0;
        const auto& [flags, key, newFlags, newKey] = rows[table.mayChange ? table.below(5) : 2 + table.below(3)];
        const bool isTranslated = newFlags != 0;
        const unsigned marks = table.below(2) * 2 + (isLast ? 0x80 : 0);
        const unsigned all = flags | marks | table.below(2) * 0x4060; // with flags that have no meaning
        table.compiled.word(all).word(key);
        table.rewritten.word(isTranslated ? newFlags | marks : all).word(isTranslated ? newKey : key);
        table.randomWords(2); // the command, and the padding
        table.isChanged = table.isChanged || isTranslated;
    }
}

void addComboTexts(RandomResource& resource) {
    const auto addData = [](TemplateBuilder& form, const Text& data) {
        form.doubleWord(static_cast<std::uint32_t>(data.size())).bytes(std::string(data.begin(), data.end()));
    };
    while (resource.below(4) != 0) {
        const bool isText = resource.below(2) != 0;
        resource.word(1 + resource.below(0xFFFF));
        resource.word(isText ? 0x143 : 0x143 + 1 + resource.below(0x1000));
        const auto [given, expanded] = resource.text();
        const Text compiled = given + Text(u"\0{T_Short}", 10).substr(0, resource.below(2) * resource.below(11));
        addData(resource.compiled, compiled);
        addData(resource.rewritten, isText ? expanded + u'\0' : compiled);
        resource.isChanged = resource.isChanged || (isText && given != expanded);
    }
    resource.word(0);
}

// Each entry has flags, a key, a command and a word of padding.
const TemplateBuilder table =
    TemplateBuilder().words({0x09, 0x74, 10, 0, 0x10, 'X', 11, 0, 0x01, 0x78, 12, 0, 0x8B, 0x74, 13, 0});

} // namespace

TEST(RandomResources, AreRewrittenAsTheirFormatsSay) {
    // clang-format off
    const std::tuple<void (*)(RandomResource&), SizedRewriter, UnsizedRewriter> kinds[] = {
        {addDialog, PrepareDialogResource, PrepareDialogResource}, {addMenu, PrepareMenuResource, PrepareMenuResource},
        {addStrings, PrepareStringResource, PrepareStringResource},
        {addAccelerators, PrepareAcceleratorResource, PrepareAcceleratorResource},
        {addComboTexts, PrepareDialogInitResource, PrepareDialogInitResource}};
    // clang-format on
    for (const auto& [add, rewriter, unsized] : kinds) {
        std::mt19937 numbers(4711);
        for (int turn = 0; turn < 500 && !HasFailure(); ++turn) {
            SCOPED_TRACE(turn);
            RandomResource resource(numbers);
            add(resource);
            resource.expectFrom(rewriter, unsized);
        }
    }
}

TEST(PrepareStringResource, CutsAStringOfMoreThan65535Units) {
    const auto bundle = [](const Text& first) {
        return TemplateBuilder().word(static_cast<unsigned>(first.size())).units(first + Text(15, u'\0')).get();
    };
    const Text most(65535 - 8, u'x');
    EXPECT_TRUE(rewriteWith(PrepareStringResource, bundle(most + u"{T_Long}")).is(bundle(most + u"A longer")));
}

TEST(PrepareMenuResource, ReadsPopupsOfAnyDepth) {
    TemplateBuilder menu = TemplateBuilder().words({0, 0});
    for (int depth = 0; depth < 16000; ++depth) menu.word(0x90).text(u"");
    EXPECT_EQ(statusOf(PrepareMenuResource, menu.words({0x80, 1}).text(u"{T_Short}")), PrepReplaced);
}

TEST(ToAccelArray, StopsAtTheEndMarkAndDropsIt) {
    std::uint32_t count = 0;
    const auto array = ToAccelArray((table.get() + table.get()).data(), 2 * table.get().size(), &count);
    ASSERT_EQ(count, 4U);
    EXPECT_EQ(std::tuple(array[1].key, array[3].fVirt, array[3].cmd), std::tuple('X', 0x0B, 13));
    const std::string_view bytes(reinterpret_cast<const char*>(array.get()), count * sizeof(ACCEL));
    for (std::size_t entry = 0; entry < count; ++entry) EXPECT_EQ(bytes[entry * sizeof(ACCEL) + 1], '\0') << entry;
    EXPECT_EQ(ToAccelArray(table.get().data(), table.get().size() - 1, &count), nullptr);
    EXPECT_EQ(ToAccelArray(nullptr, 8, &count), nullptr);
    EXPECT_NE(ToAccelArray(table.get().data(), table.get().size(), nullptr), nullptr);
}

TEST(ResourceRewriters, RefuseNull) {
    void* block = nullptr;
    EXPECT_EQ(PrepareDialogResource(nullptr, &block), PrepFailed);
    EXPECT_EQ(PrepareMenuResource(nullptr, &block), PrepFailed);
    EXPECT_EQ(PrepareStringResource(nullptr, &block), PrepNoInput);
    EXPECT_EQ(PrepareDialogResource("", 0, nullptr), PrepFailed);
    EXPECT_EQ(PrepareMenuResource("", 0, nullptr), PrepFailed);
}

} // namespace eq
