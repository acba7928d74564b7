// PrepareDialogInitResource on any bytes.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/ResourceRewriters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    rewriteTwice(PrepareDialogInitResource, resource, hasBrace(resource), [](auto, const std::byte* block) {
        std::size_t size = 0;
        while (wordAt(block, size) != 0)
            size += 8 + (wordAt(block, size + 4) | std::size_t{wordAt(block, size + 6)} << 16U);
        return size + 2;
    });
    return 0;
}
