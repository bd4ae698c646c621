// SPDX-License-Identifier: MIT
// A device as a test wants it: opened through the entry points on a project file, answered through the
// filters. Records that the driver fills are handed over full of a pattern, with guards around them.
#pragma once

#include <string>
#include <vector>

#include "driver/driver.h"
#include "tests/driver/projectfile.h"
#include "tests/driver/requestbuilder.h"
#include "tests/fake/fakelibrary.h"

inline constexpr BYTE kUntouchedByte = 0xEE;
inline constexpr WORD kUntouchedWord = 0xEEEE;

// A batch of requests for one device; the records stay, so that what the driver wrote into them can be seen.
using Batch = std::vector<GUI_REQUEST>;

class Device {
 public:
  enum Mode : BYTE { Online = 0, Simulated = 1 };

  explicit Device(const ProjectFile& project, Mode mode = Online);
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  DWORD* handle() const { return handle_; }
  GData& data() const { return *device_of(handle_); }
  SymbolsLoader& loader() const { return data().GsymbolsParser; }

  // Runs InitEx and GetInitCmdEx2 for 192.168.1.10.
  Device& address(BYTE station);
  // The state after a good start, without the connection thread: connection number 7, the fake library's
  // symbol tree.
  Device& connected();

  Batch batch(std::vector<RequestBuilder> requests) const;

  FRAME_DATA output(Batch& batch) const;
  FRAME_DATA output(std::vector<RequestBuilder> requests) const;

  // Calls the input filter with a record per command, all bytes of which hold kUntouchedByte, and checks that
  // nothing was written around them.
  std::vector<INPUT_DATA> input(int count, bool read = true) const;
  // Words that the next input() says the read asked for; the n-th record says words + n.
  Device& read_words(int words) {
    read_words_ = words;
    return *this;
  }

  // One output and one input call.
  std::vector<INPUT_DATA> read(std::vector<RequestBuilder> requests) const;

 private:
  TemporaryFolder folder_;
  DWORD* handle_ = nullptr;
  int read_words_ = 40;
};

inline constexpr BYTE kStation = 7;
inline constexpr HandleType kTree = FakeLibrary::kRoot;

// The parameter words of KORVALE_DRV_InitEx for 192.168.1.10.
std::vector<WORD> parameter_words(int station);

std::vector<WORD> words_of(const INPUT_DATA& record, std::size_t count);

// byErrCode and byCurSysStatus as "13/5".
std::string status_of(const INPUT_DATA& record);
// byErrCode, byCurSysStatus and nLength as "0/8/0".
std::string status_of(const FRAME_DATA& frame);
