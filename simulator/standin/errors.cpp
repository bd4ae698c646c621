// SPDX-License-Identifier: MIT
#include "simulator/standin/errors.h"

namespace ostravel::standin {

std::optional<std::string_view> text_of(agl_int32_t code) {
  switch (static_cast<agl_ulong32_t>(code)) {
    case 0:
      return "success";
#define STANDIN_ERROR(name, number, text) \
  case number:                            \
    return text;
#include "simulator/standin/errors.def"
#undef STANDIN_ERROR
    default:
      return std::nullopt;
  }
}

}  // namespace ostravel::standin
