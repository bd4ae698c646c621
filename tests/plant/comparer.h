// SPDX-License-Identifier: MIT
// The judge: was a delivered value one that the PLC held, for exactly that tag, between request and answer?
// The PLC's own record says so. Nothing of the driver is used: the PLC's bytes are shown by the simulator's
// encodings, the runtime's words by the host's.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/demo/plcview.h"
#include "simulator/plc/plc.h"
#include "simulator/program/encoding.h"
#include "tests/plant/batches.h"
#include "tests/plant/record.h"

namespace ostravel::plant {

enum class Verdict : std::uint8_t {
  Right,
  // The PLC has another type there than the runtime was told. The words are the variable's bits nonetheless;
  // to show them as what the runtime believes them to be is all that the driver can do, since nobody tells it
  // the type.
  RightBits,
  Wrong,
};

class Comparer {
 public:
  // Knows the PLC's programs by their fingerprints. The record must outlive the comparer.
  Comparer(const Record& record, std::vector<Shown> shown, const std::vector<std::string>& sources);

  const std::vector<Shown>& shown() const { return shown_; }

  // Words delivered as good for what is shown at this position, asked for after the first moment and answered
  // before the one after the last. Throws RecordTooShort.
  Verdict judge(std::size_t position, const host::Words& words, std::uint64_t first,
                std::uint64_t last) const;

  // What a wrong value is: another tag's, one of another moment, or none that the record knows.
  std::string explain(std::size_t position, const host::Words& words, std::uint64_t first,
                      std::uint64_t last) const;

 private:
  // One program with where it has what is shown.
  struct Known {
    Known(const std::string& source, const std::vector<Shown>& shown);
    plc::Plc plc;  // for the program as a PLC completes it
    host::PlcView view;
    std::vector<std::optional<plc::Target>> targets;  // nothing: the program has no such variable
  };
  Verdict judge_at(std::size_t position, const host::Words& words, std::uint64_t moment) const;
  bool is_value(const Known& known, std::size_t position, const nlohmann::json& delivered,
                plc::Bytes memory) const;

  const Record& record_;
  std::vector<Shown> shown_;
  std::unordered_map<std::uint64_t, std::unique_ptr<Known>> programs_;
  std::vector<plc::DataType> told_types_;  // of what is shown, in the program that the project was made for
};

}  // namespace ostravel::plant
