#include "wedge/ResourceRewriters.h"

#include "tests/support/Rewritten.h"
#include "tests/support/TemplateBuilder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The keys and their texts are those of the language file beside the test program.

namespace {

TemplateBuilder bundle(const std::vector<std::u16string>& strings) {
    TemplateBuilder resource;
    for (std::size_t i = 0; i < 16; ++i) {
        const std::u16string text = i < strings.size() ? strings[i] : u"";
        resource.word(static_cast<unsigned>(text.size()));
        for (const char16_t unit : text) resource.word(unit);
    }
    return resource;
}

TemplateBuilder accelerators(const std::vector<std::vector<unsigned>>& entries) {
    TemplateBuilder resource;
    for (const auto& entry : entries) resource.words({entry[0], entry[1], entry[2], 0});
    return resource;
}

constexpr unsigned AddString = 0x143;

TemplateBuilder& record(TemplateBuilder& resource, unsigned control, unsigned message, const std::string& data) {
    return resource.words({control, message}).doubleWord(static_cast<std::uint32_t>(data.size())).bytes(data);
}

TemplateBuilder comboTexts(const std::string& first, const std::string& second) {
    TemplateBuilder resource;
    record(resource, 1001, AddString, first + '\0');
    record(resource, 1001, 0x403, std::string("{T_Short}\0x", 11));
    record(resource, 1002, AddString, second + '\0');
    return resource.word(0);
}

} // namespace

TEST(PrepareStringResource, ExpandsTheStringsOfABundle) {
    EXPECT_EQ(rewriteWith<PrepareStringResource>(bundle({u"a", u"{T_Unknown}", u"{T_Empty}"}).get()).status,
              PrepUnchanged);
    EXPECT_TRUE(rewriteWith<PrepareStringResource>(bundle({u"a", u"<{T_Long}>", u"", u"{T_Short}", u"caf\u00E9"}).get())
                    .is(bundle({u"a", u"<A longer translation>", u"", u"S", u"caf\u00E9"})));
    const std::u16string most(65535, u'x');
    EXPECT_TRUE(rewriteWith<PrepareStringResource>(bundle({most, u"{T_Short}"}).get()).is(bundle({most, u"S"})));
    const std::u16string grown = most.substr(9) + u"{T_Long}";
    EXPECT_TRUE(rewriteWith<PrepareStringResource>(bundle({grown}).get())
                    .is(bundle({(most.substr(9) + u"A longer translation").substr(0, 65535)})));
}

TEST(ResourceRewriters, FailWhereTheBytesEndTooSoonAndNeverReadOutsideThem) {
    expectFailureAtEveryCut<PrepareStringResource>(bundle({u"a", u"{T_Short}", u"xyz"}).get());
    tryEveryByteValue<PrepareStringResource>(bundle({u"{T_Short}", u"b"}).get());
    const std::string table = accelerators({{0x09, 0x74, 10}, {0x80, 'X', 11}}).get();
    expectFailureAtEveryCut<PrepareAcceleratorResource>(table);
    tryEveryByteValue<PrepareAcceleratorResource>(table);
    expectFailureAtEveryCut<PrepareDialogInitResource>(comboTexts("{T_Long}", "b").get());
    tryEveryByteValue<PrepareDialogInitResource>(comboTexts("{T_Short}", "b").get());
    TemplateBuilder unterminated;
    record(unterminated, 5, AddString, "{T_Short}").word(0);
    EXPECT_EQ(rewriteWith<PrepareDialogInitResource>(unterminated.get()).status, PrepFailed);

    void* block = nullptr;
    EXPECT_EQ(PrepareStringResource(nullptr, 0, &block), PrepNoInput);
    EXPECT_EQ(PrepareStringResource(nullptr, &block), PrepNoInput);
    EXPECT_EQ(PrepareAcceleratorResource(nullptr, 0, &block), PrepNoInput);
    EXPECT_EQ(PrepareDialogInitResource(nullptr, 0, &block), PrepNoInput);
}

TEST(PrepareAcceleratorResource, TakesTheKeyOfATranslationAndKeepsCommandAndMarks) {
    EXPECT_TRUE(rewriteWith<PrepareAcceleratorResource>(
                    accelerators({{0x09, 0x74, 10}, {0x10, 'X', 11}, {0x01, 0x78, 12}, {0x8B, 0x74, 13}}).get())
                    .is(accelerators({{0x11, 0x75, 10}, {0x08, 'Y', 11}, {0x01, 0x78, 12}, {0x93, 0x75, 13}})));
    // No translation, one that is no tag, and one that is a tag of another kind.
    EXPECT_EQ(
        rewriteWith<PrepareAcceleratorResource>(accelerators({{0x01, 0x41, 1}, {0x01, 0x78, 2}, {0x81, 0x79, 3}}).get())
            .status,
        PrepUnchanged);
}

TEST(ToAccelArray, StopsAtTheEndMarkAndDropsIt) {
    const std::string table = accelerators({{0x09, 0x74, 10}, {0x93, 'X', 11}, {0x80, 'Y', 12}}).get();
    std::uint32_t count = 0;
    const auto array = ToAccelArray(table.data(), table.size(), &count);
    ASSERT_EQ(count, 2U);
    EXPECT_EQ(array[0].fVirt, 0x09);
    EXPECT_EQ(array[0].key, 0x74);
    EXPECT_EQ(array[0].cmd, 10);
    EXPECT_EQ(array[1].fVirt, 0x13);
    EXPECT_EQ(array[1].cmd, 11);
    EXPECT_EQ(ToAccelArray(nullptr, 0, &count), nullptr);
    EXPECT_EQ(ToAccelArray(table.data(), 8, &count), nullptr);
    EXPECT_NE(ToAccelArray(table.data(), table.size(), nullptr), nullptr);
}

TEST(PrepareDialogInitResource, ExpandsTheTextsOfComboBoxesAlone) {
    EXPECT_EQ(rewriteWith<PrepareDialogInitResource>(comboTexts("plain", "{T_Empty}").get()).status, PrepUnchanged);
    EXPECT_TRUE(rewriteWith<PrepareDialogInitResource>(comboTexts("{T_Long}", "a {T_Short}").get())
                    .is(comboTexts("A longer translation", "a S")));
    // What follows the terminator goes, and the length tells of the text that is left.
    TemplateBuilder padded;
    record(padded, 5, AddString, std::string("{T_Two}\0\0\0", 10)).word(0);
    TemplateBuilder expected;
    record(expected, 5, AddString, std::string("SS\0", 3)).word(0);
    EXPECT_TRUE(rewriteWith<PrepareDialogInitResource>(padded.get()).is(expected));
}
