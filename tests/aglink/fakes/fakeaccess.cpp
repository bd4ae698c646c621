// SPDX-License-Identifier: MIT
#include "tests/aglink/fakes/fakeaccess.h"

#include <dlfcn.h>

#include <stdexcept>

#include "tests/aglink/fakes/fakelog.h"
#include "tests/aglink/rows.h"
#include "tests/aglink/world.h"

namespace {

std::vector<std::string> logged;

void listen(const char* name, const FakeArguments& arguments) {
  int integers = 10;
  int reals = 10;
  for (const Row& row : rows()) {
    if (row.name != name) continue;
    integers = row.integers;
    reals = row.reals;
  }
  logged.push_back(logLine(name, arguments, integers, reals));
}

using Listen = void (*)(FakeListener);

Listen listenFunction(void* library) {
  return reinterpret_cast<Listen>(dlsym(library, "fakeListen"));
}

}  // namespace

FakeLog::FakeLog() : library_(dlopen(kLibraryName.c_str(), RTLD_NOW)) {
  logged.clear();
  if (library_ == nullptr)
    throw std::runtime_error("no fake library in LD_LIBRARY_PATH; run this through ctest");
  const Listen setListener = listenFunction(library_);
  if (setListener == nullptr) throw std::runtime_error("the library found is not the tests' fake library");
  setListener(listen);
}

FakeLog::~FakeLog() {
  listenFunction(library_)(nullptr);
  dlclose(library_);
}

const std::vector<std::string>& FakeLog::lines() const {
  return logged;
}
