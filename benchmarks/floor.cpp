// SPDX-License-Identifier: MIT
#include "benchmarks/floor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <type_traits>

namespace bench::least {

namespace {

constexpr int kMostTags = 31;
constexpr agl_int32_t kReadTimeout = 5000;
constexpr agl_int32_t kWriteTimeout = 1;
constexpr agl_int32_t kWideRoom = 2 * (kStringCharacters + 1);

// The getters differ in the type of the value that the last argument points at, and in nothing else that a
// call sees.
using Getter = agl_int32_t (*)(HandleType, const void*, agl_int32_t, agl_int32_t, void*);

template <class T>
Getter untyped(T getter) {
  return reinterpret_cast<Getter>(getter);
}

Getter getter_of(const LibraryFunctions& library, Value value) {
  switch (value) {
    case Value::Bool:
    case Value::UInt8:
      return untyped(library.GetAccessBufferUInt8);
    case Value::UInt16:
      return untyped(library.GetAccessBufferUInt16);
    case Value::UInt32:
      return untyped(library.GetAccessBufferUInt32);
    case Value::UInt64:
      return untyped(library.GetAccessBufferUInt64);
    case Value::Int8:
      return untyped(library.GetAccessBufferInt8);
    case Value::Int16:
      return untyped(library.GetAccessBufferInt16);
    case Value::Int32:
      return untyped(library.GetAccessBufferInt32);
    case Value::Int64:
      return untyped(library.GetAccessBufferInt64);
    case Value::Float32:
      return untyped(library.GetAccessBufferFloat32);
    case Value::Float64:
      return untyped(library.GetAccessBufferFloat64);
    default:
      return nullptr;
  }
}

void read_string(const LibraryFunctions& library, const Tag& tag, const SymbolicRW_t& rw, WORD* words) {
  agl_int32_t size = 0;
  library.GetAccessStringSize(rw.AccessHandle, &size);
  const auto length = static_cast<agl_int32_t>(rw.BufferLen);
  agl_int32_t count = 0;
  if (tag.value == Value::String8) {
    char text[kStringCharacters + 1];
    library.GetAccessBufferString8(rw.AccessHandle, rw.Buffer, length, 0, text, size + 1, &count);
    for (agl_int32_t i = 0; i < count; ++i) words[i] = static_cast<unsigned char>(text[i]);
  } else {
    agl_char16_t text[kWideRoom];
    library.GetAccessBufferString16(rw.AccessHandle, rw.Buffer, length, 0, text, 2 * (size + 1), &count);
    std::memcpy(words, text, static_cast<std::size_t>(count) * sizeof text[0]);
  }
}

void read_elements(const LibraryFunctions& library, const Tag& tag, const SymbolicRW_t& rw,
                   agl_int32_t elements, WORD* words) {
  const auto length = static_cast<agl_int32_t>(rw.BufferLen);
  const Getter get = getter_of(library, tag.value);
  auto* to = reinterpret_cast<unsigned char*>(words);
  for (agl_int32_t i = 0; i < elements; ++i, to += tag.word_bytes) {
    ValueType_t::enum_t type = ValueType_t::vt_UNDEFINED;
    library.GetAccessElementValueType(rw.AccessHandle, &type);
    get(rw.AccessHandle, rw.Buffer, length, i, to);
  }
}

void open_access(const LibraryFunctions& library, const Tag& tag, SymbolicRW_t& rw) {
  agl_int32_t position = 0;
  agl_int32_t size = 0;
  library.CreateAccessByPath(kRoot, tag.path, &rw.AccessHandle, &position);
  library.GetAccessBufferSize(rw.AccessHandle, &size);
  rw.Buffer = tag.buffer;
  rw.BufferLen = size;
}

void take_values(const LibraryFunctions& library, const Tag& tag, const SymbolicRW_t& rw, WORD* words) {
  agl_int32_t elements = 0;
  library.GetAccessBufferElementCount(rw.AccessHandle, &elements);
  if (tag.value == Value::String8 || tag.value == Value::String16) {
    ValueType_t::enum_t type = ValueType_t::vt_UNDEFINED;
    library.GetAccessElementValueType(rw.AccessHandle, &type);
    read_string(library, tag, rw, words);
  } else {
    read_elements(library, tag, rw, elements, words);
  }
  agl_int32_t size = 0;
  agl_int32_t position = 0;
  agl_int32_t dimensions = 0;
  HandleType node = 0;
  library.GetAccessBufferElementSize(rw.AccessHandle, &size);
  library.GetNodeByPath(kRoot, tag.path, &node, &position);
  library.GetArrayDimensionCount(node, &dimensions);
  for (agl_int32_t i = 0; i < dimensions; ++i) {
    agl_int32_t lower = 0;
    agl_int32_t upper = 0;
    library.GetArrayDimension(node, i, &lower, &upper);
  }
}

template <class T>
void set_elements(agl_int32_t (*set)(HandleType, void*, agl_int32_t, agl_int32_t, T),
                  const LibraryFunctions& library, const Tag& tag, const SymbolicRW_t& rw, const WORD* words,
                  int elements) {
  const auto length = static_cast<agl_int32_t>(rw.BufferLen);
  const auto* from = reinterpret_cast<const unsigned char*>(words);
  for (int i = 0; i < elements; ++i, from += tag.word_bytes) {
    ValueType_t::enum_t type = ValueType_t::vt_UNDEFINED;
    library.GetAccessElementValueType(rw.AccessHandle, &type);
    if constexpr (std::is_same_v<T, agl_uint8_t>) {
      SystemType_t::enum_t system_type = SystemType_t::st_UNDEFINED;
      library.GetAccessElementSystemType(rw.AccessHandle, &system_type);
    }
    T value;
    std::memcpy(&value, from, sizeof value);
    set(rw.AccessHandle, rw.Buffer, length, i, value);
  }
}

void set_string(const LibraryFunctions& library, const Tag& tag, const SymbolicRW_t& rw, const WORD* words) {
  const auto length = static_cast<agl_int32_t>(rw.BufferLen);
  ValueType_t::enum_t type = ValueType_t::vt_UNDEFINED;
  library.GetAccessElementValueType(rw.AccessHandle, &type);
  agl_int32_t size = 0;
  library.GetAccessStringSize(rw.AccessHandle, &size);
  agl_char16_t text[kStringCharacters];
  std::memcpy(text, words, kStringCharacters);
  if (tag.value == Value::String8) {
    library.SetAccessBufferString8(rw.AccessHandle, rw.Buffer, length, 0, reinterpret_cast<const char*>(text),
                                   kStringCharacters);
  } else {
    library.SetAccessBufferString16(rw.AccessHandle, rw.Buffer, length, 0, text, kStringCharacters);
  }
}

void set_values(const LibraryFunctions& library, const Tag& tag, const SymbolicRW_t& rw, const WORD* words,
                int elements) {
  const auto set = [&](auto setter) { set_elements(setter, library, tag, rw, words, elements); };
  switch (tag.value) {
    case Value::Bool:
    case Value::UInt8:
      return set(library.SetAccessBufferUInt8);
    case Value::UInt16:
      return set(library.SetAccessBufferUInt16);
    case Value::UInt32:
      return set(library.SetAccessBufferUInt32);
    case Value::UInt64:
      return set(library.SetAccessBufferUInt64);
    case Value::Int8:
      return set(library.SetAccessBufferInt8);
    case Value::Int16:
      return set(library.SetAccessBufferInt16);
    case Value::Int32:
      return set(library.SetAccessBufferInt32);
    case Value::Int64:
      return set(library.SetAccessBufferInt64);
    case Value::Float32:
      return set(library.SetAccessBufferFloat32);
    case Value::Float64:
      return set(library.SetAccessBufferFloat64);
    default:
      return set_string(library, tag, rw, words);
  }
}

}  // namespace

void poll(const LibraryFunctions& library, const Tag* tags, int count, INPUT_DATA* records) {
  SymbolicRW_t rws[kMostTags];
  for (int i = 0; i < count; ++i) open_access(library, tags[i], rws[i]);
  agl_int32_t error = 0;
  library.ReadMixEx(kConnection, rws, count, &error, kReadTimeout, 0);
  for (int i = 0; i < count; ++i) take_values(library, tags[i], rws[i], records[i].wData);
  for (int i = 0; i < count; ++i) library.FreeHandle(rws[i].AccessHandle);
}

void write(const LibraryFunctions& library, const Tag& tag, const WORD* words, int elements) {
  SymbolicRW_t rw{};
  open_access(library, tag, rw);
  agl_int32_t count = 0;
  ValueType_t::enum_t type = ValueType_t::vt_UNDEFINED;
  library.GetAccessBufferElementCount(rw.AccessHandle, &count);
  library.GetAccessElementValueType(rw.AccessHandle, &type);
  set_values(library, tag, rw, words, elements);
  agl_int32_t error = 0;
  library.WriteMixEx(kConnection, &rw, 1, &error, kWriteTimeout, 0);
  library.FreeHandle(rw.AccessHandle);
}

void copy(const Copy* copies, int count) {
  for (int i = 0; i < count; ++i) std::memcpy(copies[i].to, copies[i].from, copies[i].bytes);
}

std::size_t read_file(const char* name, void* memory, std::size_t size) {
  const int file = open(name, O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  const ssize_t taken = read(file, memory, size);
  close(file);
  return taken > 0 ? static_cast<std::size_t>(taken) : 0;
}

decltype(&AGL_Symbolic_FreeHandle) free_handle_pointer = nullptr;

agl_int32_t free_handle(HandleType handle) {
  return free_handle_pointer(handle);
}

}  // namespace bench::least
