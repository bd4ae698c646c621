// SPDX-License-Identifier: MIT
// What the recording form of the null library writes down: one line a call, "function text number...", with
// handles, lengths, elements, values and time-outs as numbers and paths as text. Addresses are left out.
#pragma once

#include <cstdint>

namespace bench {

void record(const char* function, const char* text, std::int64_t a = 0, std::int64_t b = 0,
            std::int64_t c = 0, std::int64_t d = 0);

}  // namespace bench

extern "C" {
// Everything since the last bench_forget(); valid until the next call of the library.
__attribute__((visibility("default"))) const char* bench_recorded();
__attribute__((visibility("default"))) void bench_forget();
}
