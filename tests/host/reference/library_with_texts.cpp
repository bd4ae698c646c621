// SPDX-License-Identifier: MIT
// Makes of the fake driver one whose communication library has texts for its results.
#include <cstdint>
#include <cstdio>

extern "C" __attribute__((visibility("default"))) std::int32_t AGL_GetErrorMsg(std::int32_t code, char* text,
                                                                               std::int32_t size) {
  std::puts("a line of the library");  // must not get among the tool's own
  std::snprintf(text, static_cast<std::size_t>(size), "text of %d", code);
  return 0;
}
