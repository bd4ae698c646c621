// SPDX-License-Identifier: MIT
// What the filters tell the runtime in their frames and records.
#pragma once

#include "driver/hostrecords.h"

// FRAME_DATA::byCurSysStatus, always.
inline constexpr BYTE kFrameStatus = 8;

// INPUT_DATA::byErrCode
inline constexpr BYTE kOk = 0;         // values delivered
inline constexpr BYTE kNoData = 2;     // loading, not delivered, or the connection is lost
inline constexpr BYTE kAskAgain = 13;  // not connected yet, or steps are left

// INPUT_DATA::byCurSysStatus that goes with kOk and kAskAgain.
inline constexpr BYTE kInputStatus = 5;

// Nothing to send and no error: every frame of the filters.
inline FRAME_DATA empty_frame() {
  FRAME_DATA frame{};
  frame.byCurSysStatus = kFrameStatus;
  return frame;
}
