#pragma once

#include <array>
#include <cstddef>

/// The dialog of the editor, and what its controls belong to.
inline constexpr unsigned EditorDialogId = 101;
/// Its size in dialog units.
inline constexpr int EditorDialogWidth = 318;
inline constexpr int EditorDialogHeight = 247;

inline constexpr std::size_t SlotCount = 13;

/// A slider and its read-out.
struct SlotControls {
    int slider;
    int readout;
    int parameter;
};

inline constexpr std::array<SlotControls, SlotCount> Slots = {{
    {1012, 1013, 0},  // volume
    {1014, 1015, 1},  // frequency of band 1
    {1016, 1017, 2},  // of band 2
    {1018, 1019, 3},  // of band 3
    {1023, 1024, 4},  // of band 4
    {1020, 1021, 5},  // gain of band 1
    {1022, 1025, 6},  // of band 2
    {1029, 1030, 7},  // of band 3
    {1033, 1034, 8},  // of band 4
    {1044, 1045, 9},  // Q of band 1
    {1046, 1047, 10}, // of band 2
    {1048, 1049, 11}, // of band 3
    {1050, 1051, 12}, // of band 4
}};

// Buttons that a dialog may have.
inline constexpr int RestoreConstructionButton = 1004;
inline constexpr int RestoreOpeningButton = 1005;
inline constexpr int CloseParentButton = 1006;
