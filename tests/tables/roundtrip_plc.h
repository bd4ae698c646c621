// SPDX-License-Identifier: MIT
// The variables of the online round trips, and what their memory must hold: the test's own account of it,
// kept beside the library's.
#pragma once

#include <string>
#include <vector>

#include "tests/driver/device.h"
#include "tests/tables/memorylibrary.h"
#include "tests/tables/roundtrip.h"

namespace roundtrip {

// Of every type, behind its name and a dot: Value, Array[0..7], Based[2..9], Matrix[0..2, 0..3] and
// Line[0..3].Value. Texts: Text, Texts[0..7], Matrix[0..2, 0..3], Line[0..3].Value of 20 characters, and
// Wide.
inline constexpr int kElements = 8;
inline constexpr int kBase = 2;
inline constexpr int kTextSize = 20;

class Plc {
 public:
  explicit Plc(MemoryLibrary& library);

  // A project with a tag for every way to name the variables.
  static ProjectFile project(bool paired);
  static DWORD row(const std::string& tag);

  // The account of a write: the element behind a path, and the next ones.
  void put(const std::string& path, const std::vector<unsigned char>& bytes);
  // What count elements from that one hold.
  std::vector<unsigned char> bytes(const std::string& path, int count = 1) const;
  // Whether the library's memory holds what was put there, and nothing else.
  bool agrees() const { return library_.memory() == account_; }

 private:
  MemoryLibrary& library_;
  std::vector<unsigned char> account_;
};

}  // namespace roundtrip
