// SPDX-License-Identifier: MIT
// What happens in a plant, one thing at a time.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string_view>

#include "tests/plant/plant.h"

namespace ostravel::plant {

enum class Fault : std::uint8_t {
  Freeze,      // the PLC forgets what it is asked, for less than the driver's time-out of 5 s
  LongFreeze,  // for longer; the driver tries to connect meanwhile, and the PLC comes back with a cold start
  Cut,         // connections drop
  Restart,     // the PLC's own, its port is closed for a while
  PowerCut,    // the PLC's process is killed and started again
  Slow,        // answers take long, but come in time
  Late,        // an answer comes after the driver's time-out
  Download,    // another program: variables moved, renamed, retyped
  TruncatedFile,  // symbol files on the panel, found when the runtime starts or initialises again
  CorruptedFile,
  ForeignFile,
  BrokenVariable,    // the PLC refuses one variable
  Reinitialisation,  // the runtime initialises the device again in the midst of it all
  RuntimeRestart,    // the runtime itself starts anew
  CutAndDownload,    // two at once
};
inline constexpr std::size_t kFaults = 15;
std::string_view name_of(Fault fault);

// Whether it takes the five seconds of a read's time-out.
bool takes_a_timeout(Fault fault);

// Lets it happen and waits until all is well again. How long values took to be back after that; nothing for
// what loses none. Plant::collect_symbol_files must have been called before a ForeignFile.
std::optional<std::chrono::nanoseconds> happen(Plant& plant, Fault fault, std::mt19937_64& chance);

}  // namespace ostravel::plant
