// SPDX-License-Identifier: MIT
#include "benchmarks/driver.h"

#include <dlfcn.h>

#include <stdexcept>

#include "benchmarks/floor.h"

namespace bench {

namespace {

void* load(const std::string& file) {
  void* library = dlopen(file.c_str(), RTLD_NOW);
  if (library == nullptr) throw std::runtime_error(dlerror());
  return library;
}

template <class Function>
void find(void* library, const std::string& name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name.c_str()));
  if (function == nullptr) throw std::runtime_error(dlerror());
}

}  // namespace

Driver::Driver(const std::string& driver_file, const std::string& null_library_file) {
  void* null_library = load(null_library_file);
#define BENCH_FIND(Name) find(null_library, "AGL_Symbolic_" #Name, library.Name);
  BENCH_LIBRARY_FUNCTIONS(BENCH_FIND)
#undef BENCH_FIND
  recorded = reinterpret_cast<decltype(recorded)>(dlsym(null_library, "bench_recorded"));
  forget = reinterpret_cast<decltype(forget)>(dlsym(null_library, "bench_forget"));
  least::free_handle_pointer = library.FreeHandle;

  void* driver = load(driver_file);
#define OSTRAVEL_ENTRY_POINT(name, result, arguments) find(driver, "KORVALE_DRV_" #name, name);
#include "host/entrypoints.def"
#undef OSTRAVEL_ENTRY_POINT
  find(driver, "AGL_Symbolic_FreeHandle", forwarded);
}

}  // namespace bench
