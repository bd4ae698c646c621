// SPDX-License-Identifier: MIT
// What the driver makes of one connection's parameters, byte by byte.
#pragma once

#include <algorithm>
#include <string>

#include "tests/symbolic/access.h"

inline Bytes connection_record(const std::string& address) {
  Bytes bytes(128, 0);
  bytes[0] = 0x60;  // lTimeOut 60000
  bytes[1] = 0xEA;
  bytes[8] = 40;  // bPLCClassEx: the library finds out
  bytes[16] = 0;  // bConnTypeEx: HMI
  std::copy(address.begin(), address.end(), bytes.begin() + 32);
  bytes[96] = 4;     // Flags
  bytes[100] = 102;  // wPortNr
  return bytes;
}
