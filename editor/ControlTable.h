#pragma once

#include "parameters/ParameterTable.h"

#include <array>
#include <cstddef>

namespace eq {

/// The resource id of the editor's dialog.
inline constexpr unsigned EditorDialogId = 101;
/// The size of the dialog in dialog units.
inline constexpr int EditorDialogWidth = 318;
inline constexpr int EditorDialogHeight = 247;

inline constexpr std::size_t ControlSlotCount = ParameterCount;

// A slot is a slider and its read-out. The slot's number is the index into these tables.
inline constexpr std::array<int, ControlSlotCount> sliderIds = {
    1012,                   // volume
    1014, 1016, 1018, 1023, // frequencies of the bands 1 to 4
    1020, 1022, 1029, 1033, // gains
    1044, 1046, 1048, 1050, // Q
};
inline constexpr std::array<int, ControlSlotCount> readoutIds = {
    1013,                   // volume
    1015, 1017, 1019, 1024, // frequencies
    1021, 1025, 1030, 1034, // gains
    1045, 1047, 1049, 1051, // Q
};
inline constexpr std::array<int, ControlSlotCount> parameterOfSlot = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

// Ids of buttons that a dialog may lack.
inline constexpr int RestoreConstructionButton = 1004;
inline constexpr int RestoreOpeningButton = 1005;
inline constexpr int CloseParentButton = 1006;

} // namespace eq
