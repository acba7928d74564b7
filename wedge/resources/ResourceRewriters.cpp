#include "wedge/resources/ResourceRewriters.h"

#include "support/BinaryReader.h"
#include "support/BinaryWriter.h"
#include "wedge/CLanguageStore.h"
#include "wedge/LanguageTag.h"
#include "wedge/resources/ResourceFormats.h"
#include "wedge/resources/RewriteResult.h"
#include "wedge/string_ext.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace eq {

namespace {

constexpr std::size_t LongestString = 0xFFFF;
constexpr std::uint16_t AddStringMessage = 0x143; // CB_ADDSTRING

constexpr unsigned NoInvertFlag = 0x02; // FNOINVERT

PrepStatus rewriteStrings(BinaryReader input, void** ppNewResource) {
    const UINT codepage = GetLanguageCodepage();
    std::array<std::wstring, StringsInBundle> strings;
    bool anyChanged = false;
    for (std::wstring& text : strings) {
        bool changed = false;
        const std::wstring original = input.readText(input.read<std::uint16_t>());
        text = convert_wstring(ExpandLanguageKeys(convert_string(original, codepage), &changed), codepage);
        anyChanged = anyChanged || changed;
    }
    if (!anyChanged) return PrepUnchanged;
    BinaryWriter output;
    for (std::wstring& text : strings) {
        text.resize(std::min(text.size(), LongestString));
        output.write(static_cast<std::uint16_t>(text.size()));
        output.writeText(text);
    }
    return replacedBy(output.written(), ppNewResource);
}

/// Returns the entries up to and including the entry with the end mark. Throws EndOfData if no entry has the mark.
std::vector<ACCELTABLEENTRY> readEntries(BinaryReader input) {
    std::vector<ACCELTABLEENTRY> entries;
    do {
        entries.push_back({.fFlags = input.read<std::uint16_t>(),
                           .wAnsi = input.read<std::uint16_t>(),
                           .wId = input.read<std::uint16_t>(),
                           .padding = input.read<std::uint16_t>()});
    } while ((entries.back().fFlags & AccelTableEnd) == 0);
    return entries;
}

/// Returns the translation of an entry. Returns an empty text if the look-up fails, so that the other entries are still
/// translated.
std::string translationOf(const ACCELTABLEENTRY& entry) {
    try {
        AcceleratorDefinition definition{};
        definition.type = LanguageTagType::Accelerator;
        definition.fVirt = static_cast<BYTE>(entry.fFlags);
        definition.key = entry.wAnsi;
        return GetLanguageString(AcceleratorKeyName(definition));
    } catch (const std::exception&) {
        return {};
    }
}

bool translate(ACCELTABLEENTRY& entry) {
    std::string error;
    const LanguageTagPtr tag = ParseLanguageTag(translationOf(entry), error);
    const AcceleratorDefinition* const accelerator = tag ? asAccelerator(*tag) : nullptr;
    if (accelerator == nullptr) return false;
    entry.fFlags = static_cast<std::uint16_t>(accelerator->fVirt | (entry.fFlags & (NoInvertFlag | AccelTableEnd)));
    entry.wAnsi = accelerator->key;
    return true;
}

PrepStatus rewriteAccelerators(BinaryReader input, void** ppNewResource) {
    BinaryWriter output;
    bool anyChanged = false;
    for (ACCELTABLEENTRY& entry : readEntries(input)) {
        anyChanged = translate(entry) || anyChanged;
        for (const std::uint16_t field : {entry.fFlags, entry.wAnsi, entry.wId, entry.padding}) output.write(field);
    }
    return anyChanged ? replacedBy(output.written(), ppNewResource) : PrepUnchanged;
}

PrepStatus rewriteDialogInit(BinaryReader input, void** ppNewResource) {
    BinaryWriter output;
    bool anyChanged = false;
    while (const auto control = input.read<std::uint16_t>()) {
        const auto message = input.read<std::uint16_t>();
        std::string data(input.readBytes(input.read<std::uint32_t>()));
        if (message == AddStringMessage) {
            bool changed = false;
            // The text ends at its terminator or at the end of the data.
            data = ExpandLanguageKeys(data.substr(0, data.find('\0')), &changed) + '\0';
            anyChanged = anyChanged || changed;
        }
        output.write(control);
        output.write(message);
        output.write(static_cast<std::uint32_t>(data.size()));
        output.writeBytes(data);
    }
    output.write(std::uint16_t{0});
    return anyChanged ? replacedBy(output.written(), ppNewResource) : PrepUnchanged;
}

template <typename Rewriter>
PrepStatus rewrite(const Rewriter& rewriter, const void* pResource, std::size_t size, void** ppNewResource) noexcept {
    if (pResource == nullptr) return PrepNoInput;
    if (ppNewResource == nullptr) return PrepFailed;
    return guardedRewrite([&] { return rewriter(BinaryReader(pResource, size), ppNewResource); });
}

} // namespace

PrepStatus PrepareStringResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept {
    return rewrite(rewriteStrings, pResource, size, ppNewResource);
}

PrepStatus PrepareStringResource(const void* pResource, void** ppNewResource) noexcept {
    return PrepareStringResource(pResource, TemplateRange, ppNewResource);
}

PrepStatus PrepareAcceleratorResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept {
    return rewrite(rewriteAccelerators, pResource, size, ppNewResource);
}

PrepStatus PrepareAcceleratorResource(const void* pResource, void** ppNewResource) noexcept {
    return PrepareAcceleratorResource(pResource, TemplateRange, ppNewResource);
}

PrepStatus PrepareDialogInitResource(const void* pResource, std::size_t size, void** ppNewResource) noexcept {
    return rewrite(rewriteDialogInit, pResource, size, ppNewResource);
}

PrepStatus PrepareDialogInitResource(const void* pResource, void** ppNewResource) noexcept {
    return PrepareDialogInitResource(pResource, TemplateRange, ppNewResource);
}

std::unique_ptr<ACCEL[]> ToAccelArray(const void* entries, std::size_t size, std::uint32_t* count) {
    if (entries == nullptr) return nullptr;
    std::vector<ACCELTABLEENTRY> table;
    try {
        table = readEntries(BinaryReader(entries, size));
    } catch (const EndOfData&) {
        return nullptr;
    }
    // Neither value initialization nor the assignment of a whole record sets the padding byte of an ACCEL.
    auto array = std::make_unique_for_overwrite<ACCEL[]>(table.size());
    std::memset(array.get(), 0, table.size() * sizeof(ACCEL));
    ACCEL* accelerator = array.get();
    for (const ACCELTABLEENTRY& entry : table) {
        accelerator->fVirt = static_cast<BYTE>(entry.fFlags & 0x7FU);
        accelerator->key = entry.wAnsi;
        accelerator->cmd = entry.wId;
        ++accelerator;
    }
    if (count != nullptr) *count = static_cast<std::uint32_t>(table.size());
    return array;
}

} // namespace eq
