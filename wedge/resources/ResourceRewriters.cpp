#include "wedge/resources/ResourceRewriters.h"

#include "wedge/CLanguageStore.h"
#include "wedge/LanguageTag.h"
#include "wedge/resources/ByteCursor.h"
#include "wedge/resources/ResourceFormats.h"
#include "wedge/resources/RewriteResult.h"
#include "wedge/string_ext.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace {

constexpr std::size_t LongestString = 0xFFFF;
constexpr std::uint16_t AddStringMessage = 0x143; // CB_ADDSTRING

constexpr unsigned NoInvertFlag = 0x02; // FNOINVERT

/// The bytes of a new resource.
class ByteWriter {
public:
    template <typename Number>
    void append(Number number) {
        m_bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    void append(std::span<const std::byte> bytes) {
        m_bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    void appendTerminated(const std::string& text) { m_bytes.append(text.c_str(), text.size() + 1); }

    PrepStatus finish(void** ppNewResource) const { return replacedBy(m_bytes.data(), m_bytes.size(), ppNewResource); }

private:
    std::string m_bytes;
};

void writeCountedString(ByteWriter& output, const std::wstring& text) {
    const std::size_t count = std::min(text.size(), LongestString);
    output.append(static_cast<std::uint16_t>(count));
    for (std::size_t i = 0; i < count; ++i) output.append(static_cast<std::uint16_t>(text[i]));
}

PrepStatus rewriteStrings(ByteCursor input, void** ppNewResource) {
    const UINT codepage = GetLanguageCodepage();
    std::array<std::wstring, StringsInBundle> strings;
    bool anyChanged = false;
    for (std::wstring& text : strings) {
        bool changed = false;
        const std::string expanded = ExpandLanguageKeys(convert_string(input.readCountedString(), codepage), &changed);
        text = convert_wstring(expanded, codepage);
        anyChanged = anyChanged || changed;
    }
    if (!anyChanged) return PrepUnchanged;
    ByteWriter output;
    for (const std::wstring& text : strings) writeCountedString(output, text);
    return output.finish(ppNewResource);
}

ACCELTABLEENTRY readEntry(ByteCursor& input) {
    ACCELTABLEENTRY entry;
    std::memcpy(&entry, input.readBytes(sizeof entry).data(), sizeof entry);
    return entry;
}

/// All entries through the one with the end mark. Throws if there is none.
std::vector<ACCELTABLEENTRY> readEntries(ByteCursor input) {
    std::vector<ACCELTABLEENTRY> entries;
    do {
        entries.push_back(readEntry(input));
    } while ((entries.back().fFlags & AccelTableEnd) == 0);
    return entries;
}

/// A look-up that fails costs this entry's translation alone.
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

PrepStatus rewriteAccelerators(ByteCursor input, void** ppNewResource) {
    std::vector<ACCELTABLEENTRY> entries = readEntries(input);
    bool anyChanged = false;
    for (ACCELTABLEENTRY& entry : entries) anyChanged = translate(entry) || anyChanged;
    if (!anyChanged) return PrepUnchanged;
    return replacedBy(entries.data(), entries.size() * sizeof entries[0], ppNewResource);
}

/// Returns the text up to its terminator or to the end of the data, whichever comes first.
std::string textIn(std::span<const std::byte> data) {
    const auto end = std::find(data.begin(), data.end(), std::byte{0});
    return {reinterpret_cast<const char*>(data.data()), static_cast<std::size_t>(end - data.begin())};
}

PrepStatus rewriteDialogInit(ByteCursor input, void** ppNewResource) {
    ByteWriter output;
    bool anyChanged = false;
    while (const std::uint16_t control = input.readWord()) {
        const std::uint16_t message = input.readWord();
        const std::uint32_t length = input.readDoubleWord();
        const std::span<const std::byte> data = input.readBytes(length);
        output.append(control);
        output.append(message);
        if (message == AddStringMessage) {
            bool changed = false;
            const std::string text = ExpandLanguageKeys(textIn(data), &changed);
            anyChanged = anyChanged || changed;
            output.append(static_cast<std::uint32_t>(text.size() + 1));
            output.appendTerminated(text);
        } else {
            output.append(length);
            output.append(data);
        }
    }
    if (!anyChanged) return PrepUnchanged;
    output.append(std::uint16_t{0});
    return output.finish(ppNewResource);
}

template <typename Rewriter>
PrepStatus rewrite(const Rewriter& rewriter, const void* pResource, std::size_t size, void** ppNewResource) noexcept {
    if (pResource == nullptr) return PrepNoInput;
    if (ppNewResource == nullptr) return PrepFailed;
    return guardedRewrite([&] { return rewriter(ByteCursor(pResource, size), ppNewResource); });
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
        table = readEntries(ByteCursor(entries, size));
    } catch (const prep_exception&) {
        return nullptr;
    }
    // Neither value initialization nor the assignment of a whole record sets the unused byte of an ACCEL.
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
