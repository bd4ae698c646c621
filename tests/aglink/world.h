// SPDX-License-Identifier: MIT
// What the tests of the binding share: a binding that is unloaded before and after each test, captured
// output, the library's reference count, and the lists of names that were written down apart from
// functions.def.
#ifndef OSTRAVEL_TESTS_AGLINK_WORLD_H_
#define OSTRAVEL_TESTS_AGLINK_WORLD_H_

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

inline const std::string kBanner = "=================================LoadDll()";
inline const std::string kHalfWay = "loadfunction 2";
inline const std::string kLibraryName = "libAGLink40_x64.so";
inline const std::string kLibraryInProject = "/mnt/project/qx4100/pub/driver/S71500_SYMBOLICLIB.so";

// The lines that doing something prints on standard output.
std::vector<std::string> linesPrintedBy(const std::function<void()>& something);

// How often the library of that name or path is open. Closes it as often, and leaves the binding unloaded.
int unloadAll(const std::string& library);

// The lines of one of the lists beside the tests; names in the order of the list. Titles ("[Family: 3]")
// included.
std::vector<std::string> readList(const std::string& path);
std::vector<std::string> expectedNames();       // the 576 forwarded functions
std::vector<std::string> expectedUnresolved();  // the 138 that are never resolved

// Starts and ends with nothing loaded, and nothing mapped.
class BindingTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

// Where no library must be found: fails when there is one after all.
class NoLibraryTest : public BindingTest {
 protected:
  void SetUp() override;
};

// Where the library must be found through the search path, which CTest sets.
class LibraryTest : public BindingTest {
 protected:
  void SetUp() override;
};

#endif  // OSTRAVEL_TESTS_AGLINK_WORLD_H_
