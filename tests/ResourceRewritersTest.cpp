#include "wedge/resources/ResourceRewriters.h"

#include "tests/support/Rewritten.h"
#include "wedge/resources/DialogReader.h"
#include "wedge/resources/MenuReader.h"

#include <gtest/gtest.h>

#include <vector>

namespace eq {

namespace {

TemplateBuilder bundle(std::vector<std::u16string> strings) {
    strings.resize(16);
    TemplateBuilder resource;
    for (const std::u16string& text : strings) resource.word(static_cast<unsigned>(text.size())).units(text);
    return resource;
}

// Each entry has flags, a key, a command and a word of padding.
const TemplateBuilder table =
    TemplateBuilder().words({0x09, 0x74, 10, 0, 0x10, 'X', 11, 0, 0x01, 0x78, 12, 0, 0x8B, 0x74, 13, 0});

} // namespace

TEST(PrepareStringResource, CutsAStringOfMoreThan65535Units) {
    const std::u16string most(65535 - 8, u'x');
    EXPECT_TRUE(
        rewriteWith(PrepareStringResource, bundle({most + u"{T_Long}"}).get()).is(bundle({most + u"A longer"}).get()));
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
