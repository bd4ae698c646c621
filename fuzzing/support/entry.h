// SPDX-License-Identifier: MIT
// What libFuzzer calls: once at the start, and for each input.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
