// SPDX-License-Identifier: MIT
// Opening and closing the communication library, and resolving its functions.
#include <dlfcn.h>

#include <cstddef>
#include <cstdio>
#include <string_view>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"
#include "aglink/functiontable.h"

void* hLib = nullptr;

namespace {

constexpr const char* kLibraryName = "libAGLink40_x64.so";
// Where the runtime's project keeps a copy of the library, under another file name.
constexpr const char* kLibraryInProject = "/mnt/project/qx4100/pub/driver/S71500_SYMBOLICLIB.so";

}  // namespace

agl_int32_t LoadDll() {
  std::puts("=================================LoadDll()");
  void* library = dlopen(kLibraryName, RTLD_NOW);
  if (library == nullptr) library = dlopen(kLibraryInProject, RTLD_NOW);
  // Deliberately without closing an earlier handle, and also when nothing was found. One store for both
  // attempts: a null in between would make another thread's first call fail.
  aglink::store(hLib, library);
  return LoadFunctions();
}

agl_int32_t LoadDllByPath(const char* path) {
  aglink::store(hLib, dlopen(path, RTLD_NOW));
  return LoadFunctions();
}

agl_int32_t LoadFunctions() {
  void* const library = aglink::load(hLib);
  if (library == nullptr) return -1;
  for (std::size_t i = 0; i < aglink::functionTable.size(); ++i) {
    const aglink::LibraryFunction& function = aglink::functionTable[i];
    if (function.lookup == aglink::Lookup::Unresolved) continue;
    aglink::store(aglPointers[i], dlsym(library, function.name));
    // Deliberately in the middle of the work, whose progress it shows.
    if (std::string_view(function.name) == "AGL_GetParas") std::puts("loadfunction 2");
  }
  return 1;
}

void AGL_UnloadDyn() {
  if (void* const library = aglink::load(hLib); library != nullptr) {
    dlclose(library);
    aglink::store<void*>(hLib, nullptr);
  }
  for (void*& pointer : aglPointers) aglink::store<void*>(pointer, nullptr);
}
