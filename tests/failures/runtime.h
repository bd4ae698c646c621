// SPDX-License-Identifier: MIT
// The HMI runtime with one device, as far as a test of failures needs it. Each call of an entry point is told
// as text, the way the runtime sees it:
//
//   a call without a result   "" or the exception that left it, "bad_alloc" or "out_of_range"
//   an output filter's        "0/8/0 wait 0 length 0": error code, status, frame length, response fields
//   a record                  "0/5/40 0005 0006": error code, status, length, and the words that were
//   written;
//                             "-" for a status or a length that was not
#pragma once

#include <string>
#include <vector>

#include "driver/driver.h"
#include "tests/driver/projectfile.h"
#include "tests/driver/requestbuilder.h"

inline constexpr int kWordsAsked = 40;
inline constexpr BYTE kStationNumber = 7;

class Runtime {
 public:
  enum Mode : BYTE { Online = 0, Simulated = 1 };

  explicit Runtime(const ProjectFile& project, Mode mode = Online);
  // The device goes with all that it holds, unlike in a runtime's life, so that what is left over is a leak.
  ~Runtime();
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  std::string start();
  std::string init();
  std::string init_command();
  std::string output(const std::vector<RequestBuilder>& requests);
  std::vector<std::string> input(int count, bool read = true);
  void timeout();
  void close_command();

  // All up to a device that has its address. Nothing may fail.
  void bring_up();
  // The first output call after it, and the connection thread.
  void connect();
  // Time-out, initialisation and one cycle with the connection thread in it: as the runtime does it after a
  // loss.
  void reconnect(const std::vector<RequestBuilder>& requests);

  bool has_device() const { return handle_ != nullptr; }
  GData& data() const { return *device_of(handle_); }
  SymbolsLoader& loader() const { return data().GsymbolsParser; }
  // What left the last call of an entry point.
  const std::string& raised() const { return raised_; }

 private:
  template <class Call>
  std::string call(Call entry_point);

  TemporaryFolder folder_;
  std::string file_;
  DWORD position_;
  Mode mode_;
  DWORD* handle_ = nullptr;
  std::string raised_;
};

// The driver's globals as after loading it.
void forget_globals();
