// SPDX-License-Identifier: MIT
#include "tests/host/check/fakeplclibrary.h"

#include <algorithm>
#include <cstring>

namespace ostravel::host::check {
namespace {

constexpr HandleType kRoot = 1;
constexpr HandleType kNode = 2;
constexpr HandleType kFirstAccess = 1000;

FakePlcLibrary* fake = nullptr;

agl_int32_t result(const std::string& name) {
  const auto found = fake->results.find(name);
  return found == fake->results.end() ? AGL40_SUCCESS : found->second;
}

agl_int32_t called(const std::string& name) {
  fake->calls.push_back(name);
  return result(name);
}

// Hands out a value unless the function is to fail.
template <class T>
agl_int32_t give(const std::string& name, T* to, T value) {
  const auto code = result(name);
  if (code == AGL40_SUCCESS) {
    *to = value;
  }
  return code;
}

agl_int32_t GetErrorMsg(agl_int32_t code, agl_char8_t* text, agl_int32_t length) {
  const auto found = fake->words.find(code);
  if (found == fake->words.end()) {
    return -1;
  }
  // As a careless library would: no terminating zero when the text fills its room.
  std::strncpy(text, found->second.c_str(), static_cast<std::size_t>(length));
  return 0;
}
agl_int32_t GetParas(agl_int32_t, agl_int32_t, void*, agl_int32_t) {
  return called("GetParas");
}
agl_int32_t SetParas(agl_int32_t, agl_int32_t, void*, agl_int32_t) {
  return called("SetParas");
}
agl_int32_t SetDevType(agl_int32_t, agl_int32_t) {
  return called("SetDevType");
}
agl_int32_t OpenDevice(agl_int32_t) {
  return called("OpenDevice");
}
agl_int32_t CloseDevice(agl_int32_t) {
  return called("CloseDevice");
}
agl_int32_t DialUp(agl_int32_t, agl_int32_t, agl_ptrdiff_t) {
  return called("DialUp");
}
agl_int32_t HangUp(agl_int32_t, agl_int32_t, agl_ptrdiff_t) {
  return called("HangUp");
}
agl_int32_t InitAdapter(agl_int32_t, agl_int32_t, agl_ptrdiff_t) {
  return called("InitAdapter");
}
agl_int32_t ExitAdapter(agl_int32_t, agl_int32_t, agl_ptrdiff_t) {
  return called("ExitAdapter");
}
agl_int32_t PLCConnectEx(agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t* connection,
                         agl_int32_t, agl_ptrdiff_t) {
  *connection = 7;
  return called("PLCConnectEx");
}
agl_int32_t PLCDisconnect(agl_int32_t connection, agl_int32_t, agl_ptrdiff_t) {
  return called("PLCDisconnect " + std::to_string(connection));
}
agl_int32_t SetPassword(agl_int32_t, const agl_char8_t* password, agl_int32_t, agl_ptrdiff_t) {
  return called(std::string("SetPassword ") + password);
}
agl_int32_t Symbolic_LoadAGLinkSymbolsFromPLC(agl_int32_t, HandleType* root) {
  return give("Symbolic_LoadAGLinkSymbolsFromPLC", root, kRoot);
}
agl_int32_t Symbolic_FreeHandle(HandleType handle) {
  fake->freed.push_back(handle);
  return 0;
}
agl_int32_t Symbolic_GetNodeByPath(HandleType, const agl_char8_t*, HandleType* node, agl_int32_t*) {
  return give("Symbolic_GetNodeByPath", node, kNode);
}
agl_int32_t Symbolic_GetArrayDimensionCount(HandleType, agl_int32_t* count) {
  return give("Symbolic_GetArrayDimensionCount", count, 0);
}
agl_int32_t Symbolic_GetArrayDimension(HandleType, agl_int32_t, agl_int32_t*, agl_int32_t*) {
  return result("Symbolic_GetArrayDimension");
}
agl_int32_t Symbolic_CreateAccessByPath(HandleType, const agl_char8_t* path, HandleType* access,
                                        agl_int32_t*) {
  const auto code = give("Symbolic_CreateAccessByPath", access,
                         kFirstAccess + static_cast<HandleType>(fake->opened_paths.size()));
  fake->opened_paths.emplace_back(path);
  return code;
}
agl_int32_t Symbolic_GetAccessBufferSize(HandleType, agl_int32_t* value) {
  return give("Symbolic_GetAccessBufferSize", value, fake->buffer_size);
}
agl_int32_t Symbolic_GetAccessBufferElementSize(HandleType, agl_int32_t* value) {
  return give("Symbolic_GetAccessBufferElementSize", value, 2);
}
agl_int32_t Symbolic_GetAccessBufferElementCount(HandleType, agl_int32_t* value) {
  return give("Symbolic_GetAccessBufferElementCount", value, 1);
}
agl_int32_t Symbolic_GetAccessStringSize(HandleType, agl_int32_t* value) {
  return give("Symbolic_GetAccessStringSize", value, 0);
}
agl_int32_t Symbolic_GetAccessElementSystemType(HandleType, SystemType_t::enum_t* type) {
  return give("Symbolic_GetAccessElementSystemType", type, SystemType_t::st_S7_Int);
}
agl_int32_t Symbolic_GetAccessElementValueType(HandleType, ValueType_t::enum_t* type) {
  return give("Symbolic_GetAccessElementValueType", type, ValueType_t::vt_INT16);
}
agl_int32_t Symbolic_ReadMixEx(agl_int32_t, SymbolicRW_t* items, agl_int32_t count, agl_int32_t*, agl_int32_t,
                               agl_ptrdiff_t) {
  std::vector<std::string> paths;
  for (agl_int32_t i = 0; i < count; ++i) {
    paths.push_back(fake->opened_paths.at(static_cast<std::size_t>(items[i].AccessHandle - kFirstAccess)));
  }
  return fake->read ? fake->read(paths, items) : 0;
}

}  // namespace

FakePlcLibrary::FakePlcLibrary() {
  fake = this;
}

FakePlcLibrary::~FakePlcLibrary() {
  fake = nullptr;
}

Library FakePlcLibrary::library() const {
  const std::map<std::string, void*> functions{
#define OSTRAVEL_LIBRARY_FUNCTION(name) {"AGL_" #name, reinterpret_cast<void*>(&name)},
#include "host/check/functions.def"
#undef OSTRAVEL_LIBRARY_FUNCTION
  };
  return Library(
      [&](const char* name) -> void* { return missing.contains(name) ? nullptr : functions.at(name); },
      "libtest.so");
}

}  // namespace ostravel::host::check
