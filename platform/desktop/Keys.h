#pragma once

// Accelerator records, and the virtual-key codes that this project uses.

#include "platform/standin/Types.h"

inline constexpr int VK_F5 = 0x74;
inline constexpr int VK_F6 = 0x75;
inline constexpr int VK_F9 = 0x78;

inline constexpr BYTE FVIRTKEY = 0x01;
inline constexpr BYTE FSHIFT = 0x04;
inline constexpr BYTE FCONTROL = 0x08;
inline constexpr BYTE FALT = 0x10;

struct ACCEL {
    BYTE fVirt;
    WORD key;
    WORD cmd;
};
using LPACCEL = ACCEL*;
