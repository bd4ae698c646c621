// SPDX-License-Identifier: MIT
#include "symbolic/errorhelper.h"

#include "aglink/AGLink40.h"

void ErrorHelper::ShowError(int code, [[maybe_unused]] const char* name) {
  char message[256] = {};
  AGL_GetErrorMsg(code, message, sizeof message);
}
