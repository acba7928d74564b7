// PrepareDialogInitResource on any bytes.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/ResourceRewriters.h"

namespace {

std::size_t sizeOfRecords(const ExactCopy&, const std::byte* block) {
    std::size_t size = 0;
    while (wordAt(block, size) != 0) {
        size += 8 + (wordAt(block, size + 4) | std::size_t{wordAt(block, size + 6)} << 16U);
    }
    return size + 2;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    rewriteTwice(PrepareDialogInitResource, resource, hasBrace(resource), sizeOfRecords);
    return 0;
}
