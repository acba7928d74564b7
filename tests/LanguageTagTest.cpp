#include "wedge/LanguageTag.h"
#include "tests/support/Fingerprint.h"
#include "wedge/Codepages.h"
#include "wedge/VirtualKeys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace {

constexpr BYTE Virtkey = 0x01;
constexpr BYTE Shift = 0x04;
constexpr BYTE Control = 0x08;
constexpr BYTE Alt = 0x10;

LanguageTagPtr parse(const std::string& tag) {
    std::string error;
    LanguageTagPtr record = ParseLanguageTag(tag, error);
    EXPECT_EQ(error, "") << tag;
    return record;
}

} // namespace

TEST(LanguageTag, ReadsAcceleratorsInAnyCaseAndOrder) {
    struct Case {
        const char* tag;
        BYTE flags;
        WORD key;
        const char* name;
    };
    const Case cases[] = {
        {"<ACCEL VIRTKEY CONTROL VK_F5>", Virtkey | Control, 0x74, "ACCEL_VIRTKEY_CONTROL_0x74"},
        {"<accelerator\tvirtkey \t control shift vk_f5>", Virtkey | Control | Shift, 0x74,
         "ACCEL_VIRTKEY_CONTROL_SHIFT_0x74"},
        {"<ACCEL VK_F5 SHIFT ALT CONTROL VIRTKEY>", Virtkey | Control | Alt | Shift, 0x74,
         "ACCEL_VIRTKEY_CONTROL_ALT_SHIFT_0x74"},
        {"<ACCEL a>", 0, 0x41, "ACCEL_0x41"},
        {"< ACCEL Z >", 0, 0x5A, "ACCEL_0x5A"},
        {"<ACCEL>", 0, 0, "ACCEL_0x00"},
        {"<ACCELERATOR VK_F1 VK_F2>", 0, 0x71, "ACCEL_0x71"},
        {"<ACCEL SHIFT SHIFT A>", Shift, 0x41, "ACCEL_SHIFT_0x41"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.tag);
        const LanguageTagPtr record = parse(row.tag);
        ASSERT_TRUE(record);
        EXPECT_TRUE(record->needs_value);
        EXPECT_EQ(asCodepage(*record), nullptr);
        const AcceleratorDefinition* accelerator = asAccelerator(*record);
        ASSERT_TRUE(accelerator);
        EXPECT_EQ(static_cast<int>(accelerator->type), 1);
        EXPECT_EQ(accelerator->fVirt, row.flags);
        EXPECT_EQ(accelerator->key, row.key);
        EXPECT_EQ(accelerator->cmd, 0);
        EXPECT_EQ(AcceleratorKeyName(*accelerator), row.name);
    }
}

TEST(LanguageTag, NamesAnAcceleratorByItsKnownFlagsAndTheLowByteOfItsKey) {
    const AcceleratorDefinition definition{{LanguageTagType::Accelerator, true}, 0x82 | Alt, 0x12AB, 40001};
    EXPECT_EQ(AcceleratorKeyName(definition), "ACCEL_ALT_0xAB");
}

TEST(LanguageTag, ReadsCodePagesByTheirLeadingNumber) {
    const std::pair<const char*, std::int32_t> cases[] = {
        {"<codepage 932>", 932}, {"<CODEPAGE 1252 extra words>", 1252},           {"<CODEPAGE 1252x>", 1252},
        {"<CODEPAGE -5>", -5},   {"<CODEPAGE 99999999999999999999>", 0x7FFFFFFF},
    };
    for (const auto& [tag, codepage] : cases) {
        SCOPED_TRACE(tag);
        const LanguageTagPtr record = parse(tag);
        ASSERT_TRUE(record);
        EXPECT_FALSE(record->needs_value);
        EXPECT_EQ(asAccelerator(*record), nullptr);
        ASSERT_TRUE(asCodepage(*record));
        EXPECT_EQ(static_cast<int>(record->type), 2);
        EXPECT_EQ(asCodepage(*record)->codepage, codepage);
    }
}

TEST(LanguageTag, RefusesWithTheReason) {
    const std::pair<const char*, const char*> cases[] = {
        {"<FOO>", "Tag type 'FOO' is unknown."},
        {"<accel vk_a>", "Unknown identifier 'VK_A' in accelerator definition."},
        {"<ACCEL SHIFT \xC4>", "Unknown identifier '\xC4' in accelerator definition."},
        {"<ACCEL A VK_F25 ALT>", "Unknown identifier 'VK_F25' in accelerator definition."},
        {"<CODEPAGE>", "Codepage number expected in codepage definition."},
        {"<CODEPAGE abc>", "First argument in codepage definition is expected to be an integer codepage number."},
        {"<CODEPAGE 0>", "First argument in codepage definition is expected to be an integer codepage number."},
    };
    for (const auto& [tag, reason] : cases) {
        std::string error;
        EXPECT_FALSE(ParseLanguageTag(tag, error)) << tag;
        EXPECT_EQ(error, reason) << tag;
    }
    for (const char* tag : {"", "<", ">", "<>", "<  \t >", "ACCEL A", "<ACCEL A", "ACCEL A>", "<ACCEL A> "}) {
        std::string error = "as it was";
        EXPECT_FALSE(ParseLanguageTag(tag, error)) << tag;
        EXPECT_EQ(error, "as it was") << "there is no reason to give for " << tag;
    }
}

// The fingerprints are of lists made from the system's own header and from the published table, not from the sources.

TEST(VirtualKeys, HaveTheSystemsCodes) {
    std::string list;
    for (const VirtualKeyName& key : virtualKeyNames()) {
        EXPECT_EQ(LookupVirtualKey(std::string(key.name)), key.code) << key.name;
        list.append(key.name).append(" ").append(std::to_string(key.code)).append("\n");
    }
    EXPECT_EQ(virtualKeyNames().size(), 102U);
    EXPECT_EQ(fingerprint(list), 0x988990AFB5BA1F58U);
}

TEST(VirtualKeys, KnowLettersAndDigitsAndNothingElse) {
    EXPECT_EQ(LookupVirtualKey("a"), 0x41);
    EXPECT_EQ(LookupVirtualKey("0"), 0x30);
    for (const char* word : {"", "@", "[", "`", "{", "/", ":", "\xE4", "vk_f5", "VK_F5 "})
        EXPECT_EQ(LookupVirtualKey(word), 0) << word;
}

TEST(Codepages, AreThePublishedPairsInOrder) {
    const auto pairs = codepagePairs();
    std::string list;
    for (const CodepagePair& pair : pairs) {
        EXPECT_TRUE(CodepageFitsLanguage(pair.codepage, pair.language));
        list += std::to_string(pair.codepage) + " " + std::to_string(pair.language) + "\n";
    }
    EXPECT_EQ(pairs.size(), 391U);
    EXPECT_TRUE(std::ranges::is_sorted(pairs));
    EXPECT_EQ(fingerprint(list), 0x13267247825F2380U);
}

TEST(Codepages, FitOnlyLanguagesOfTheTable) {
    const std::pair<long, WORD> misfits[] = {
        {932, 1031}, {932, 7}, {932, 0}, {1252, 0}, {-5, 1031}, {65001, 1031}, {1252 + 65536L, 1031}};
    for (const auto& [codepage, language] : misfits)
        EXPECT_FALSE(CodepageFitsLanguage(codepage, language)) << codepage << " " << language;
}
