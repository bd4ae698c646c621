// SPDX-License-Identifier: MIT
#include "tests/tables/memorylibrary.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tests/fake/elements.h"

namespace {

MemoryLibrary* library = nullptr;

enum : agl_int32_t { kUnknownPath = -1, kBadHandle = -2, kBadElement = -3 };

// A place is its own node: nodes are never freed.
HandleType node_of(const MemoryLibrary::Place& place) {
  return static_cast<HandleType>(reinterpret_cast<std::intptr_t>(&place));
}
const MemoryLibrary::Place* node(HandleType handle) {
  return reinterpret_cast<const MemoryLibrary::Place*>(static_cast<std::intptr_t>(handle));  // NOLINT
}

agl_int32_t GetErrorMsg(agl_int32_t, agl_char8_t* Msg, agl_int32_t) {
  *Msg = '\0';
  return AGL40_SUCCESS;
}

agl_int32_t CreateAccessByPath(HandleType, const agl_char8_t* Path, HandleType* AccessHandle, agl_int32_t*) {
  const auto* place = library->find(Path);
  if (place == nullptr) return kUnknownPath;
  *AccessHandle = library->open(*place);
  return AGL40_SUCCESS;
}

agl_int32_t GetNodeByPath(HandleType, const agl_char8_t* Path, HandleType* NodeHandle, agl_int32_t*) {
  const auto* place = library->find(Path);
  if (place == nullptr) return kUnknownPath;
  *NodeHandle = node_of(*place);
  return AGL40_SUCCESS;
}

agl_int32_t FreeHandle(HandleType handle) {
  return library->close(handle) ? AGL40_SUCCESS : kBadHandle;
}

agl_int32_t GetArrayDimensionCount(HandleType NodeHandle, agl_int32_t* Count) {
  if (NodeHandle == 0) return kBadHandle;
  *Count = static_cast<agl_int32_t>(node(NodeHandle)->dimensions.size());
  return AGL40_SUCCESS;
}

agl_int32_t GetArrayDimension(HandleType NodeHandle, agl_int32_t Dimension, agl_int32_t* Lower,
                              agl_int32_t* Upper) {
  const auto& bounds = node(NodeHandle)->dimensions.at(static_cast<std::size_t>(Dimension));
  *Lower = bounds.lower;
  *Upper = bounds.upper;
  return AGL40_SUCCESS;
}

template <class Answer, class T>
agl_int32_t ask(HandleType handle, T* value, Answer answer) {
  const auto* place = library->access(handle);
  if (place == nullptr) return kBadHandle;
  *value = answer(*place);
  return AGL40_SUCCESS;
}

agl_int32_t GetAccessBufferSize(HandleType AccessHandle, agl_int32_t* Value) {
  return ask(AccessHandle, Value, [](const auto& place) { return place.count * place.shape.element_size; });
}
agl_int32_t GetAccessBufferElementSize(HandleType AccessHandle, agl_int32_t* Value) {
  return ask(AccessHandle, Value, [](const auto& place) { return place.shape.element_size; });
}
agl_int32_t GetAccessBufferElementCount(HandleType AccessHandle, agl_int32_t* Value) {
  return ask(AccessHandle, Value, [](const auto& place) { return place.count; });
}
agl_int32_t GetAccessStringSize(HandleType AccessHandle, agl_int32_t* Value) {
  return ask(AccessHandle, Value, [](const auto& place) { return place.shape.string_size; });
}
agl_int32_t GetAccessElementSystemType(HandleType AccessHandle, SystemType_t::enum_t* Type) {
  return ask(AccessHandle, Type, [](const auto& place) { return place.shape.system_type; });
}
agl_int32_t GetAccessElementValueType(HandleType AccessHandle, ValueType_t::enum_t* Type) {
  return ask(AccessHandle, Type, [](const auto& place) { return place.shape.value_type; });
}

template <class Copy>
agl_int32_t run(SymbolicRW_t* accesses, agl_int32_t count, agl_int32_t* serror, Copy copy) {
  *serror = 0;
  for (agl_int32_t i = 0; i < count; ++i) {
    auto& rw = accesses[i];
    const auto* place = library->access(rw.AccessHandle);
    const bool fits =
        place != nullptr && rw.BufferLen == agl_long_t{place->count} * place->shape.element_size;
    rw.Result = fits ? AGL40_SUCCESS : kBadHandle;
    rw.SError = 0;
    if (fits) copy(library->at(place->offset), rw.Buffer, static_cast<std::size_t>(rw.BufferLen));
  }
  return AGL40_SUCCESS;
}

agl_int32_t ReadMixEx(agl_int32_t, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError, agl_int32_t,
                      agl_ptrdiff_t) {
  return run(RW, Num, SError, [](unsigned char* memory, void* buffer, std::size_t size) {
    std::memcpy(buffer, memory, size);
  });
}

agl_int32_t WriteMixEx(agl_int32_t, SymbolicRW_t* RW, agl_int32_t Num, agl_int32_t* SError, agl_int32_t,
                       agl_ptrdiff_t) {
  return run(RW, Num, SError, [](unsigned char* memory, const void* buffer, std::size_t size) {
    std::memcpy(memory, buffer, size);
  });
}

// Where an element lies in an access buffer, or -1.
agl_int64_t offset_of(HandleType access, agl_int32_t length, agl_int32_t element) {
  const auto* place = library->access(access);
  if (place == nullptr || element < 0 || element >= place->count) return -1;
  const agl_int64_t offset = agl_int64_t{element} * place->shape.element_size;
  return offset + place->shape.element_size <= length ? offset : -1;
}

template <class T>
agl_int32_t get(HandleType access, const void* buffer, agl_int32_t length, agl_int32_t element, T* value) {
  const auto offset = offset_of(access, length, element);
  if (offset < 0) return kBadElement;
  std::memcpy(value, static_cast<const unsigned char*>(buffer) + offset, sizeof *value);
  return AGL40_SUCCESS;
}

template <class T>
agl_int32_t set(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element, T value) {
  const auto offset = offset_of(access, length, element);
  if (offset < 0) return kBadElement;
  std::memcpy(static_cast<unsigned char*>(buffer) + offset, &value, sizeof value);
  return AGL40_SUCCESS;
}

template <class Unit>
agl_int32_t get_text(HandleType access, const void* buffer, agl_int32_t length, agl_int32_t element,
                     Unit* text, agl_int32_t max_count, agl_int32_t* char_count) {
  std::uint16_t size = 0;
  if (const auto result = get(access, buffer, length, element, &size); result != AGL40_SUCCESS) return result;
  const auto* from =
      static_cast<const unsigned char*>(buffer) + offset_of(access, length, element) + sizeof size;
  *char_count = std::min(agl_int32_t{size}, max_count - 1);
  std::memcpy(text, from, static_cast<std::size_t>(*char_count) * sizeof(Unit));
  text[*char_count] = Unit{};
  return AGL40_SUCCESS;
}

template <class Unit>
agl_int32_t set_text(HandleType access, void* buffer, agl_int32_t length, agl_int32_t element,
                     const Unit* text, agl_int32_t char_count) {
  const auto* place = library->access(access);
  if (place == nullptr || char_count > place->shape.string_size) return kBadElement;
  const auto size = static_cast<std::uint16_t>(char_count);
  if (const auto result = set(access, buffer, length, element, size); result != AGL40_SUCCESS) return result;
  auto* to = static_cast<unsigned char*>(buffer) + offset_of(access, length, element) + sizeof size;
  if (size > 0) std::memcpy(to, text, size * sizeof(Unit));
  return AGL40_SUCCESS;
}

void install_functions() {
  using fake::install;
  install(pAGL_GetErrorMsg, GetErrorMsg);
  install(pAGL_Symbolic_CreateAccessByPath, CreateAccessByPath);
  install(pAGL_Symbolic_GetNodeByPath, GetNodeByPath);
  install(pAGL_Symbolic_FreeHandle, FreeHandle);
  install(pAGL_Symbolic_GetArrayDimensionCount, GetArrayDimensionCount);
  install(pAGL_Symbolic_GetArrayDimension, GetArrayDimension);
  install(pAGL_Symbolic_GetAccessBufferSize, GetAccessBufferSize);
  install(pAGL_Symbolic_GetAccessBufferElementSize, GetAccessBufferElementSize);
  install(pAGL_Symbolic_GetAccessBufferElementCount, GetAccessBufferElementCount);
  install(pAGL_Symbolic_GetAccessStringSize, GetAccessStringSize);
  install(pAGL_Symbolic_GetAccessElementSystemType, GetAccessElementSystemType);
  install(pAGL_Symbolic_GetAccessElementValueType, GetAccessElementValueType);
  install(pAGL_Symbolic_ReadMixEx, ReadMixEx);
  install(pAGL_Symbolic_WriteMixEx, WriteMixEx);
#define INSTALL_VALUE(Kind, T)                          \
  install(pAGL_Symbolic_GetAccessBuffer##Kind, get<T>); \
  install(pAGL_Symbolic_SetAccessBuffer##Kind, set<T>)
  INSTALL_VALUE(UInt8, agl_uint8_t);
  INSTALL_VALUE(UInt16, agl_uint16_t);
  INSTALL_VALUE(UInt32, agl_uint32_t);
  INSTALL_VALUE(UInt64, agl_uint64_t);
  INSTALL_VALUE(Int8, agl_int8_t);
  INSTALL_VALUE(Int16, agl_int16_t);
  INSTALL_VALUE(Int32, agl_int32_t);
  INSTALL_VALUE(Int64, agl_int64_t);
  INSTALL_VALUE(Float32, agl_float32_t);
  INSTALL_VALUE(Float64, agl_float64_t);
#undef INSTALL_VALUE
  install(pAGL_Symbolic_GetAccessBufferString8, get_text<agl_char8_t>);
  install(pAGL_Symbolic_SetAccessBufferString8, set_text<agl_char8_t>);
  install(pAGL_Symbolic_GetAccessBufferString16, get_text<agl_char16_t>);
  install(pAGL_Symbolic_SetAccessBufferString16, set_text<agl_char16_t>);
}

}  // namespace

MemoryLibrary::MemoryLibrary() {
  AGL_UnloadDyn();
  // The forwarding functions want an open library; one without any of their names leaves every pointer null.
  if (LoadDllByPath("libm.so.6") != 1) throw std::runtime_error("the memory library needs libm.so.6");
  library = this;
  install_functions();
}

MemoryLibrary::~MemoryLibrary() {
  AGL_UnloadDyn();
  library = nullptr;
}

void MemoryLibrary::add(const std::string& path, const Shape& shape, const std::vector<Bounds>& dimensions) {
  std::vector<std::string> elements = {""};
  for (const auto& [lower, upper] : dimensions) {
    std::vector<std::string> longer;
    for (const auto& prefix : elements) {
      for (agl_int32_t i = lower; i <= upper; ++i) {
        longer.push_back(prefix + (prefix.empty() ? "" : ",") + std::to_string(i));
      }
    }
    elements = longer;
  }
  const Place whole{shape, dimensions, memory_.size(), static_cast<agl_int32_t>(elements.size())};
  const auto size = static_cast<std::size_t>(shape.element_size);
  memory_.resize(memory_.size() + elements.size() * size);
  places_.insert_or_assign(path, whole);
  if (dimensions.empty()) return;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    places_.insert_or_assign(path + "[" + elements[i] + "]", Place{shape, {}, whole.offset + i * size, 1});
  }
}

const MemoryLibrary::Place* MemoryLibrary::find(const std::string& path) const {
  const auto found = places_.find(path);
  return found == places_.end() ? nullptr : &found->second;
}

HandleType MemoryLibrary::open(const Place& place) {
  if (free_.empty()) {
    free_.push_back(places_of_handles_.size());
    places_of_handles_.push_back(nullptr);
  }
  const auto position = free_.back();
  free_.pop_back();
  places_of_handles_[position] = &place;
  return kFirst + static_cast<HandleType>(position);
}

bool MemoryLibrary::close(HandleType handle) {
  if (access(handle) == nullptr) return false;
  const auto position = static_cast<std::size_t>(handle - kFirst);
  places_of_handles_[position] = nullptr;
  free_.push_back(position);
  return true;
}

const MemoryLibrary::Place* MemoryLibrary::access(HandleType handle) const {
  const auto position = static_cast<std::uint64_t>(handle) - static_cast<std::uint64_t>(kFirst);
  return position < places_of_handles_.size() ? places_of_handles_[position] : nullptr;
}
