// SPDX-License-Identifier: MIT
// The one place through which failed library calls go.
#pragma once

class ErrorHelper {
 public:
  // Fetches the library's text for a result code. Deliberately silent: neither the text nor the name of the
  // failed function is printed.
  static void ShowError(int code, const char* name);
};
