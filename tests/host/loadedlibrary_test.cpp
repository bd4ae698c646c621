// SPDX-License-Identifier: MIT
#include "host/commands/loadedlibrary.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace ostravel::host {
namespace {

void tell_version(std::int32_t* major, std::int32_t* minor) {
  *major = 7;
  *minor = 3;
}

TEST(LoadedLibrary, IsFoundByItsFileName) {
  const std::string others =
      "7f00-7f10 r-xp 00000000 08:01 5 /lib/libc.so.6\n7f10-7f20 rw-p 00000000 00:00 0\n";
  EXPECT_EQ(library_in_maps(others), "");
  EXPECT_EQ(library_in_maps(others + "7f20-7f30 r-xp 00000000 08:01 6 /opt/a b/libAGLink40_x64.so\n"),
            "/opt/a b/libAGLink40_x64.so");
  EXPECT_EQ(library_in_maps("7f20-7f30 r-xp 0 08:01 6 /mnt/pub/driver/S71500_SYMBOLICLIB.so\n"),
            "/mnt/pub/driver/S71500_SYMBOLICLIB.so");
  EXPECT_EQ(library_in_maps("7f20-7f30 r-xp 0 08:01 6 /opt/libAGLink40/other.so\n"), "");
}

TEST(LoadedLibrary, WithoutOneThereIsNoVersionEither) {
  const auto found = find_loaded_library([](const char* name) {
    EXPECT_STREQ(name, "AGL_GetVersion");
    return reinterpret_cast<void*>(&tell_version);
  });
  EXPECT_EQ(found.file, "");
  EXPECT_EQ(found.version, "");
  EXPECT_EQ(find_loaded_library([](const char*) -> void* { return nullptr; }).file, "");
}

}  // namespace
}  // namespace ostravel::host
