// SPDX-License-Identifier: MIT
// Every function of the library that the driver calls, with a guard in front of the fake's.
#include "aglink/AGLink40.h"
#include "tests/failures/injection.h"

namespace injection {
namespace {

Refusal refusal = Refusal::DoesNothing;

template <auto* Slot, class Result, class... Arguments>
struct Guard {
  static inline Result (*fake)(Arguments...) = nullptr;
  static inline const char* function = nullptr;

  static Result call(Arguments... arguments) {
    const bool refused = fails(Kind::Library, function);
    const OtherSide library;
    if (refused && refusal == Refusal::DoesNothing) return Result{kRefused};
    const Result result = fake(arguments...);
    return refused ? Result{kRefused} : result;
  }
};

template <auto* Slot, class Result, class... Arguments>
void guard(const char* function, Result (**)(Arguments...)) {
  using Own = Guard<Slot, Result, Arguments...>;
  Own::fake = *Slot;
  Own::function = function;
  *Slot = Own::call;
}

}  // namespace

void let_calls_fail_by(Refusal how) {
  refusal = how;
}

void guard_library() {
#define GUARD(Name) guard<&p##Name>(#Name, &p##Name)
#define GUARD_VALUE(Kind)                    \
  GUARD(AGL_Symbolic_GetAccessBuffer##Kind); \
  GUARD(AGL_Symbolic_SetAccessBuffer##Kind)
  GUARD(AGL_SetParas);
  GUARD(AGL_GetParas);
  GUARD(AGL_SetDevType);
  GUARD(AGL_GetErrorMsg);
  GUARD(AGL_OpenDevice);
  GUARD(AGL_CloseDevice);
  GUARD(AGL_DialUp);
  GUARD(AGL_HangUp);
  GUARD(AGL_InitAdapter);
  GUARD(AGL_ExitAdapter);
  GUARD(AGL_PLCConnectEx);
  GUARD(AGL_PLCDisconnect);
  GUARD(AGL_ReadMLFBNr);
  GUARD(AGL_SetPassword);
  GUARD(AGL_Symbolic_LoadAGLinkSymbolsFromPLC);
  GUARD(AGL_Symbolic_SaveAGLinkSymbolsToFile);
  GUARD(AGL_Symbolic_LoadAGLinkSymbolsFromFile);
  GUARD(AGL_Symbolic_FreeHandle);
  GUARD(AGL_Symbolic_GetNodeByPath);
  GUARD(AGL_Symbolic_CreateAccessByPath);
  GUARD(AGL_Symbolic_GetArrayDimensionCount);
  GUARD(AGL_Symbolic_GetArrayDimension);
  GUARD(AGL_Symbolic_GetArrayIndexAsLinearIndex);
  GUARD(AGL_Symbolic_GetIndexSize);
  GUARD(AGL_Symbolic_GetIndex);
  GUARD(AGL_Symbolic_GetAccessBufferSize);
  GUARD(AGL_Symbolic_GetAccessBufferElementSize);
  GUARD(AGL_Symbolic_GetAccessBufferElementCount);
  GUARD(AGL_Symbolic_GetAccessStringSize);
  GUARD(AGL_Symbolic_GetAccessElementSystemType);
  GUARD(AGL_Symbolic_GetAccessElementValueType);
  GUARD(AGL_Symbolic_ReadMixEx);
  GUARD(AGL_Symbolic_WriteMixEx);
  GUARD_VALUE(UInt8);
  GUARD_VALUE(UInt16);
  GUARD_VALUE(UInt32);
  GUARD_VALUE(UInt64);
  GUARD_VALUE(Int8);
  GUARD_VALUE(Int16);
  GUARD_VALUE(Int32);
  GUARD_VALUE(Int64);
  GUARD_VALUE(Float32);
  GUARD_VALUE(Float64);
  GUARD_VALUE(Char8);
  GUARD_VALUE(Char16);
  GUARD_VALUE(String8);
  GUARD_VALUE(String16);
  GUARD_VALUE(S7_Counter);
  GUARD_VALUE(S7_S5TimeMs);
  GUARD_VALUE(S7_DTLParts);
  GUARD_VALUE(S7_Date_and_TimeParts);
#undef GUARD_VALUE
#undef GUARD
}

}  // namespace injection
