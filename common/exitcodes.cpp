// SPDX-License-Identifier: MIT
#include "common/exitcodes.h"

#include <array>

namespace ostravel {
namespace {

constexpr auto kMeanings = std::to_array<ExitCodeMeaning>({
#define OSTRAVEL_EXIT_CODE(name, code, programs, meaning) {code, programs, meaning},
#include "common/exitcodes.def"
#undef OSTRAVEL_EXIT_CODE
});

}  // namespace

std::span<const ExitCodeMeaning> exit_codes() {
  return kMeanings;
}

}  // namespace ostravel
