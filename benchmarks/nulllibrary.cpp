// SPDX-License-Identifier: MIT
// A communication library that answers at once: every function that the driver calls stores a fixed answer
// and returns. What a program with it costs is the driver's own. It calls nobody, so that its instructions
// are those of its own object file. Of several elements the n-th holds (n + 1) modulo 128.
//
// Built with BENCH_RECORDING it writes down its calls as well (recording.h).
#include "aglink/AGLink40.h"
#include "benchmarks/shapes.h"

#ifdef BENCH_RECORDING
#include "benchmarks/recording.h"
#define NOTE(...) bench::record(__func__, __VA_ARGS__)
#else
namespace {
template <class... Arguments>
void nothing(const Arguments&...) {}
}  // namespace
#define NOTE(...) nothing(__VA_ARGS__)
#endif

namespace {

using bench::Shape;
using bench::shape_of;
using bench::Value;

struct Held {
  ValueType_t::enum_t type;
  agl_int32_t bytes;  // of one element in the access buffer
};

constexpr Held kHeld[] = {
    {ValueType_t::vt_UNDEFINED, 0}, {ValueType_t::vt_UINT8, 1},     {ValueType_t::vt_UINT8, 1},
    {ValueType_t::vt_UINT16, 2},    {ValueType_t::vt_UINT32, 4},    {ValueType_t::vt_UINT64, 8},
    {ValueType_t::vt_INT8, 1},      {ValueType_t::vt_INT16, 2},     {ValueType_t::vt_INT32, 4},
    {ValueType_t::vt_INT64, 8},     {ValueType_t::vt_FLOAT32, 4},   {ValueType_t::vt_FLOAT64, 8},
    {ValueType_t::vt_STRING8, 256}, {ValueType_t::vt_STRING16, 512}};

constexpr const Held& held(const Shape& shape) {
  return kHeld[static_cast<int>(shape.value)];
}

constexpr HandleType kRoot = 1;

template <class T>
T value_of(agl_int32_t element) {
  return static_cast<T>((element + 1) & 0x7F);
}

// By hand: the library calls nobody.
template <class Character>
agl_int32_t put_text(Character* text, agl_int32_t room) {
  const agl_int32_t count = room - 1 < bench::kStringCharacters ? room - 1 : bench::kStringCharacters;
  for (agl_int32_t i = 0; i < count; ++i) text[i] = static_cast<Character>('a' + (i & 15));
  text[count] = 0;
  return count;
}

agl_int32_t answer(agl_int32_t* value, agl_int32_t what) {
  *value = what;
  return AGL40_SUCCESS;
}

}  // namespace

extern "C" {

// Connecting: nothing to do. PLCConnectEx leaves the connection number as it is.
// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are types and declarations
#define OSTRAVEL_NOTHING_TO_DO(Name, Parameters) \
  agl_int32_t Name Parameters {                  \
    NOTE("");                                    \
    return AGL40_SUCCESS;                        \
  }

OSTRAVEL_NOTHING_TO_DO(AGL_SetParas, (agl_int32_t, agl_int32_t, void*, agl_int32_t))
OSTRAVEL_NOTHING_TO_DO(AGL_GetParas, (agl_int32_t, agl_int32_t, void*, agl_int32_t))
OSTRAVEL_NOTHING_TO_DO(AGL_SetDevType, (agl_int32_t, agl_int32_t))
OSTRAVEL_NOTHING_TO_DO(AGL_GetErrorMsg, (agl_int32_t, agl_char8_t*, agl_int32_t))
OSTRAVEL_NOTHING_TO_DO(AGL_OpenDevice, (agl_int32_t))
OSTRAVEL_NOTHING_TO_DO(AGL_CloseDevice, (agl_int32_t))
OSTRAVEL_NOTHING_TO_DO(AGL_DialUp, (agl_int32_t, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_HangUp, (agl_int32_t, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_InitAdapter, (agl_int32_t, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_ExitAdapter, (agl_int32_t, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_PLCConnectEx, (agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t*,
                                          agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_PLCDisconnect, (agl_int32_t, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_ReadMLFBNr, (agl_int32_t, void*, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_SetPassword, (agl_int32_t, const agl_char8_t*, agl_int32_t, agl_ptrdiff_t))
OSTRAVEL_NOTHING_TO_DO(AGL_Symbolic_SaveAGLinkSymbolsToFile, (HandleType, const agl_char8_t*))
#undef OSTRAVEL_NOTHING_TO_DO

agl_int32_t AGL_Symbolic_LoadAGLinkSymbolsFromFile(const agl_char8_t*, HandleType* RootNodeHandle) {
  NOTE("");
  *RootNodeHandle = kRoot;
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_LoadAGLinkSymbolsFromPLC(agl_int32_t, HandleType* RootNodeHandle) {
  NOTE("");
  *RootNodeHandle = kRoot;
  return AGL40_SUCCESS;
}

// Nodes and accesses.
agl_int32_t AGL_Symbolic_CreateAccessByPath(HandleType Root, const agl_char8_t* Path,
                                            HandleType* AccessHandle, agl_int32_t*) {
  NOTE(Path, Root);
  *AccessHandle = bench::handle_of(shape_of(Path));
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_GetNodeByPath(HandleType Root, const agl_char8_t* Path, HandleType* NodeHandle,
                                       agl_int32_t*) {
  NOTE(Path, Root);
  *NodeHandle = bench::handle_of(shape_of(Path));
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_FreeHandle(HandleType Handle) {
  NOTE("", Handle);
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_GetArrayDimensionCount(HandleType NodeHandle, agl_int32_t* Count) {
  NOTE("", NodeHandle);
  return answer(Count, shape_of(NodeHandle).array ? 1 : 0);
}
agl_int32_t AGL_Symbolic_GetArrayDimension(HandleType NodeHandle, agl_int32_t Dimension, agl_int32_t* Lower,
                                           agl_int32_t* Upper) {
  NOTE("", NodeHandle, Dimension);
  const Shape shape = shape_of(NodeHandle);
  *Lower = shape.lower;
  *Upper = shape.lower + shape.count - 1;
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_GetAccessBufferSize(HandleType AccessHandle, agl_int32_t* Value) {
  NOTE("", AccessHandle);
  const Shape shape = shape_of(AccessHandle);
  return answer(Value, held(shape).bytes * shape.count);
}
agl_int32_t AGL_Symbolic_GetAccessBufferElementSize(HandleType AccessHandle, agl_int32_t* Value) {
  NOTE("", AccessHandle);
  return answer(Value, held(shape_of(AccessHandle)).bytes);
}
agl_int32_t AGL_Symbolic_GetAccessBufferElementCount(HandleType AccessHandle, agl_int32_t* Value) {
  NOTE("", AccessHandle);
  return answer(Value, shape_of(AccessHandle).count);
}
agl_int32_t AGL_Symbolic_GetAccessStringSize(HandleType AccessHandle, agl_int32_t* Value) {
  NOTE("", AccessHandle);
  return answer(Value, bench::kStringCharacters);
}
agl_int32_t AGL_Symbolic_GetAccessElementValueType(HandleType AccessHandle, ValueType_t::enum_t* Type) {
  NOTE("", AccessHandle);
  *Type = held(shape_of(AccessHandle)).type;
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_GetAccessElementSystemType(HandleType AccessHandle, SystemType_t::enum_t* Type) {
  NOTE("", AccessHandle);
  *Type =
      shape_of(AccessHandle).value == Value::Bool ? SystemType_t::st_S7_Bool : SystemType_t::st_S7_UNKNOWN;
  return AGL40_SUCCESS;
}

// Jobs.
agl_int32_t AGL_Symbolic_ReadMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError,
                                   agl_int32_t Timeout, agl_ptrdiff_t) {
  NOTE("", ConnNr, Num, Timeout);
  for (agl_int32_t i = 0; i < Num; ++i) {
    NOTE("job", RW[i].AccessHandle, RW[i].BufferLen);
    RW[i].Result = AGL40_SUCCESS;
    RW[i].SError = 0;
  }
  return answer(SError, 0);
}
agl_int32_t AGL_Symbolic_WriteMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num,
                                    agl_int32_t* SError, agl_int32_t Timeout, agl_ptrdiff_t) {
  NOTE("", ConnNr, Num, Timeout);
  for (agl_int32_t i = 0; i < Num; ++i) {
    NOTE("job", RW[i].AccessHandle, RW[i].BufferLen);
    RW[i].Result = AGL40_SUCCESS;
    RW[i].SError = 0;
  }
  return answer(SError, 0);
}

// Values. A Boolean is 1 whatever its place: the driver delivers the first one for all.
agl_int32_t AGL_Symbolic_GetAccessBufferUInt8(HandleType AccessHandle, const void*, agl_int32_t BufferLen,
                                              agl_int32_t Element, agl_uint8_t* Value) {
  NOTE("", AccessHandle, BufferLen, Element);
  const bool boolean = shape_of(AccessHandle).value == bench::Value::Bool;
  *Value = boolean ? 1 : value_of<agl_uint8_t>(Element);
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_SetAccessBufferUInt8(HandleType AccessHandle, void*, agl_int32_t BufferLen,
                                              agl_int32_t Element, agl_uint8_t Value) {
  NOTE("", AccessHandle, BufferLen, Element, Value);
  return AGL40_SUCCESS;
}

#define OSTRAVEL_VALUE(Name, Type)                                                                          \
  agl_int32_t AGL_Symbolic_GetAccessBuffer##Name(HandleType AccessHandle, const void*,                      \
                                                 agl_int32_t BufferLen, agl_int32_t Element, Type* Value) { \
    NOTE("", AccessHandle, BufferLen, Element);                                                             \
    *Value = value_of<Type>(Element);                                                                       \
    return AGL40_SUCCESS;                                                                                   \
  }                                                                                                         \
  agl_int32_t AGL_Symbolic_SetAccessBuffer##Name(HandleType AccessHandle, void*, agl_int32_t BufferLen,     \
                                                 agl_int32_t Element, Type Value) {                         \
    NOTE("", AccessHandle, BufferLen, Element, static_cast<std::int64_t>(Value));                           \
    return AGL40_SUCCESS;                                                                                   \
  }
OSTRAVEL_VALUE(UInt16, agl_uint16_t)
OSTRAVEL_VALUE(UInt32, agl_uint32_t)
OSTRAVEL_VALUE(UInt64, agl_uint64_t)
OSTRAVEL_VALUE(Int8, agl_int8_t)
OSTRAVEL_VALUE(Int16, agl_int16_t)
OSTRAVEL_VALUE(Int32, agl_int32_t)
OSTRAVEL_VALUE(Int64, agl_int64_t)
OSTRAVEL_VALUE(Float32, agl_float32_t)
OSTRAVEL_VALUE(Float64, agl_float64_t)
#undef OSTRAVEL_VALUE
// NOLINTEND(bugprone-macro-parentheses)

agl_int32_t AGL_Symbolic_GetAccessBufferString8(HandleType AccessHandle, const void*, agl_int32_t BufferLen,
                                                agl_int32_t Element, agl_char8_t* Text,
                                                agl_int32_t MaxCharCount, agl_int32_t* CharCount) {
  NOTE("", AccessHandle, BufferLen, Element, MaxCharCount);
  return answer(CharCount, put_text(Text, MaxCharCount));
}
agl_int32_t AGL_Symbolic_SetAccessBufferString8(HandleType AccessHandle, void*, agl_int32_t BufferLen,
                                                agl_int32_t Element, [[maybe_unused]] const agl_char8_t* Text,
                                                agl_int32_t CharCount) {
  NOTE("", AccessHandle, BufferLen, Element, CharCount);
  return AGL40_SUCCESS;
}
agl_int32_t AGL_Symbolic_GetAccessBufferString16(HandleType AccessHandle, const void*, agl_int32_t BufferLen,
                                                 agl_int32_t Element, agl_char16_t* Text,
                                                 agl_int32_t MaxCharCount, agl_int32_t* CharCount) {
  NOTE("", AccessHandle, BufferLen, Element, MaxCharCount);
  return answer(CharCount, put_text(Text, MaxCharCount));
}
agl_int32_t AGL_Symbolic_SetAccessBufferString16(HandleType AccessHandle, void*, agl_int32_t BufferLen,
                                                 agl_int32_t Element,
                                                 [[maybe_unused]] const agl_char16_t* Text,
                                                 agl_int32_t CharCount) {
  NOTE("", AccessHandle, BufferLen, Element, CharCount);
  return AGL40_SUCCESS;
}

}  // extern "C"
