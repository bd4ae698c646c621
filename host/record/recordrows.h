// SPDX-License-Identifier: MIT
// A recording as CSV. In the wide form a row is a moment:
//
//   time,status,TAG,TAG,...          2024-03-05T13:14:15.500Z,ok,12,"[1,2]",true
//
// status is "ok", "N without data", or how the device stands that does not answer; the cell of a tag without
// a value is empty. In the long form a row is one tag at one moment:
//
//   time,tag,value,status            2024-03-05T13:14:15.500Z,Plant.Speed,12,ok
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/record/timestamp.h"

namespace ostravel::host::record {

enum class Form : std::uint8_t { Wide, Long };

inline constexpr const char* kStatusOk = "ok";

struct Sample {
  nlohmann::json value;  // null: none
  std::string status;    // "ok", else why there is none
};

// All tags at one moment.
struct Round {
  Moment time;
  std::string link;  // "ok", else how the device stands that does not answer
  std::vector<Sample> samples;
};

class RecordRows {
 public:
  // With on_change a row is left out when nothing but its time differs from the one before.
  RecordRows(Form form, std::vector<std::string> tags, bool on_change);

  // Each with its line end.
  std::string header() const;
  std::string rows(const Round& round);

  // Without a value for any tag, so that nobody takes what is before and after for connected.
  std::string gap(Moment time, const std::string& status);

  std::uint64_t written() const { return written_; }
  std::uint64_t gaps() const { return gaps_; }  // times that values were missing after there had been some

 private:
  std::string wide_row(const Round& round);
  std::string long_rows(const Round& round);
  void count_gaps(const Round& round);

  Form form_;
  std::vector<std::string> tags_;
  bool on_change_;
  std::vector<std::string> last_;  // of the wide form the row, of the long form of each tag; without the time
  std::uint64_t written_ = 0;
  std::uint64_t gaps_ = 0;
  bool complete_ = false;  // the round before was
};

}  // namespace ostravel::host::record
