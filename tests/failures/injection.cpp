// SPDX-License-Identifier: MIT
#include "tests/failures/injection.h"

#include <array>

namespace injection {
namespace {

bool driver_at_work = false;
Kind armed_kind = Kind::None;
int armed_nth = 0;
bool was_hit = false;
std::array<int, kKinds> failure_counts{};

std::vector<std::string>& seen() {
  static auto& functions = *new std::vector<std::string>;
  return functions;
}

}  // namespace

DriverSide::DriverSide() {
  driver_at_work = true;
}
DriverSide::~DriverSide() {
  driver_at_work = false;
}

OtherSide::OtherSide() : before_(driver_at_work) {
  driver_at_work = false;
}
OtherSide::~OtherSide() {
  driver_at_work = before_;
}

Armed::Armed(Kind kind, int nth) {
  seen().clear();
  armed_kind = kind;
  armed_nth = nth;
  was_hit = false;
}
Armed::~Armed() {
  armed_kind = Kind::None;
}

bool Armed::hit() const {
  return was_hit;
}

bool driver_is_at_work() {
  return driver_at_work;
}

bool fails(Kind kind, const char* function) {
  if (!driver_at_work || kind != armed_kind) return false;
  const OtherSide bookkeeping;
  seen().emplace_back(function);
  if (static_cast<int>(seen().size()) != armed_nth) return false;
  was_hit = true;
  ++failure_counts[static_cast<std::size_t>(kind)];
  return true;
}

const std::vector<std::string>& asked() {
  return seen();
}

void count_failure(Kind kind) {
  ++failure_counts[static_cast<std::size_t>(kind)];
}

int failures(Kind kind) {
  return failure_counts[static_cast<std::size_t>(kind)];
}

}  // namespace injection
