// SPDX-License-Identifier: MIT
#include "tests/tables/roundtrip.h"

#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace roundtrip {
namespace {

unsigned long setting(const char* name, unsigned long otherwise) {
  const char* given = std::getenv(name);
  return given != nullptr ? std::strtoul(given, nullptr, 10) : otherwise;
}

}  // namespace

unsigned seed() {
  return static_cast<unsigned>(setting("OSTRAVEL_SEED", 20260301));
}

int trips() {
  return static_cast<int>(setting("OSTRAVEL_ROUND_TRIPS", 60000));
}

void report(const char* what, int done) {
  std::cout << "round trips " << what << ": " << done << ", OSTRAVEL_SEED=" << seed() << "\n";
}

const std::vector<Type>& number_types() {
  static const std::vector<Type> types = {
      {"BYTE", DT_BYTE, 1, 1, false},   {"USINT", DT_USINT, 1, 1, false}, {"SINT", DT_SINT, 1, 1, true},
      {"WORD", DT_WORD, 1, 2, false},   {"UINT", DT_UINT, 1, 2, false},   {"INT", DT_INT, 1, 2, false},
      {"DWORD", DT_DWORD, 2, 4, false}, {"UDINT", DT_UDINT, 2, 4, false}, {"DINT", DT_DINT, 2, 4, false},
      {"REAL", DT_REAL, 2, 4, false},   {"LWORD", DT_LWORD, 4, 8, false}, {"LINT", DT_LINT, 4, 8, false},
      {"ULINT", DT_ULINT, 4, 8, false}, {"LREAL", DT_LREAL, 4, 8, false},
  };
  return types;
}

std::string text_of(const std::vector<WORD>& words) {
  std::ostringstream stream;
  stream << std::hex << std::uppercase << std::setfill('0');
  for (const WORD word : words) stream << std::setw(4) << word << ' ';
  return stream.str();
}

}  // namespace roundtrip
