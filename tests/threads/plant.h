// SPDX-License-Identifier: MIT
// One online device on the quiet library, driven as the runtime drives it, and the connection threads beside
// it.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <set>

#include "tests/driver/device.h"
#include "tests/threads/quietlibrary.h"

// The threads of this process.
std::set<pid_t> threads();
// The kernel says that the thread sleeps, or knows it no more.
bool is_asleep(pid_t thread);

class Plant : public testing::Test {
 protected:
  static constexpr BYTE kNumber = 9;  // a station

  Plant();
  ~Plant() override;  // when all connection threads have ended

  // InitEx and GetInitCmdEx2 for 192.168.1.PLC, for the device that handle stands for.
  void set_up_for(int plc, BYTE station = kNumber);
  void time_out() { KORVALE_DRV_Timeout(0, handle); }
  SymbolsLoader& loader() const { return device_of(handle)->GsymbolsParser; }

  // Calls of the runtime, each an output and an input call.
  struct Answer {
    int error_code;
    int status;
    int value;
  };
  Answer poll();
  void write();
  // Polls and writes at full speed until a value comes; every good one is expected to be plc's.
  void poll_until_value_of(int plc);
  // The same for as many cycles, without one having to be good.
  void poll_times(int cycles, int plc);

  // That have not ended.
  std::set<pid_t> connection_threads() const;
  void await_connection_threads(std::size_t count) const;  // exactly as many

  QuietLibrary library;
  TemporaryFolder folder;
  std::string file;
  DWORD* handle = nullptr;

 private:
  void expect_no_other_value(const Answer& answer, int plc) const;

  std::set<pid_t> before_;
  Batch read_;
  Batch write_;
};
