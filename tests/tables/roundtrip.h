// SPDX-License-Identifier: MIT
// What both round trips need: a run's seed and length, random numbers, and the types with their widths.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "driver/hostrecords.h"

namespace roundtrip {

// OSTRAVEL_SEED, or always the same.
unsigned seed();
// OSTRAVEL_ROUND_TRIPS, or 60,000: trips of one test.
int trips();
// Prints the line that a run is known by.
void report(const char* what, int done);

struct Type {
  const char* name;
  BYTE code;
  int words;  // of one element in the runtime
  int bytes;  // of one element in the PLC
  bool sign;  // a byte whose sign fills its word
};
// BYTE to LREAL: what is written as words of numbers.
const std::vector<Type>& number_types();

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  // 0 to limit - 1.
  int below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(limit)); }
  int between(int from, int to) { return from + below(to - from + 1); }
  bool flip() { return below(2) == 1; }
  WORD word() { return static_cast<WORD>(engine_()); }
  std::vector<WORD> words(int count) {
    std::vector<WORD> list;
    for (int i = 0; i < count; ++i) list.push_back(word());
    return list;
  }
  template <class T>
  const T& one_of(const std::vector<T>& list) {
    return list[static_cast<std::size_t>(below(static_cast<int>(list.size())))];
  }

 private:
  std::mt19937_64 engine_;
};

// "0041 00C4".
std::string text_of(const std::vector<WORD>& words);

}  // namespace roundtrip
