// SPDX-License-Identifier: MIT
// Where those failed library calls are reported that are reported at all.
#pragma once

class ErrorHelper {
 public:
  // Fetches the library's text for a result code. Deliberately silent: neither the text nor the name of the
  // failed function is printed.
  static void ShowError(int code, const char* name);
};
