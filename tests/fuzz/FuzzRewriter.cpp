// Calls one of the rewriters with any bytes. A result must be a valid resource. There must be no result if the bytes
// have nothing to replace. The texts come from the language file in the program's folder.

#include "tests/fuzz/Require.h"
#include "tests/support/Rewritten.h"
#include "wedge/CLanguageStore.h"
#include "wedge/resources/DialogReader.h"
#include "wedge/resources/MenuReader.h"
#include "wedge/resources/ResourceRewriters.h"

#include <sanitizer/allocator_interface.h>

namespace eq {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Without the language file, a rewriter would never replace a text.
    static const bool has_texts = GetLanguageString("T_Short") == "S";
    require(has_texts);

    const std::string_view resource(reinterpret_cast<const char*>(data), size);
    const Rewritten first = rewriteWith(EQ_REWRITER, resource);
    if (first.status != PrepReplaced) return 0;
    constexpr std::string_view replaced_from = EQ_REPLACED_FROM;
    require(resource.find_first_of(replaced_from) != resource.npos);
    const auto* const made = reinterpret_cast<const char*>(first.block.get());
    require(rewriteWith(EQ_REWRITER, {made, __sanitizer_get_allocated_size(made)}).status != PrepFailed);
    return 0;
}

} // namespace eq
