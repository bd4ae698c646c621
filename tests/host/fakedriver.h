// SPDX-License-Identifier: MIT
// A driver for tests of the host: all entry points, a record of what was called, and answers as a test wants
// them. The same description is used inside the library and in the tests.
//
// In a program of its own it is told by the environment what to answer:
//   FAKE_DRIVER_WORDS="0:5;2:1,0"   words of row 0 and of row 2; a word write puts its words in place of them
//   FAKE_DRIVER_LOST="3,2"          the 3rd read finds the connection lost, 2 initialisations more are needed
//   FAKE_DRIVER_NOT_READY="1000000" how often the input filter answers 13 before it serves
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "driver/hostrecords.h"

struct FakeDriver {
  std::vector<std::string> calls;  // of the lifecycle and the filters, with their arguments

  // How often the filters still answer so before they serve; in this order.
  int failed_loader = 0;  // output filter: wait 1, length 8
  int not_ready = 0;      // input filter: 13
  int loading = 0;        // input filter: 2 for all
  bool lost = false;      // input filter: 2 for all, then the failed-loader answer until initialised again

  int lost_at_read = 0;   // count down to lost; 0 never
  int failed_starts = 0;  // initialisations after a loss that leave the loader failed

  std::map<std::uint32_t, std::vector<WORD>> words;  // by row of the tag table; a row not in it has no data
  std::vector<GUI_REQUEST> requests;                 // of the last call of the output filter
  std::vector<GUI_REQUEST> writes;                   // every write since the beginning
  std::vector<WORD> parameters;                      // of the last initialisation
};

extern "C" FakeDriver* fake_driver();
