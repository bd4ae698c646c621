// SPDX-License-Identifier: MIT
#include "tests/aglink/world.h"

#include <dlfcn.h>

#include <fstream>
#include <sstream>

#include "aglink/AGLink40.h"
#include "aglink/binding.h"

std::vector<std::string> linesPrintedBy(const std::function<void()>& something) {
  testing::internal::CaptureStdout();
  something();
  std::istringstream output(testing::internal::GetCapturedStdout());
  std::vector<std::string> lines;
  for (std::string line; std::getline(output, line);) lines.push_back(line);
  return lines;
}

int unloadAll(const std::string& library) {
  int references = 0;
  while (void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD)) {
    dlclose(handle);
    dlclose(handle);
    ++references;
  }
  hLib = nullptr;  // it would be closed once more
  AGL_UnloadDyn();
  return references;
}

std::vector<std::string> readList(const std::string& path) {
  std::ifstream file(path);
  if (!file) ADD_FAILURE() << "cannot read " << path << "; the tests need their source folder";
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> expectedNames() {
  std::vector<std::string> names;
  for (const std::string& line : readList(EXPECTED_NAMES)) {
    if (!line.starts_with("[")) names.push_back(line);
  }
  return names;
}

std::vector<std::string> expectedUnresolved() {
  return readList(EXPECTED_UNRESOLVED);
}

void BindingTest::SetUp() {
  AGL_UnloadDyn();
  unloadAll(kLibraryName);
  unloadAll(kLibraryInProject);
}

void BindingTest::TearDown() {
  AGL_UnloadDyn();
  unloadAll(kLibraryName);
  unloadAll(kLibraryInProject);
}

void NoLibraryTest::SetUp() {
  BindingTest::SetUp();
  for (const std::string& library : {kLibraryName, kLibraryInProject}) {
    void* const stray = dlopen(library.c_str(), RTLD_NOW);
    if (stray != nullptr) dlclose(stray);
    ASSERT_EQ(stray, nullptr) << library << " is installed here; this test needs a machine without it";
  }
}

void LibraryTest::SetUp() {
  BindingTest::SetUp();
  void* const library = dlopen(kLibraryName.c_str(), RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror() << "; run this test through ctest, which sets LD_LIBRARY_PATH";
  dlclose(library);
}
