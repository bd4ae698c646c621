// SPDX-License-Identifier: MIT
#include "fuzzing/support/library.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "fuzzing/support/demand.h"

namespace fuzz {
namespace {

using V = ValueType_t;
using S = SystemType_t;

constexpr std::array kKinds = {
    Kind{"Bool", V::vt_UINT8, S::st_S7_Bool, 1},
    Kind{"USInt", V::vt_UINT8, S::st_S7_USInt, 1},
    Kind{"UInt", V::vt_UINT16, S::st_S7_UInt, 2},
    Kind{"UDInt", V::vt_UINT32, S::st_S7_UDInt, 4},
    Kind{"ULInt", V::vt_UINT64, S::st_S7_ULInt, 8},
    Kind{"SInt", V::vt_INT8, S::st_S7_SInt, 1},
    Kind{"Int", V::vt_INT16, S::st_S7_Int, 2},
    Kind{"DInt", V::vt_INT32, S::st_S7_DInt, 4},
    Kind{"LInt", V::vt_INT64, S::st_S7_LInt, 8},
    Kind{"Char", V::vt_CHAR8, S::st_S7_Char, 1},
    Kind{"WChar", V::vt_CHAR16, S::st_S7_WChar, 2},
    Kind{"String", V::vt_STRING8, S::st_S7_String, 22},
    Kind{"WString", V::vt_STRING16, S::st_S7_WString, 44},
    Kind{"Wide", V::vt_STRING16, S::st_S7_WString, 512},  // 254 characters: the host's wide string
    Kind{"Real", V::vt_FLOAT32, S::st_S7_Real, 4},
    Kind{"LReal", V::vt_FLOAT64, S::st_S7_LReal, 8},
    Kind{"Counter", V::vt_SYSTEM_SPECIFIC, S::st_S7_Counter, 2},
    Kind{"S5Time", V::vt_SYSTEM_SPECIFIC, S::st_S7_S5Time, 2},
    Kind{"DateTime", V::vt_SYSTEM_SPECIFIC, S::st_S7_Date_And_Time, 8},
    Kind{"Dtl", V::vt_SYSTEM_SPECIFIC, S::st_S7_DTL, 12},
};

constexpr std::array<agl_int32_t, 32> kOddNumbers = {-1,
                                                     0,
                                                     1,
                                                     2,
                                                     3,
                                                     4,
                                                     7,
                                                     8,
                                                     10,
                                                     11,
                                                     12,
                                                     13,
                                                     14,
                                                     15,
                                                     16,
                                                     17,
                                                     22,
                                                     31,
                                                     99,
                                                     254,
                                                     255,
                                                     256,
                                                     510,
                                                     2048,
                                                     4096,
                                                     32767,
                                                     65535,
                                                     65536,
                                                     1 << 20,
                                                     1 << 30,
                                                     std::numeric_limits<agl_int32_t>::max(),
                                                     std::numeric_limits<agl_int32_t>::min()};

Library library;

template <class T>
void bind(T& pointer, std::type_identity_t<T> function) {
  pointer = function;
}

// What is answered by a result alone.
template <class... Arguments>
agl_int32_t accept(Arguments...) {
  agl_int32_t ignored = 0;
  return tell(library, 0, &ignored);
}

agl_int32_t SetParas(agl_int32_t, agl_int32_t, void* Para, agl_int32_t Len) {
  read_memory(Para, Len);
  return accept();
}
agl_int32_t GetParas(agl_int32_t, agl_int32_t, void* Para, agl_int32_t Len) {
  const agl_int32_t result = accept();
  if (result == AGL40_SUCCESS) fill_memory(Para, Len, library.pattern());
  return result;
}
agl_int32_t GetErrorMsg(agl_int32_t, agl_char8_t* Msg, agl_int32_t Len) {
  fill_memory(Msg, Len, library.pattern());
  return accept();
}
agl_int32_t PLCConnectEx(agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t* ConnNr, agl_int32_t,
                         agl_ptrdiff_t) {
  return tell(library, 7, ConnNr);
}
agl_int32_t ReadMLFBNr(agl_int32_t, void* MLFB, agl_int32_t, agl_ptrdiff_t) {
  fill_memory(MLFB, 21, library.pattern());
  return accept();
}
agl_int32_t SetPassword(agl_int32_t, const agl_char8_t* Password, agl_int32_t, agl_ptrdiff_t) {
  read_memory(Password, static_cast<std::int64_t>(std::strlen(Password)) + 1);
  return accept();
}

agl_int32_t tell_root(bool loads, HandleType* root) {
  if (!loads) return kUnknown;
  return tell(library, kRoot, root);
}
agl_int32_t LoadFromPLC(agl_int32_t, HandleType* RootNodeHandle) {
  return tell_root(library.plc_loads, RootNodeHandle);
}
agl_int32_t LoadFromFile(const agl_char8_t* FileName, HandleType* RootNodeHandle) {
  read_memory(FileName, static_cast<std::int64_t>(std::strlen(FileName)) + 1);
  return tell_root(library.file_loads, RootNodeHandle);
}
agl_int32_t SaveToFile(HandleType, const agl_char8_t* FileName) {
  read_memory(FileName, static_cast<std::int64_t>(std::strlen(FileName)) + 1);
  return accept();
}
agl_int32_t FreeHandle(HandleType) {
  return accept();
}

agl_int32_t open_path(HandleType root, const agl_char8_t* path, HandleType* handle,
                      agl_int32_t* error_position) {
  const HandleType honest = root == kRoot ? library.open(path) : 0;
  *error_position = honest == 0 ? 1 : 0;
  HandleType told = *handle;
  const agl_int32_t result = tell(library, honest, &told);
  if (result != AGL40_SUCCESS || told != 0) *handle = told;
  return result == AGL40_SUCCESS && told == 0 ? kUnknown : result;
}

template <class T, class Property>
agl_int32_t tell_of(HandleType handle, T* out, Property property) {
  const Library::Opened* const variable = library.opened(handle);
  if (variable != nullptr) return tell(library, property(*variable), out);
  const Library::Answer answer = library.next();
  if (answer == Library::Answer::Odd || answer == Library::Answer::FailAndOdd) {
    *out = static_cast<T>(library.odd_number());
  }
  return answer == Library::Answer::Odd ? AGL40_SUCCESS : kUnknown;
}

agl_int32_t elements_of(const Library::Opened& variable) {
  return variable.form == 0 ? 1 : kElements;
}

agl_int32_t GetArrayDimensionCount(HandleType NodeHandle, agl_int32_t* Count) {
  return tell_of(NodeHandle, Count, [](const Library::Opened& variable) {
    return variable.form == 0 ? 0 : variable.form == 'M' ? 2 : 1;
  });
}
agl_int32_t GetArrayDimension(HandleType NodeHandle, agl_int32_t Dimension, agl_int32_t* Lower,
                              agl_int32_t* Upper) {
  const auto lower = [](const Library::Opened& variable) {
    return variable.form == 'N' ? -2 : variable.form == 'P' ? 3 : variable.form == 'M' ? 1 : 0;
  };
  const auto upper = [&](const Library::Opened& variable) {
    return lower(variable) + (variable.form == 'M' ? (Dimension == 0 ? 1 : 2) : kElements - 1);
  };
  const agl_int32_t result = tell_of(NodeHandle, Lower, lower);
  return result != AGL40_SUCCESS ? result : tell_of(NodeHandle, Upper, upper);
}
agl_int32_t GetArrayIndexAsLinearIndex(HandleType NodeHandle, const agl_int32_t* Index,
                                       agl_int32_t IndexCount, agl_int32_t* LinearIndex) {
  read_memory(Index, std::int64_t{IndexCount} * static_cast<std::int64_t>(sizeof *Index));
  return tell_of(NodeHandle, LinearIndex, [](const Library::Opened&) { return 1; });
}

agl_int32_t GetAccessBufferSize(HandleType AccessHandle, agl_int32_t* Value) {
  const agl_int32_t result = tell_of(AccessHandle, Value, [](const Library::Opened& variable) {
    return elements_of(variable) * variable.kind->size;
  });
  if (*Value > 0) library.said.bytes += *Value;
  return result;
}
agl_int32_t GetAccessBufferElementSize(HandleType AccessHandle, agl_int32_t* Value) {
  return tell_of(AccessHandle, Value, [](const Library::Opened& variable) { return variable.kind->size; });
}
agl_int32_t GetAccessBufferElementCount(HandleType AccessHandle, agl_int32_t* Value) {
  return tell_of(AccessHandle, Value, elements_of);
}
agl_int32_t GetAccessStringSize(HandleType AccessHandle, agl_int32_t* Value) {
  const agl_int32_t result = tell_of(AccessHandle, Value, [](const Library::Opened& variable) {
    return variable.kind->value_type == V::vt_STRING8 ? variable.kind->size - 2 : variable.kind->size / 2 - 2;
  });
  library.said.string_result = result;
  library.said.string_size = *Value;
  // The driver takes two units of two bytes a character.
  if (*Value > 0) library.said.bytes += std::int64_t{4} * *Value;
  return result;
}
agl_int32_t GetAccessElementSystemType(HandleType AccessHandle, S::enum_t* Type) {
  agl_int32_t type = *Type;
  const agl_int32_t result = tell_of(AccessHandle, &type, [](const Library::Opened& variable) {
    return agl_int32_t{variable.kind->system_type};
  });
  std::memcpy(Type, &type, sizeof type);
  library.said.system_result = result;
  library.said.system_type = type;
  return result;
}
agl_int32_t GetAccessElementValueType(HandleType AccessHandle, V::enum_t* Type) {
  agl_int32_t type = *Type;
  const agl_int32_t result = tell_of(AccessHandle, &type, [](const Library::Opened& variable) {
    return agl_int32_t{variable.kind->value_type};
  });
  std::memcpy(Type, &type, sizeof type);
  library.said.value_type = type;
  if (!std::exchange(library.said.any_value_type, true)) library.said.first_value_type = type;
  return result;
}

agl_int32_t run_job(SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError, bool read) {
  *SError = 0;
  if (!library.jobs_succeed) return kUnknown;
  for (agl_int32_t i = 0; i < Num; ++i) {
    SymbolicRW_t& rw = RW[i];
    if (rw.Buffer == nullptr) FUZZ_DEMAND(rw.BufferLen < 0);
    if (read) {
      fill_memory(rw.Buffer, rw.BufferLen, library.pattern());
    } else {
      read_memory(rw.Buffer, rw.BufferLen);
    }
    agl_int32_t ignored = 0;
    const agl_int32_t honest = library.opened(rw.AccessHandle) == nullptr ? kUnknown : AGL40_SUCCESS;
    rw.Result = honest != AGL40_SUCCESS ? tell_of(rw.AccessHandle, &ignored, [](const auto&) { return 0; })
                                        : tell(library, 0, &ignored);
    rw.SError = rw.Result == AGL40_SUCCESS ? ignored : 0;
  }
  return tell(library, 0, SError);
}
agl_int32_t ReadMixEx(agl_int32_t, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError, agl_int32_t,
                      agl_ptrdiff_t) {
  return run_job(RW, Num, SError, true);
}
agl_int32_t WriteMixEx(agl_int32_t, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError, agl_int32_t,
                       agl_ptrdiff_t) {
  return run_job(RW, Num, SError, false);
}

void install_functions() {
  // The forwarding functions want an open library; one without any of their names leaves every pointer null.
  FUZZ_DEMAND(LoadDllByPath("libm.so.6") == 1);
  bind(pAGL_SetParas, SetParas);
  bind(pAGL_GetParas, GetParas);
  bind(pAGL_SetDevType, accept);
  bind(pAGL_GetErrorMsg, GetErrorMsg);
  bind(pAGL_OpenDevice, accept);
  bind(pAGL_CloseDevice, accept);
  bind(pAGL_DialUp, accept);
  bind(pAGL_HangUp, accept);
  bind(pAGL_InitAdapter, accept);
  bind(pAGL_ExitAdapter, accept);
  bind(pAGL_PLCConnectEx, PLCConnectEx);
  bind(pAGL_PLCDisconnect, accept);
  bind(pAGL_ReadMLFBNr, ReadMLFBNr);
  bind(pAGL_SetPassword, SetPassword);
  bind(pAGL_Symbolic_LoadAGLinkSymbolsFromPLC, LoadFromPLC);
  bind(pAGL_Symbolic_SaveAGLinkSymbolsToFile, SaveToFile);
  bind(pAGL_Symbolic_LoadAGLinkSymbolsFromFile, LoadFromFile);
  bind(pAGL_Symbolic_FreeHandle, FreeHandle);
  bind(pAGL_Symbolic_GetNodeByPath, open_path);
  bind(pAGL_Symbolic_CreateAccessByPath, open_path);
  bind(pAGL_Symbolic_GetArrayDimensionCount, GetArrayDimensionCount);
  bind(pAGL_Symbolic_GetArrayDimension, GetArrayDimension);
  bind(pAGL_Symbolic_GetArrayIndexAsLinearIndex, GetArrayIndexAsLinearIndex);
  bind(pAGL_Symbolic_GetIndexSize, GetArrayDimensionCount);
  bind(pAGL_Symbolic_GetIndex, [](HandleType node, agl_int32_t, agl_int32_t* value) {
    return tell_of(node, value, [](const Library::Opened&) { return 1; });
  });
  bind(pAGL_Symbolic_GetAccessBufferSize, GetAccessBufferSize);
  bind(pAGL_Symbolic_GetAccessBufferElementSize, GetAccessBufferElementSize);
  bind(pAGL_Symbolic_GetAccessBufferElementCount, GetAccessBufferElementCount);
  bind(pAGL_Symbolic_GetAccessStringSize, GetAccessStringSize);
  bind(pAGL_Symbolic_GetAccessElementSystemType, GetAccessElementSystemType);
  bind(pAGL_Symbolic_GetAccessElementValueType, GetAccessElementValueType);
  bind(pAGL_Symbolic_ReadMixEx, ReadMixEx);
  bind(pAGL_Symbolic_WriteMixEx, WriteMixEx);
  install_element_functions();
}

}  // namespace

std::span<const Kind> kinds() {
  return kKinds;
}

Library& Library::installed() {
  static const bool once = (install_functions(), true);
  (void)once;
  return library;
}

void Library::begin(Input* lies) {
  lies_ = lies;
  opened_.clear();
  pattern_ = 0;
  said = {};
  file_loads = false;
  plc_loads = true;
  jobs_succeed = true;
}

Library::Answer Library::next() {
  if (lies_ == nullptr || lies_->empty()) return Answer::Honest;
  choice_ = lies_->byte();
  // Mostly honest, so that a session gets somewhere.
  return choice_ < 0x80 ? Answer::Honest : static_cast<Answer>(1 + (choice_ >> 5) % 3);
}

agl_int32_t Library::odd_number() {
  const std::size_t which = choice_ % kOddNumbers.size();
  // Numbers that the table lacks come from the lies themselves.
  return which == 2 ? lies_->number<agl_int32_t>() : kOddNumbers[which];
}

HandleType Library::open(std::string_view path) {
  const Kind* found = nullptr;
  for (const Kind& kind : kKinds) {
    if (path.starts_with(kind.name) && (found == nullptr || kind.name.size() > found->name.size()))
      found = &kind;
  }
  if (found == nullptr) return 0;
  const std::size_t end = found->name.size();
  const char form = end < path.size() && path.back() != ']' ? path[end] : char{0};
  opened_.push_back({found, form == 'A' || form == 'N' || form == 'P' || form == 'M' ? form : char{0}});
  return static_cast<HandleType>(opened_.size());
}

const Library::Opened* Library::opened(HandleType handle) const {
  const auto position = static_cast<std::size_t>(handle - 1);
  return handle > 0 && position < opened_.size() ? &opened_[position] : nullptr;
}

namespace {

// Of larger memory only the ends are looked at.
constexpr std::int64_t kLookedAt = 4096;
volatile unsigned char sink = 0;

}  // namespace

void read_memory(const void* memory, std::int64_t size) {
  if (memory == nullptr || size <= 0) return;
  const auto* bytes = static_cast<const unsigned char*>(memory);
  for (std::int64_t i = 0; i < std::min(size, kLookedAt); ++i) sink = bytes[i];
  sink = bytes[size - 1];
}

void fill_memory(void* memory, std::int64_t size, std::uint64_t pattern) {
  if (memory == nullptr || size <= 0) return;
  auto* bytes = static_cast<unsigned char*>(memory);
  const int value = static_cast<int>(pattern >> 56);
  std::memset(bytes, value, static_cast<std::size_t>(std::min(size, kLookedAt)));
  bytes[size - 1] = static_cast<unsigned char>(value);
}

}  // namespace fuzz
