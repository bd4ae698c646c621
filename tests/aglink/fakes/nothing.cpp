// SPDX-License-Identifier: MIT
// A library of the right name with none of the right functions.
extern "C" __attribute__((visibility("default"))) int AGL_Nothing() {
  return 0;
}
