// PrepareAcceleratorResource and ToAccelArray on any bytes: the same entries in either, through the first end mark.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/ResourceRewriters.h"

namespace {

/// 0 without an end mark.
std::size_t countEntries(Bytes table) {
    for (std::size_t i = 0; 8 * i + 8 <= table.size(); ++i) {
        if ((table[8 * i] & 0x80U) != 0) return i + 1;
    }
    return 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    const std::size_t count = countEntries(resource);
    std::uint32_t arrayCount = 0;
    const auto table = exactCopy(data, size);
    const auto array = ToAccelArray(table.get(), size, &arrayCount);
    require((array != nullptr) == (count != 0) && arrayCount == count);

    rewriteTwice(PrepareAcceleratorResource, resource, count != 0, [count](const std::byte* before, std::byte* after) {
        // Commands, and the marks that are no part of the key, stay.
        for (std::size_t at = 0; at < 8 * count; at += 8)
            require(((wordAt(before, at) ^ wordAt(after, at)) & 0x82U) == 0 &&
                    wordAt(before, at + 4) == wordAt(after, at + 4));
        return 8 * count;
    });
    return 0;
}
