// SPDX-License-Identifier: MIT
// The fake's functions for device, connection, symbol tree, nodes and jobs. elements.cpp has those for the
// elements of an access buffer.
#include <algorithm>
#include <cstring>

#include "tests/fake/elements.h"
#include "tests/fake/recording.h"

namespace fake {
namespace {

constexpr auto succeed = [](World&) { return AGL40_SUCCESS; };
constexpr auto kBadHandle = FakeLibrary::kBadHandle;

std::vector<unsigned char> copy_of(const void* memory, agl_long_t size) {
  if (memory == nullptr || !sane(size)) return {};
  const auto* bytes = static_cast<const unsigned char*>(memory);
  return {bytes, bytes + size};
}

agl_int32_t SetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len) {
  with_world([&](World& world) { world.parameters_set.push_back({DevNr, ParaType, copy_of(Para, Len)}); });
  return call("AGL_SetParas", succeed, DevNr, ParaType, Memory{Para}, Len);
}

agl_int32_t GetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len) {
  with_world([&](World& world) { world.parameters_got.push_back({DevNr, ParaType, copy_of(Para, Len)}); });
  const auto answer = [&](World& world) {
    const auto& bytes = world.owner.parameters_on_get;
    if (!bytes.empty() && sane(Len)) {
      std::memcpy(Para, bytes.data(), std::min(bytes.size(), static_cast<std::size_t>(Len)));
    }
    return AGL40_SUCCESS;
  };
  return call("AGL_GetParas", answer, DevNr, ParaType, Memory{Para}, Len);
}

agl_int32_t SetDevType(agl_int32_t DevNr, agl_int32_t DevType) {
  return call("AGL_SetDevType", succeed, DevNr, DevType);
}

agl_int32_t GetErrorMsg(agl_int32_t ErrorNr, agl_char8_t* Msg, agl_int32_t Len) {
  const auto answer = [&](World&) -> agl_int32_t {
    if (Len <= 0 || !sane(Len)) return FakeLibrary::kBadIndex;
    std::memset(Msg, '!', static_cast<std::size_t>(Len));
    Msg[Len - 1] = '\0';
    return AGL40_SUCCESS;
  };
  return call("AGL_GetErrorMsg", answer, ErrorNr, Memory{Msg}, Len);
}

agl_int32_t OpenDevice(agl_int32_t DevNr) {
  return call("AGL_OpenDevice", succeed, DevNr);
}
agl_int32_t CloseDevice(agl_int32_t DevNr) {
  return call("AGL_CloseDevice", succeed, DevNr);
}
agl_int32_t DialUp(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  return call("AGL_DialUp", succeed, DevNr, Timeout, UserVal);
}
agl_int32_t HangUp(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  return call("AGL_HangUp", succeed, DevNr, Timeout, UserVal);
}
agl_int32_t InitAdapter(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  return call("AGL_InitAdapter", succeed, DevNr, Timeout, UserVal);
}
agl_int32_t ExitAdapter(agl_int32_t DevNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  return call("AGL_ExitAdapter", succeed, DevNr, Timeout, UserVal);
}

agl_int32_t PLCConnectEx(agl_int32_t DevNr, agl_int32_t PlcNr, agl_int32_t RackNr, agl_int32_t SlotNr,
                         agl_int32_t* ConnNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  const auto answer = [&](World& world) {
    *ConnNr = world.owner.connection_number;
    return AGL40_SUCCESS;
  };
  return call("AGL_PLCConnectEx", answer, DevNr, PlcNr, RackNr, SlotNr, Out{ConnNr}, Timeout, UserVal);
}

agl_int32_t PLCDisconnect(agl_int32_t ConnNr, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  return call("AGL_PLCDisconnect", succeed, ConnNr, Timeout, UserVal);
}

agl_int32_t ReadMLFBNr(agl_int32_t ConnNr, void* MLFB, agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  static constexpr char kOrderNumber[] = "6ES7 000-0AA00-0AB0 ";
  static_assert(sizeof kOrderNumber == 21);
  with_world([&](World& world) { world.order_number_buffer = copy_of(MLFB, sizeof kOrderNumber); });
  const auto answer = [&](World&) {
    std::memcpy(MLFB, kOrderNumber, sizeof kOrderNumber);
    return AGL40_SUCCESS;
  };
  return call("AGL_ReadMLFBNr", answer, ConnNr, Memory{MLFB}, Timeout, UserVal);
}

agl_int32_t SetPassword(agl_int32_t ConnNr, const agl_char8_t* Password, agl_int32_t Timeout,
                        agl_ptrdiff_t UserVal) {
  return call("AGL_SetPassword", succeed, ConnNr, Text{Password}, Timeout, UserVal);
}

agl_int32_t LoadFromPLC(agl_int32_t ConnNr, HandleType* RootNodeHandle) {
  const auto answer = [&](World&) {
    *RootNodeHandle = FakeLibrary::kRoot;
    return AGL40_SUCCESS;
  };
  return call("AGL_Symbolic_LoadAGLinkSymbolsFromPLC", answer, ConnNr, Out{RootNodeHandle});
}

agl_int32_t SaveToFile(HandleType RootNodeHandle, const agl_char8_t* FileName) {
  const auto answer = [&](World&) -> agl_int32_t {
    return RootNodeHandle == FakeLibrary::kRoot ? AGL40_SUCCESS : kBadHandle;
  };
  return call("AGL_Symbolic_SaveAGLinkSymbolsToFile", answer, Handle{RootNodeHandle}, Text{FileName});
}

agl_int32_t LoadFromFile(const agl_char8_t* FileName, HandleType* RootNodeHandle) {
  const auto answer = [&](World& world) -> agl_int32_t {
    if (!world.owner.cache_file_loads) return FakeLibrary::kNoFile;
    *RootNodeHandle = FakeLibrary::kRoot;
    return AGL40_SUCCESS;
  };
  return call("AGL_Symbolic_LoadAGLinkSymbolsFromFile", answer, Text{FileName}, Out{RootNodeHandle});
}

agl_int32_t FreeHandle(HandleType handle) {
  const auto answer = [&](World& world) -> agl_int32_t {
    if (handle == FakeLibrary::kRoot) return AGL40_SUCCESS;
    if (handle == 0) ++world.zero_frees;
    const auto found = world.handles.find(handle);
    if (found == world.handles.end()) return kBadHandle;
    if (!found->second.live) {
      ++world.double_frees;
      return kBadHandle;
    }
    found->second.live = false;
    return AGL40_SUCCESS;
  };
  return call("AGL_Symbolic_FreeHandle", answer, Handle{handle});
}

agl_int32_t open_path(World& world, HandleType root, const agl_char8_t* path, bool is_access,
                      HandleType* handle, agl_int32_t* error_position) {
  if (root != FakeLibrary::kRoot) return kBadHandle;
  const Item* item = world.find(path);
  if (item == nullptr) {
    *error_position = world.owner.error_position;
    return FakeLibrary::kUnknownPath;
  }
  if (is_access && item->create_result != AGL40_SUCCESS) return item->create_result;
  *handle = world.open(path, is_access);
  return AGL40_SUCCESS;
}

agl_int32_t GetNodeByPath(HandleType RootNodeHandle, const agl_char8_t* Path, HandleType* NodeHandle,
                          agl_int32_t* ErrorPos) {
  const auto answer = [&](World& world) {
    return open_path(world, RootNodeHandle, Path, false, NodeHandle, ErrorPos);
  };
  return call("AGL_Symbolic_GetNodeByPath", answer, Handle{RootNodeHandle}, Text{Path}, Out{NodeHandle},
              Out{ErrorPos});
}

agl_int32_t CreateAccessByPath(HandleType RootNodeHandle, const agl_char8_t* Path, HandleType* AccessHandle,
                               agl_int32_t* ErrorPos) {
  const auto answer = [&](World& world) {
    return open_path(world, RootNodeHandle, Path, true, AccessHandle, ErrorPos);
  };
  return call("AGL_Symbolic_CreateAccessByPath", answer, Handle{RootNodeHandle}, Text{Path},
              Out{AccessHandle}, Out{ErrorPos});
}

// Calls a function that answers from the variable behind a handle.
template <class Answer, class... Arguments>
agl_int32_t ask(const char* function, HandleType handle, Answer answer, const Arguments&... arguments) {
  const auto from_variable = [&](World& world) -> agl_int32_t {
    const Item* item = world.variable(handle);
    return item == nullptr ? kBadHandle : answer(*item);
  };
  return call(function, from_variable, Handle{handle}, arguments...);
}

agl_int32_t GetArrayDimensionCount(HandleType NodeHandle, agl_int32_t* Count) {
  const auto answer = [&](const Item& item) {
    *Count = static_cast<agl_int32_t>(item.dimensions.size());
    return AGL40_SUCCESS;
  };
  return ask("AGL_Symbolic_GetArrayDimensionCount", NodeHandle, answer, Out{Count});
}

agl_int32_t GetArrayDimension(HandleType NodeHandle, agl_int32_t Dimension, agl_int32_t* Lower,
                              agl_int32_t* Upper) {
  const auto answer = [&](const Item& item) -> agl_int32_t {
    const auto position = static_cast<std::size_t>(Dimension);
    if (position >= item.dimensions.size()) return FakeLibrary::kBadIndex;
    *Lower = item.dimensions[position].lower;
    *Upper = item.dimensions[position].upper;
    return AGL40_SUCCESS;
  };
  return ask("AGL_Symbolic_GetArrayDimension", NodeHandle, answer, Dimension, Out{Lower}, Out{Upper});
}

agl_int32_t GetArrayIndexAsLinearIndex(HandleType NodeHandle, const agl_int32_t* Index,
                                       agl_int32_t IndexCount, agl_int32_t* LinearIndex) {
  const auto answer = [&](const Item& item) -> agl_int32_t {
    const agl_int32_t linear = item.linearIndex({Index, Index + IndexCount});
    if (linear < 0) return FakeLibrary::kBadIndex;
    *LinearIndex = linear;
    return AGL40_SUCCESS;
  };
  return ask("AGL_Symbolic_GetArrayIndexAsLinearIndex", NodeHandle, answer, Indices{Index, IndexCount},
             IndexCount, Out{LinearIndex});
}

agl_int32_t GetIndexSize(HandleType NodeHandle, agl_int32_t* Size) {
  const auto answer = [&](const Item& item) {
    *Size = static_cast<agl_int32_t>(item.indices.size());
    return AGL40_SUCCESS;
  };
  return ask("AGL_Symbolic_GetIndexSize", NodeHandle, answer, Out{Size});
}

agl_int32_t GetIndex(HandleType NodeHandle, agl_int32_t Position, agl_int32_t* Value) {
  const auto answer = [&](const Item& item) -> agl_int32_t {
    const auto position = static_cast<std::size_t>(Position);
    if (position >= item.indices.size()) return FakeLibrary::kBadIndex;
    *Value = item.indices[position];
    return AGL40_SUCCESS;
  };
  return ask("AGL_Symbolic_GetIndex", NodeHandle, answer, Position, Out{Value});
}

agl_int32_t GetAccessBufferSize(HandleType AccessHandle, agl_int32_t* Value) {
  const auto answer = [&](const Item& item) {
    if (item.buffer_size_result != AGL40_SUCCESS) return item.buffer_size_result;
    *Value = item.buffer_size;
    return AGL40_SUCCESS;
  };
  return ask("AGL_Symbolic_GetAccessBufferSize", AccessHandle, answer, Out{Value});
}

// The functions that answer with one field of the variable.
template <auto Field, class T>
agl_int32_t ask_field(const char* function, HandleType handle, T* value) {
  const auto answer = [&](const Item& item) {
    *value = item.*Field;
    return AGL40_SUCCESS;
  };
  return ask(function, handle, answer, Out{value});
}

agl_int32_t GetAccessBufferElementSize(HandleType AccessHandle, agl_int32_t* Value) {
  return ask_field<&Item::element_size>("AGL_Symbolic_GetAccessBufferElementSize", AccessHandle, Value);
}
agl_int32_t GetAccessBufferElementCount(HandleType AccessHandle, agl_int32_t* Value) {
  return ask_field<&Item::element_count>("AGL_Symbolic_GetAccessBufferElementCount", AccessHandle, Value);
}
agl_int32_t GetAccessStringSize(HandleType AccessHandle, agl_int32_t* Value) {
  return ask_field<&Item::string_size>("AGL_Symbolic_GetAccessStringSize", AccessHandle, Value);
}
agl_int32_t GetAccessElementSystemType(HandleType AccessHandle, SystemType_t::enum_t* Type) {
  return ask_field<&Item::system_type>("AGL_Symbolic_GetAccessElementSystemType", AccessHandle, Type);
}
agl_int32_t GetAccessElementValueType(HandleType AccessHandle, ValueType_t::enum_t* Type) {
  return ask_field<&Item::value_type>("AGL_Symbolic_GetAccessElementValueType", AccessHandle, Type);
}

FakeLibrary::Job job_of(World& world, agl_int32_t connection, const SymbolicRW_t* accesses, agl_int32_t count,
                        agl_int32_t timeout, agl_ptrdiff_t user_value) {
  FakeLibrary::Job job{connection, timeout, user_value, {}};
  for (agl_int32_t i = 0; i < count; ++i) {
    const SymbolicRW_t& rw = accesses[i];
    job.accesses.push_back({world.path_of(rw.AccessHandle), rw.AccessHandle, rw.Buffer, rw.BufferLen,
                            rw.Result, rw.SError, copy_of(rw.Buffer, rw.BufferLen)});
    if (const auto found = world.handles.find(rw.AccessHandle); found != world.handles.end()) {
      found->second.had_job = true;
      found->second.buffer = rw.Buffer;
    }
  }
  return job;
}

agl_int32_t run_job(World& world, SymbolicRW_t* accesses, agl_int32_t count, agl_int32_t* serror,
                    bool is_read) {
  for (agl_int32_t i = 0; i < count; ++i) {
    SymbolicRW_t& rw = accesses[i];
    const Item* item = world.variable(rw.AccessHandle);
    rw.Result = item == nullptr ? kBadHandle : item->job_result;
    rw.SError = item == nullptr ? 0 : item->job_serror;
    // Every byte that the driver offers is the library's to fill.
    if (is_read && rw.Buffer != nullptr && sane(rw.BufferLen)) {
      std::memset(rw.Buffer, 0xA5, static_cast<std::size_t>(rw.BufferLen));
    }
  }
  *serror = world.owner.job_serror;
  return AGL40_SUCCESS;
}

agl_int32_t ReadMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError,
                      agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  with_world([&](World& world) { world.reads.push_back(job_of(world, ConnNr, RW, Num, Timeout, UserVal)); });
  const agl_int32_t result = call(
      "AGL_Symbolic_ReadMixEx", [&](World& world) { return run_job(world, RW, Num, SError, true); }, ConnNr,
      Accesses{RW, Num}, Num, Out{SError}, Timeout, UserVal);
  with_world([&](World& world) { *SError = world.owner.job_serror; });
  return result;
}

agl_int32_t WriteMixEx(agl_int32_t ConnNr, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError,
                       agl_int32_t Timeout, agl_ptrdiff_t UserVal) {
  with_world([&](World& world) { world.writes.push_back(job_of(world, ConnNr, RW, Num, Timeout, UserVal)); });
  const agl_int32_t result = call(
      "AGL_Symbolic_WriteMixEx", [&](World& world) { return run_job(world, RW, Num, SError, false); }, ConnNr,
      Accesses{RW, Num}, Num, Out{SError}, Timeout, UserVal);
  with_world([&](World& world) { *SError = world.owner.job_serror; });
  return result;
}

}  // namespace

void install_functions() {
  install(pAGL_SetParas, SetParas);
  install(pAGL_GetParas, GetParas);
  install(pAGL_SetDevType, SetDevType);
  install(pAGL_GetErrorMsg, GetErrorMsg);
  install(pAGL_OpenDevice, OpenDevice);
  install(pAGL_CloseDevice, CloseDevice);
  install(pAGL_DialUp, DialUp);
  install(pAGL_HangUp, HangUp);
  install(pAGL_InitAdapter, InitAdapter);
  install(pAGL_ExitAdapter, ExitAdapter);
  install(pAGL_PLCConnectEx, PLCConnectEx);
  install(pAGL_PLCDisconnect, PLCDisconnect);
  install(pAGL_ReadMLFBNr, ReadMLFBNr);
  install(pAGL_SetPassword, SetPassword);
  install(pAGL_Symbolic_LoadAGLinkSymbolsFromPLC, LoadFromPLC);
  install(pAGL_Symbolic_SaveAGLinkSymbolsToFile, SaveToFile);
  install(pAGL_Symbolic_LoadAGLinkSymbolsFromFile, LoadFromFile);
  install(pAGL_Symbolic_FreeHandle, FreeHandle);
  install(pAGL_Symbolic_GetNodeByPath, GetNodeByPath);
  install(pAGL_Symbolic_CreateAccessByPath, CreateAccessByPath);
  install(pAGL_Symbolic_GetArrayDimensionCount, GetArrayDimensionCount);
  install(pAGL_Symbolic_GetArrayDimension, GetArrayDimension);
  install(pAGL_Symbolic_GetArrayIndexAsLinearIndex, GetArrayIndexAsLinearIndex);
  install(pAGL_Symbolic_GetIndexSize, GetIndexSize);
  install(pAGL_Symbolic_GetIndex, GetIndex);
  install(pAGL_Symbolic_GetAccessBufferSize, GetAccessBufferSize);
  install(pAGL_Symbolic_GetAccessBufferElementSize, GetAccessBufferElementSize);
  install(pAGL_Symbolic_GetAccessBufferElementCount, GetAccessBufferElementCount);
  install(pAGL_Symbolic_GetAccessStringSize, GetAccessStringSize);
  install(pAGL_Symbolic_GetAccessElementSystemType, GetAccessElementSystemType);
  install(pAGL_Symbolic_GetAccessElementValueType, GetAccessElementValueType);
  install(pAGL_Symbolic_ReadMixEx, ReadMixEx);
  install(pAGL_Symbolic_WriteMixEx, WriteMixEx);
  install_element_functions();
}

}  // namespace fake
