// PrepareDialogResource on any bytes.

#include "tests/fuzz/FuzzRewriting.h"
#include "wedge/DialogReader.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace {

bool namesShellFont(Bytes resource) {
    constexpr std::string_view name("m\0s\0 \0s\0h\0e\0l\0l\0 \0d\0l\0g\0\0\0", 26);
    const auto equalLetters = [](std::uint8_t x, char y) { return std::tolower(x) == y; };
    return std::search(resource.begin(), resource.end(), name.begin(), name.end(), equalLetters) != resource.end();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes resource(data, size);
    const bool canChange = hasBrace(resource) || namesShellFont(resource);
    rewriteTwice(PrepareDialogResource, resource, canChange, [&](const std::byte* input, auto) {
        const bool isExtended = wordAt(input, 2) == 0xFFFF;
        return isExtended ? outputSize<DialogReaderExtended>(resource) : outputSize<DialogReaderStandard>(resource);
    });
    return 0;
}
