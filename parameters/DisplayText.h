#pragma once

#include "parameters/ParameterTable.h"

#include <cstddef>

/// Bytes of the longest display text and its terminator. Hosts and the editor give buffers of this size.
inline constexpr std::size_t DisplayCapacity = 28;

/// Writes a parameter's value and its unit word, such as "+3.5 dB", into `text`, which holds DisplayCapacity bytes.
///
/// The unit word comes from the language files, in the system's ANSI code page; without a translation its key shows.
/// A text that is too long is cut at the boundary of a character. The decimal separator is a point in every locale.
void writeDisplay(const Parameter& parameter, float p, char* text);
