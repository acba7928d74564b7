// PrepareStringResource on any bytes.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/ResourceFormats.h"
#include "wedge/ResourceRewriters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    rewriteTwice(PrepareStringResource, resource, hasBrace(resource), [](auto, const std::byte* block) {
        std::size_t size = 0;
        for (int i = 0; i < StringsInBundle; ++i) size += 2 + 2 * std::size_t{wordAt(block, size)};
        return size;
    });
    return 0;
}
