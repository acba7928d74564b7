#include "wedge/resources/ResourceRewriters.h"

#include "tests/support/Rewritten.h"
#include "wedge/resources/DialogReader.h"
#include "wedge/resources/MenuReader.h"

#include <gtest/gtest.h>

#include <vector>

// The keys and their texts are in UnitTests1033.lng.

namespace eq {

namespace {

TemplateBuilder bundle(std::vector<std::u16string> strings) {
    strings.resize(16);
    TemplateBuilder resource;
    for (const std::u16string& text : strings) resource.word(static_cast<unsigned>(text.size())).units(text);
    return resource;
}

TemplateBuilder comboTexts(const std::string& first, const std::string& second) {
    TemplateBuilder resource;
    const auto record = [&](unsigned message, const std::string& data) {
        resource.words({1001, message}).doubleWord(static_cast<std::uint32_t>(data.size())).bytes(data);
    };
    record(0x143, first);
    record(0x403, std::string("{T_Short}\0x", 11));
    record(0x143, second);
    return resource.word(0);
}

const std::string end(1, '\0');

// Each entry has flags, a key, a command and a word of padding.
const TemplateBuilder table =
    TemplateBuilder().words({0x09, 0x74, 10, 0, 0x10, 'X', 11, 0, 0x01, 0x78, 12, 0, 0x8B, 0x74, 13, 0});

} // namespace

TEST(PrepareStringResource, ExpandsTheStringsOfABundle) {
    EXPECT_EQ(statusOf(PrepareStringResource, bundle({u"a", u"{T_Unknown}", u"{T_Empty}"})), PrepUnchanged);
    EXPECT_TRUE(replaces(PrepareStringResource, bundle({u"<{T_Long}>", u"", u"{T_Short}", u"caf\u00E9"}),
                         bundle({u"<A longer translation>", u"", u"S", u"caf\u00E9"})));
    const std::u16string most(65535 - 8, u'x');
    EXPECT_TRUE(
        rewriteWith(PrepareStringResource, bundle({most + u"{T_Long}"}).get()).is(bundle({most + u"A longer"}).get()));
}

TEST(PrepareAcceleratorResource, UsesTheKeyOfATranslationAndKeepsCommandAndMarks) {
    const TemplateBuilder translated =
        TemplateBuilder().words({0x11, 0x75, 10, 0, 0x08, 'Y', 11, 0, 0x01, 0x78, 12, 0, 0x93, 0x75, 13, 0});
    EXPECT_TRUE(replaces(PrepareAcceleratorResource, table, translated));
    // The first entry has no translation. The translation of the second entry is not a tag, and the translation of the
    // third entry is a code page tag.
    const TemplateBuilder untranslated = TemplateBuilder().words({1, 0x41, 1, 0, 1, 0x78, 2, 0, 0x81, 0x79, 3, 0});
    EXPECT_EQ(statusOf(PrepareAcceleratorResource, untranslated), PrepUnchanged);
}

TEST(ToAccelArray, StopsAtTheEndMarkAndDropsIt) {
    std::uint32_t count = 0;
    const auto array = ToAccelArray((table.get() + table.get()).data(), 2 * table.get().size(), &count);
    ASSERT_EQ(count, 4U);
    EXPECT_EQ(array[1].key, 'X');
    EXPECT_EQ(array[3].fVirt, 0x0B);
    EXPECT_EQ(array[3].cmd, 13);
    const std::string_view bytes(reinterpret_cast<const char*>(array.get()), count * sizeof(ACCEL));
    for (std::size_t entry = 0; entry < count; ++entry) EXPECT_EQ(bytes[entry * sizeof(ACCEL) + 1], '\0') << entry;
    EXPECT_EQ(ToAccelArray(table.get().data(), table.get().size() - 1, &count), nullptr);
}

TEST(PrepareDialogInitResource, ExpandsOnlyTheTextsOfComboBoxes) {
    EXPECT_EQ(statusOf(PrepareDialogInitResource, comboTexts("plain" + end, "{T_Empty}" + end)), PrepUnchanged);
    // The result drops bytes after the terminator, adds a missing terminator, and states the length of the new text.
    EXPECT_TRUE(replaces(PrepareDialogInitResource, comboTexts("{T_Long}" + end + "x", "a {T_Two}"),
                         comboTexts("A longer translation" + end, "a SS" + end)));
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
