#pragma once

namespace eq {

/// The size of a new editor, and the least size in which all parts fit, in pixels at a scale factor of 1.
inline constexpr int DefaultEditorWidth = 900;
inline constexpr int DefaultEditorHeight = 500;
inline constexpr int LeastEditorWidth = 480;
inline constexpr int LeastEditorHeight = 300;

} // namespace eq
