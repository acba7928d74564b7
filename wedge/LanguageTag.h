#pragma once

#include "platform/win32.h"

#include <cstdint>
#include <memory>
#include <string>

// The small language between '<' and '>' in a language file: accelerator definitions and code page definitions.

namespace eq {

enum class LanguageTagType : std::int32_t { Accelerator = 1, Codepage = 2 };

/// The common head of the records. They have no virtual operations; `type` tells which record it is.
struct LanguageTag {
    LanguageTagType type;
    /// A '=' and a value must follow the tag on its line.
    bool needs_value;
};

/// A key with its modifiers: the head, and then the fields of the system's ACCEL record.
struct AcceleratorDefinition : LanguageTag {
    BYTE fVirt;
    WORD key;
    WORD cmd;
};

struct CodepageDefinition : LanguageTag {
    std::int32_t codepage;
};

/// Deletes a record as the type that it is.
struct LanguageTagDeleter {
    void operator()(LanguageTag* tag) const noexcept;
};

using LanguageTagPtr = std::unique_ptr<LanguageTag, LanguageTagDeleter>;

/// The record of a tag, with its angle brackets, or null. A refusal with a reason puts that into `error`; any other
/// leaves `error` as it is. Case does not matter in a tag.
[[nodiscard]] LanguageTagPtr ParseLanguageTag(const std::string& tag, std::string& error);

/// The record as what it is, or null if it is something else.
[[nodiscard]] const AcceleratorDefinition* asAccelerator(const LanguageTag& tag) noexcept;
[[nodiscard]] const CodepageDefinition* asCodepage(const LanguageTag& tag) noexcept;

/// The key under which the store keeps the replacement of an accelerator, such as "ACCEL_VIRTKEY_CONTROL_0x74".
[[nodiscard]] std::string AcceleratorKeyName(const AcceleratorDefinition& definition);

} // namespace eq
