#include "wedge/LanguageTag.h"
#include "tests/support/Fingerprint.h"
#include "wedge/Codepages.h"
#include "wedge/VirtualKeys.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace eq {

namespace {

/// Returns the key name of an accelerator tag, the number of a code page tag, or the reason why the tag is refused.
std::string meaningOf(const std::string& tag) {
    std::string error = "no reason";
    const LanguageTagPtr record = ParseLanguageTag(tag, error);
    if (!record) return error;
    const AcceleratorDefinition* const accelerator = asAccelerator(*record);
    EXPECT_EQ(record->needs_value, accelerator != nullptr) << tag;
    return accelerator ? AcceleratorKeyName(*accelerator) : std::to_string(asCodepage(*record)->codepage);
}

} // namespace

TEST(LanguageTag, IsParsedOrRefusedWithTheReason) {
    // clang-format off
    const std::pair<const char*, const char*> cases[] = {
        // Accelerators: the case and the order of the words do not matter.
        {"<accelerator\tvirtkey \t control shift vk_f5>", "ACCEL_VIRTKEY_CONTROL_SHIFT_0x74"},
        {"<ACCEL VK_F5 SHIFT ALT CONTROL>", "ACCEL_CONTROL_ALT_SHIFT_0x74"}, {"< ACCEL z >", "ACCEL_0x5A"},
        {"<ACCELERATOR VK_F1 SHIFT SHIFT VK_F2>", "ACCEL_SHIFT_0x71"}, {"<ACCEL>", "ACCEL_0x00"},
        // Code pages: only the number at the start of the second word counts.
        {"<codepage 932x extra words>", "932"}, {"<CODEPAGE -5>", "-5"},
        {"<CODEPAGE 99999999999999999999>", "2147483647"},
        {"<ACCEL \xC4>", "Unknown identifier '\xC4' in accelerator definition."}};
    // clang-format on
    for (const auto& [tag, meaning] : cases) EXPECT_EQ(meaningOf(tag), meaning) << tag;
    for (const char* tag : {"", "<", "<ACCEL A", "ACCEL A>", "<ACCEL A> "})
        EXPECT_EQ(meaningOf(tag), "no reason") << tag;

    const AcceleratorDefinition other{{LanguageTagType::Accelerator, true}, 0x82 | 0x10, 0x12AB, 40001};
    EXPECT_EQ(AcceleratorKeyName(other), "ACCEL_ALT_0xAB") << "only known flags and the low byte of the key count";
}

// The fingerprints were computed from the system's header and from the published table, not from the product's sources.

TEST(VirtualKeys, HaveTheSystemsCodes) {
    std::string list;
    for (const VirtualKeyName& key : virtualKeyNames()) {
        EXPECT_EQ(LookupVirtualKey(std::string(key.name)), key.code) << key.name;
        list.append(key.name).append(" ").append(std::to_string(key.code)).append("\n");
    }
    EXPECT_EQ(fingerprint(list), 0x988990AFB5BA1F58U);
    EXPECT_EQ(LookupVirtualKey("0"), 0x30);
    for (const char* word : {"", "@", "[", "`", "{", "/", ":", "\xE4", "vk_f5", "VK_F5 "})
        EXPECT_EQ(LookupVirtualKey(word), 0) << word;
}

TEST(Codepages, AreThePublishedPairsInOrder) {
    std::string list;
    for (const CodepagePair& pair : codepagePairs()) {
        EXPECT_TRUE(CodepageFitsLanguage(pair.codepage, pair.language));
        list += std::to_string(pair.codepage) + " " + std::to_string(pair.language) + "\n";
    }
    EXPECT_EQ(fingerprint(list), 0x13267247825F2380U);
    const std::pair<long, WORD> misfits[] = {{932, 1031}, {932, 7}, {1252, 0}, {-5, 1031}, {1252 + 65536L, 1031}};
    for (const auto& [codepage, language] : misfits)
        EXPECT_FALSE(CodepageFitsLanguage(codepage, language)) << codepage << " " << language;
}

} // namespace eq
