// SPDX-License-Identifier: MIT
// A library that loads but is no driver.
extern "C" __attribute__((visibility("default"))) int something_else() {
  return 1;
}
