// SPDX-License-Identifier: MIT
// The two forwarding functions that print their progress.
#include <cstdio>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"

namespace {

// The library's function behind pointer, loading the library when need be; null when it cannot be reached.
template <typename Function>
Function reach(const Function& pointer) {
  if (aglink::load(hLib) != nullptr) {
    if (const Function function = aglink::load(pointer); function != nullptr) return function;
  }
  return LoadDll() < 1 ? nullptr : aglink::load(pointer);
}

}  // namespace

agl_int32_t AGL_GetParas(agl_int32_t DevNr, agl_int32_t ParaType, void* Para, agl_int32_t Len) {
  std::puts("into AGL_GetParas");
  const auto function = reach(pAGL_GetParas);
  if (function == nullptr) {
    std::puts("load error  AGL_GetParas");  // two blanks, deliberately
    return AGL40_LIB_NOT_LOADED;
  }
  std::puts("loaded AGL_GetParas");
  return function(DevNr, ParaType, Para, Len);
}

agl_int32_t AGL_SetDevType(agl_int32_t DevNr, agl_int32_t DevType) {
  std::puts("into AGL_SetDevType");
  const auto function = reach(pAGL_SetDevType);
  if (function == nullptr) {
    std::puts("load error AGL_SetDevType");
    return AGL40_LIB_NOT_LOADED;
  }
  std::puts("loaded pAGL_SetDevType");  // the pointer's name, deliberately
  return function(DevNr, DevType);
}
