// PrepareMenuResource on any bytes.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/MenuReader.h"

namespace {

std::size_t sizeOfMenu(const ExactCopy& resource, const std::byte* block) {
    return wordAt(block, 0) == 1 ? outputSize<MenuReaderExtended>(resource) : outputSize<MenuReaderStandard>(resource);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    rewriteTwice(PrepareMenuResource, resource, hasBrace(resource), sizeOfMenu);
    return 0;
}
