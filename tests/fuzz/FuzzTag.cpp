// ParseLanguageTag on any bytes. A record that is written down again, by the words of the tag language, is the same.

#include "tests/fuzz/Require.h"
#include "wedge/LanguageTag.h"
#include "wedge/VirtualKeys.h"

#include <cstdint>

namespace {

std::string keyWord(WORD key) {
    for (const VirtualKeyName& name : virtualKeyNames()) {
        if (name.code == key) return " " + std::string(name.name);
    }
    return key == 0 ? "" : " " + std::string(1, static_cast<char>(key));
}

std::string written(const LanguageTag& tag) {
    if (const CodepageDefinition* codepage = asCodepage(tag)) {
        return "<CODEPAGE " + std::to_string(codepage->codepage) + ">";
    }
    const AcceleratorDefinition& accelerator = *asAccelerator(tag);
    std::string text = "<ACCEL";
    if (accelerator.fVirt & FVIRTKEY) text += " VIRTKEY";
    if (accelerator.fVirt & FSHIFT) text += " SHIFT";
    if (accelerator.fVirt & FCONTROL) text += " CONTROL";
    if (accelerator.fVirt & FALT) text += " ALT";
    return text + keyWord(accelerator.key) + ">";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string tag(reinterpret_cast<const char*>(data), size);
    std::string error;
    const LanguageTagPtr record = ParseLanguageTag(tag, error);
    if (!record) return 0;

    require(error.empty());
    const LanguageTagPtr again = ParseLanguageTag(written(*record), error);
    require(again && again->type == record->type && again->needs_value == record->needs_value);
    if (const AcceleratorDefinition* accelerator = asAccelerator(*record)) {
        require(AcceleratorKeyName(*accelerator) == AcceleratorKeyName(*asAccelerator(*again)));
    } else {
        require(asCodepage(*record)->codepage == asCodepage(*again)->codepage);
    }
    return 0;
}
