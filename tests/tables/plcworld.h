// SPDX-License-Identifier: MIT
// The PLC of the table's cases: the variables that rows.h tells of, and what goes wrong with them.
#pragma once

#include <string>

#include "driver/hostrecords.h"
#include "tests/fake/fakelibrary.h"
#include "tests/tables/rows.h"

namespace tables {

inline constexpr WORD kGuardValue = 0x4711;

// The variables that a row of a type can reach by an address; what another row left is gone. The guard is not
// touched by events.
void fill(FakeLibrary& library, const std::string& type, const std::string& address, Event event);

// What the event does to the library's functions, and back.
void begin(FakeLibrary& library, Event event);
void end(FakeLibrary& library);

}  // namespace tables
