#pragma once

#include <cstdint>
#include <string_view>

namespace eq {

/// The 64-bit FNV-1a hash of a text (Fowler, Noll, Vo): any change of a table shows in it.
constexpr std::uint64_t fingerprint(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

} // namespace eq
