#pragma once

#include "platform/win32.h"

#include <cstdint>
#include <memory>
#include <string>

// The tags between '<' and '>' in a language file: definitions of accelerators and of code pages.

namespace eq {

enum class LanguageTagType : std::int32_t { Accelerator = 1, Codepage = 2 };

/// The base of the tag records. `type` identifies the type of the record, because the records have no virtual
/// functions.
struct LanguageTag {
    LanguageTagType type;
    /// True if '=' and a value must follow the tag on its line.
    bool needs_value;
};

/// A key with its modifiers. The fields after the base are the fields of the system's ACCEL record.
struct AcceleratorDefinition : LanguageTag {
    BYTE fVirt;
    WORD key;
    WORD cmd;
};

struct CodepageDefinition : LanguageTag {
    std::int32_t codepage;
};

/// Deletes a record as an object of its own type.
struct LanguageTagDeleter {
    void operator()(LanguageTag* tag) const noexcept;
};

using LanguageTagPtr = std::unique_ptr<LanguageTag, LanguageTagDeleter>;

/// Returns the record of a tag, or null if the tag is invalid. `tag` includes its angle brackets. `error` receives the
/// reason, except for a tag without both brackets or without a word: `error` then stays unchanged. ASCII case does not
/// matter.
[[nodiscard]] LanguageTagPtr ParseLanguageTag(const std::string& tag, std::string& error);

/// Both functions return the record as the type in their name, or null if the record has another type.
[[nodiscard]] const AcceleratorDefinition* asAccelerator(const LanguageTag& tag) noexcept;
[[nodiscard]] const CodepageDefinition* asCodepage(const LanguageTag& tag) noexcept;

/// Returns the key under which the store has the replacement of an accelerator, such as "ACCEL_VIRTKEY_CONTROL_0x74".
[[nodiscard]] std::string AcceleratorKeyName(const AcceleratorDefinition& definition);

} // namespace eq
