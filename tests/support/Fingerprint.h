#pragma once

#include <cstdint>
#include <string_view>

namespace eq {

/// Returns the 64-bit FNV-1a hash (Fowler, Noll, Vo) of a text. A test compares the hash of a table to detect any
/// change in the table.
constexpr std::uint64_t fingerprint(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

} // namespace eq
