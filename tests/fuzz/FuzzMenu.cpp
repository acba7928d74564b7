// PrepareMenuResource on any bytes.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/MenuReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    rewriteTwice(PrepareMenuResource, resource, hasBrace(resource), [&](auto, const std::byte* block) {
        const bool isExtended = wordAt(block, 0) == 1;
        return isExtended ? outputSize<MenuReaderExtended>(resource) : outputSize<MenuReaderStandard>(resource);
    });
    return 0;
}
