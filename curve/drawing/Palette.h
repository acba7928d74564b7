#pragma once

#include "engine/ParameterArray.h"

#include <array>

namespace eq {

struct Colour {
    double red;
    double green;
    double blue;
};

constexpr Colour colour(unsigned hex) noexcept {
    return {(hex >> 16 & 0xFF) / 255.0, (hex >> 8 & 0xFF) / 255.0, (hex & 0xFF) / 255.0};
}

namespace palette {

inline constexpr Colour Window = colour(0x24282D);
inline constexpr Colour Plot = colour(0x1A1D21);
inline constexpr Colour OctaveLine = colour(0x24292E);
inline constexpr Colour DecadeLine = colour(0x363C43);
inline constexpr Colour ZeroLine = colour(0x555D66);
inline constexpr Colour Card = colour(0x2D3238);
inline constexpr Colour CardHover = colour(0x383E45);
inline constexpr Colour Entry = colour(0x15181B);
inline constexpr Colour Selection = colour(0x3F5F86);
inline constexpr Colour Invalid = colour(0xE5604D);
inline constexpr Colour Text = colour(0xE6E9EC);
inline constexpr Colour Caption = colour(0x9AA3AC);
inline constexpr Colour OctaveLabel = colour(0x6F7780);
inline constexpr Colour Sum = colour(0xF4F6F7);
inline constexpr Colour Focus = colour(0xFFFFFF);
inline constexpr Colour Track = colour(0x15181B);
inline constexpr Colour TrackFill = colour(0x8F99A3);
inline constexpr Colour Badge = colour(0x1A1D21);

/// The colours of the bands. Each colour is also darker than the previous colour, so that users who see no hues can
/// distinguish the bands.
inline constexpr std::array<Colour, BandCount> Bands = {colour(0xF2CB6C), colour(0x62C7AE), colour(0x6C9FE8),
                                                        colour(0xCB6790)};

} // namespace palette

} // namespace eq
