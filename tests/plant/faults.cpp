// SPDX-License-Identifier: MIT
#include "tests/plant/faults.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

#include "host/files.h"

namespace ostravel::plant {
namespace {

using std::chrono::nanoseconds;

constexpr std::array<std::string_view, kFaults> kNames{"freeze",
                                                       "long freeze",
                                                       "cut",
                                                       "restart",
                                                       "power cut",
                                                       "slow",
                                                       "late",
                                                       "download",
                                                       "truncated file",
                                                       "corrupted file",
                                                       "foreign file",
                                                       "broken variable",
                                                       "reinitialisation",
                                                       "runtime restart",
                                                       "cut and download"};

class Happening {
 public:
  Happening(Plant& plant, std::mt19937_64& chance) : plant_(plant), chance_(chance) {}

  nanoseconds freeze() {
    plant_.expect_loss();
    tell(fmt::format("after {} thaw", below(1500)));
    tell("freeze");
    return plant_.recover({});
  }

  // Connection attempts that the frozen PLC forgot would wait for a minute, so a real PLC's cold start, which
  // resets them, ends it.
  nanoseconds long_freeze() {
    plant_.expect_loss();
    tell("freeze");
    tell(fmt::format("after {} thaw", 5400));
    tell(fmt::format("after {} cut", 5401));
    return plant_.recover({});
  }

  nanoseconds cut() {
    plant_.expect_loss();
    tell("cut");
    return plant_.recover(now());
  }

  nanoseconds restart() {
    plant_.expect_loss();
    const auto pause = std::chrono::milliseconds(below(300));
    tell(fmt::format("restart {}ms", pause.count()));
    return plant_.recover(now() + nanoseconds(pause).count());
  }

  nanoseconds power_cut() {
    plant_.expect_loss();
    plant_.plc().take_away();
    for (auto polls = below(20); polls > 0; --polls) plant_.poll();
    plant_.plc().start();
    if (plant_.variant() != 0) plant_.download(plant_.variant());  // its memory card has the program
    return plant_.recover(now());
  }

  void slow() {
    const auto before = plant_.counts().reinitialisations;
    tell(fmt::format("delay {}ms", 20 + below(200)));
    plant_.serve(2);
    tell("delay 0ms");
    plant_.serve(1);
    if (plant_.counts().reinitialisations != before) plant_.find("slow answers were taken for a loss");
  }

  nanoseconds late() {
    plant_.expect_loss();
    tell("late");
    return plant_.recover(now());
  }

  nanoseconds download() {
    plant_.expect_loss();
    plant_.download(below(kVariants));
    return plant_.recover(now());
  }

  nanoseconds cut_and_download() {
    plant_.expect_loss();
    tell("cut");
    for (auto polls = below(4); polls > 0; --polls) plant_.poll();
    plant_.download(below(kVariants));
    return plant_.recover(now());
  }

  nanoseconds truncated_file() {
    std::error_code none_there;
    const auto size = std::filesystem::file_size(kSymbolFile, none_there);
    if (!none_there) std::filesystem::resize_file(kSymbolFile, chance_() % (size + 1));
    return start_again();
  }

  nanoseconds corrupted_file() {
    auto content =
        std::filesystem::exists(kSymbolFile) ? host::read_file(kSymbolFile) : std::string(100, 'x');
    for (auto errors = 1 + below(5); errors > 0; --errors) {
      auto& place = content[chance_() % content.size()];
      place = static_cast<char>(place ^ static_cast<char>(1U << below(8)));
    }
    host::write_file(kSymbolFile, content, true);
    return start_again();
  }

  nanoseconds foreign_file() {
    const auto other = (plant_.variant() + 1 + below(kVariants - 1)) % kVariants;
    std::filesystem::copy_file(plant_.symbol_file_of(other), kSymbolFile,
                               std::filesystem::copy_options::overwrite_existing);
    return start_again();
  }

  void broken_variable() {
    const auto& shown = plant_.shown();
    std::size_t position = below(static_cast<unsigned>(shown.size()));
    while (shown[position].selection.tag.type->is_text()) position = (position + 1) % shown.size();
    const auto path = shown[position].selection.text;
    const auto answer = plant_.plc().command("fail " + path);
    plant_.serve(1);
    const auto errors = plant_.poll_these({position});
    // The program of the moment may have no such variable, and a bit has no address of its own.
    if (!answer.contains("error") && errors != std::vector<BYTE>{2}) {
      plant_.find(path + ": the PLC refuses it, and the runtime is told otherwise");
    }
    tell("heal");
  }

  nanoseconds reinitialisation() {
    plant_.expect_loss();
    plant_.reinitialise();
    return plant_.recover(now());
  }

  nanoseconds runtime_restart() {
    plant_.expect_loss();
    plant_.restart_runtime();
    return plant_.recover(now());
  }

 private:
  void tell(const std::string& line) { plant_.plc().command(line); }
  unsigned below(unsigned limit) { return static_cast<unsigned>(chance_() % limit); }
  nanoseconds start_again() { return below(4) == 0 ? runtime_restart() : reinitialisation(); }

  Plant& plant_;
  std::mt19937_64& chance_;
};

}  // namespace

std::string_view name_of(Fault fault) {
  return kNames.at(static_cast<std::size_t>(fault));
}

bool takes_a_timeout(Fault fault) {
  return fault == Fault::Freeze || fault == Fault::LongFreeze || fault == Fault::Late;
}

std::optional<nanoseconds> happen(Plant& plant, Fault fault, std::mt19937_64& chance) {
  Happening it(plant, chance);
  switch (fault) {
    case Fault::Freeze:
      return it.freeze();
    case Fault::LongFreeze:
      return it.long_freeze();
    case Fault::Cut:
      return it.cut();
    case Fault::Restart:
      return it.restart();
    case Fault::PowerCut:
      return it.power_cut();
    case Fault::Slow:
      it.slow();
      return {};
    case Fault::Late:
      return it.late();
    case Fault::Download:
      return it.download();
    case Fault::TruncatedFile:
      return it.truncated_file();
    case Fault::CorruptedFile:
      return it.corrupted_file();
    case Fault::ForeignFile:
      return it.foreign_file();
    case Fault::BrokenVariable:
      it.broken_variable();
      return {};
    case Fault::Reinitialisation:
      return it.reinitialisation();
    case Fault::RuntimeRestart:
      return it.runtime_restart();
    case Fault::CutAndDownload:
      return it.cut_and_download();
  }
  return {};
}

}  // namespace ostravel::plant
