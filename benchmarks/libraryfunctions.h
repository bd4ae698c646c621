// SPDX-License-Identifier: MIT
// The library's functions that a poll or a write calls, as plain pointers into a loaded library.
#pragma once

#include "aglink/AGLink40.h"

namespace bench {

// clang-format off
#define BENCH_LIBRARY_FUNCTIONS(Function) \
  Function(CreateAccessByPath) Function(GetNodeByPath) Function(FreeHandle) \
  Function(GetArrayDimensionCount) Function(GetArrayDimension) \
  Function(GetAccessBufferSize) Function(GetAccessBufferElementSize) Function(GetAccessBufferElementCount) \
  Function(GetAccessStringSize) Function(GetAccessElementValueType) Function(GetAccessElementSystemType) \
  Function(ReadMixEx) Function(WriteMixEx) \
  Function(GetAccessBufferUInt8) Function(SetAccessBufferUInt8) \
  Function(GetAccessBufferUInt16) Function(SetAccessBufferUInt16) \
  Function(GetAccessBufferUInt32) Function(SetAccessBufferUInt32) \
  Function(GetAccessBufferUInt64) Function(SetAccessBufferUInt64) \
  Function(GetAccessBufferInt8) Function(SetAccessBufferInt8) \
  Function(GetAccessBufferInt16) Function(SetAccessBufferInt16) \
  Function(GetAccessBufferInt32) Function(SetAccessBufferInt32) \
  Function(GetAccessBufferInt64) Function(SetAccessBufferInt64) \
  Function(GetAccessBufferFloat32) Function(SetAccessBufferFloat32) \
  Function(GetAccessBufferFloat64) Function(SetAccessBufferFloat64) \
  Function(GetAccessBufferString8) Function(SetAccessBufferString8) \
  Function(GetAccessBufferString16) Function(SetAccessBufferString16)
// clang-format on

struct LibraryFunctions {
#define BENCH_POINTER(Name) decltype(&AGL_Symbolic_##Name) Name = nullptr;
  BENCH_LIBRARY_FUNCTIONS(BENCH_POINTER)
#undef BENCH_POINTER
};

}  // namespace bench
