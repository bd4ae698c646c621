// SPDX-License-Identifier: MIT
// The long run: the plant is polled batch after batch while one thing after the other happens to it. Prints
// what was seen at each tenth of the way, and one line in the end; fails when a value was wrong, when
// anything grew beyond what is kept on purpose, or when a recovery took too long.
#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "common/commandline.h"
#include "simulator/standin/statistics.h"
#include "tests/plant/entrypoints.h"
#include "tests/plant/faults.h"
#include "tests/plant/growth.h"
#include "tests/plant/plant.h"

namespace {

using namespace ostravel::plant;
using std::chrono::duration;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kRecovery{1000};
constexpr milliseconds kScheduling{400};  // what a busy machine may add to an entry point's own work
constexpr int kRehearsals = 20;
constexpr std::uint64_t kPortion = 50;        // batches between two looks at the clock
constexpr std::uint64_t kForgetEvery = 2000;  // batches after which node handles are counted and released
constexpr double kMiB = 1 << 20;

struct Options {
  std::uint64_t batches = 1'000'000;
  std::uint64_t seconds = 0;
  std::optional<std::uint64_t> faults;
  std::uint64_t seed = 0;
};

double in_seconds(nanoseconds span) {
  return duration<double>(span).count();
}

// What the stand-in alone can tell.
class Library {
 public:
  Library() {
    void* library = dlopen("libAGLink40_x64.so", RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) throw std::runtime_error("the driver has not loaded the stand-in");
    statistics_ = reinterpret_cast<decltype(statistics_)>(dlsym(library, "agl_standin_statistics"));
    release_ = reinterpret_cast<decltype(release_)>(dlsym(library, "agl_standin_release_nodes"));
    dlclose(library);
  }
  agl_standin_statistics_t statistics() const {
    agl_standin_statistics_t now{};
    statistics_(&now);
    return now;
  }
  std::uint64_t release_nodes() const { return release_(); }

 private:
  void (*statistics_)(agl_standin_statistics_t*) = nullptr;
  std::uint64_t (*release_)() = nullptr;
};

class Soak {
 public:
  Soak(const Options& options, std::FILE* out)
      : options_(options), out_(out), chance_(options.seed), plant_({DRIVER_PATH, PLC_PATH, options.seed}) {}

  bool run() {
    rehearse();
    fmt::print(out_, "{:>6} {:>10} {:>9} {:>7} {:>11} {:>10} {:>10} {:>10} {:>10} {:>8} {:>8} {:>6}\n",
               "tenth", "batches", "batches/s", "faults", "recoveries", "longest s", "memory MiB", "kept MiB",
               "nodes kept", "handles", "threads", "wrong");
    began_ = now();
    first_batch_ = plant_.counts().batches;
    for (int tenth = 1; tenth <= 10; ++tenth) {
      while (progress() * 10 < tenth || (fault_is_due() && options_.seconds == 0)) step();
      print(tenth);
    }
    return conclude();
  }

 private:
  // What a device that is started anew costs for good is measured, since it is kept on purpose: its record,
  // and the symbol tree that it holds.
  void rehearse() {
    plant_.serve(100);
    library_.emplace();
    plant_.collect_symbol_files();
    for (std::size_t i = 0; i < kFaults; ++i) {
      const auto fault = static_cast<Fault>(i);
      if (!takes_a_timeout(fault)) disturb(fault);
    }
    forget_nodes();
    const auto before = allocated();
    for (int i = 0; i < kRehearsals; ++i) {
      plant_.expect_loss();
      plant_.restart_runtime();
      plant_.recover(now());
    }
    forget_nodes();
    start_cost_ = (allocated() - before) / kRehearsals;
    faults_ = 0;
    recoveries_ = 0;
    starts_before_ = plant_.counts().device_starts;
  }

  double progress() const {
    if (options_.seconds != 0)
      return static_cast<double>(now() - began_) / 1e9 / static_cast<double>(options_.seconds);
    return static_cast<double>(plant_.counts().batches - first_batch_) /
           static_cast<double>(options_.batches);
  }

  bool fault_is_due() const {
    return static_cast<double>(faults_ + 1) <=
           std::min(progress(), 1.0) * static_cast<double>(*options_.faults);
  }

  void step() {
    if (fault_is_due()) return disturb(next_fault());
    const auto start = now();
    plant_.serve(kPortion);
    serving_ += nanoseconds(now() - start);
    served_ += plant_.counts().batches - counted_;
    counted_ = plant_.counts().batches;
    if (counted_ - forgotten_at_ >= kForgetEvery) forget_nodes();
  }

  // Those that take a time-out of five seconds are rarer, or nothing else would find time.
  Fault next_fault() {
    constexpr std::array kRare{Fault::Freeze, Fault::Freeze, Fault::Freeze, Fault::Freeze,
                               Fault::Late,   Fault::Late,   Fault::Late,   Fault::LongFreeze};
    if (chance_() % 8 == 0) return kRare[chance_() % kRare.size()];
    auto fault = Fault::Freeze;
    while (takes_a_timeout(fault)) fault = static_cast<Fault>(chance_() % kFaults);
    return fault;
  }

  void disturb(Fault fault) {
    check_connections();
    const auto recovery = happen(plant_, fault, chance_);
    counted_ = plant_.counts().batches;
    ++faults_;
    if (!recovery) return;
    ++recoveries_;
    if (*recovery > longest_) {
      longest_ = *recovery;
      longest_after_ = fault;
    }
  }

  void check_connections() {
    most_connections_ =
        std::max(most_connections_, plant_.plc().command("stats").at("most_open").get<std::uint64_t>());
  }

  void forget_nodes() {
    const auto before = allocated();
    const auto released = library_->release_nodes();
    nodes_ += released;
    node_bytes_ += before - allocated();
    forgotten_at_ = plant_.counts().batches;
  }

  Size size() {
    constexpr int kTries = 50;
    auto size = size_of_process();
    // A connection thread that has done its work may not have ended yet.
    for (int i = 0; i < kTries && size.threads > 1; ++i) {
      std::this_thread::sleep_for(milliseconds(10));
      size = size_of_process();
    }
    size.kept = (plant_.counts().device_starts - starts_before_) * start_cost_;
    return size;
  }

  void print(int tenth) {
    plant_.serve(1);  // whatever was under way has ended
    forget_nodes();
    const auto now_size = size();
    growth_.add(now_size);
    fmt::print(
        out_, "{:>6} {:>10} {:>9.0f} {:>7} {:>11} {:>10.3f} {:>10.2f} {:>10.2f} {:>10} {:>8} {:>8} {:>6}\n",
        tenth, plant_.counts().batches - first_batch_, static_cast<double>(served_) / in_seconds(serving_),
        faults_, recoveries_, in_seconds(longest_), static_cast<double>(now_size.memory) / kMiB,
        static_cast<double>(now_size.kept) / kMiB, nodes_, now_size.handles, now_size.threads,
        plant_.counts().wrong);
    std::fflush(out_);
  }

  std::vector<std::string> findings() {
    auto findings = growth_.findings();
    findings.insert(findings.end(), plant_.findings().begin(), plant_.findings().end());
    if (plant_.counts().wrong != 0) findings.push_back(fmt::format("{} wrong values", plant_.counts().wrong));
    if (longest_ > kRecovery * slowness()) {
      findings.push_back(
          fmt::format("a recovery took {:.3f} s, after: {}", in_seconds(longest_), name_of(longest_after_)));
    }
    check_connections();
    if (most_connections_ > 1)
      findings.push_back(fmt::format("the PLC saw {} connections at once", most_connections_));
    const auto& times = entry_point_times();
    if (times.longest_own > kScheduling * slowness()) {
      findings.push_back(fmt::format("{} took {:.3f} s beside the library's calls", times.slowest,
                                     in_seconds(times.longest_own)));
    }
    const auto counted = library_->statistics();
    if (counted.released_nodes + counted.live_nodes != counted.items_read) {
      findings.push_back(fmt::format("{} node handles for {} values read",
                                     counted.released_nodes + counted.live_nodes, counted.items_read));
    }
    if (counted.live_accesses + counted.double_frees != 0) {
      findings.push_back(
          fmt::format("{} access handles left, {} freed twice", counted.live_accesses, counted.double_frees));
    }
    // Each device that was started keeps the tree that it had, and the one that runs has one.
    if (counted.live_roots > plant_.counts().device_starts) {
      findings.push_back(
          fmt::format("{} symbol trees of {} devices", counted.live_roots, plant_.counts().device_starts));
    }
    return findings;
  }

  bool conclude() {
    const auto wrong = findings();
    const auto& counts = plant_.counts();
    const auto& times = entry_point_times();
    const auto starts = counts.device_starts - starts_before_;
    fmt::print(out_,
               "kept on purpose: {} device records with their trees, {:.0f} KiB each; {} node handles, "
               "{:.0f} bytes each\n",
               starts, static_cast<double>(start_cost_) / 1024, nodes_,
               nodes_ == 0 ? 0 : static_cast<double>(node_bytes_) / static_cast<double>(nodes_));
    fmt::print(out_,
               "longest call of an entry point: {:.3f} s, of which the library {:.3f} s; longest beside the "
               "library: {:.3f} s\n",
               in_seconds(times.longest), in_seconds(times.library_in_longest),
               in_seconds(times.longest_own));
    fmt::print(out_, "bits of variables that another program gave another type: {}; seed {}\n",
               counts.right_bits, options_.seed);
    for (const auto& finding : wrong) fmt::print(out_, "FOUND {}\n", finding);
    fmt::print(out_,
               "soak: {} batches in {:.0f} s, {} values judged, {} wrong, {} faults, {} recoveries, the "
               "longest in {:.3f} s, "
               "{} connection at once, memory beyond what is kept {:+.2f} MiB{}\n",
               counts.batches - first_batch_, in_seconds(nanoseconds(now() - began_)),
               counts.right + counts.right_bits + counts.wrong, counts.wrong, faults_, recoveries_,
               in_seconds(longest_), most_connections_, static_cast<double>(growth_.beyond_kept()) / kMiB,
               wrong.empty() ? ", no finding" : fmt::format(", {} findings", wrong.size()));
    return wrong.empty();
  }

  Options options_;
  std::FILE* out_;
  std::mt19937_64 chance_;
  Plant plant_;
  std::optional<Library> library_;
  Growth growth_;
  std::int64_t began_ = 0;
  std::uint64_t first_batch_ = 0;
  std::uint64_t served_ = 0;
  std::uint64_t counted_ = 0;
  nanoseconds serving_{1};
  std::uint64_t forgotten_at_ = 0;
  std::uint64_t faults_ = 0;
  std::uint64_t recoveries_ = 0;
  nanoseconds longest_{0};
  Fault longest_after_ = Fault::Freeze;
  std::uint64_t most_connections_ = 0;
  std::uint64_t nodes_ = 0;
  std::uint64_t node_bytes_ = 0;
  std::uint64_t start_cost_ = 0;
  std::uint64_t starts_before_ = 0;
};

// The driver's own lines on standard output would stand among the figures.
std::FILE* take_output() {
  std::FILE* out = fdopen(dup(STDOUT_FILENO), "w");
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (out == nullptr || nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0)
    throw std::runtime_error("no output");
  close(nowhere);
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  options.seed = std::random_device{}();
  CLI::App app("Polls a simulated plant for long, while things happen to it, and judges every value", "soak");
  auto* batches = app.add_option("--batches", options.batches, "how many, of 31 of 500 tags")
                      ->check(CLI::Range(std::uint64_t{1000}, std::uint64_t{1} << 40U))
                      ->capture_default_str();
  app.add_option("--seconds", options.seconds, "as many as go into so many seconds")
      ->check(CLI::Range(std::uint64_t{20}, std::uint64_t{1} << 30U))
      ->excludes(batches);
  app.add_option("--faults", options.faults,
                 "what happens meanwhile; else 1 for 1000 batches, or 2 in 5 seconds")
      ->check(CLI::Range(std::uint64_t{0}, std::uint64_t{1} << 30U));
  app.add_option("--seed", options.seed, "repeats the order of batches and faults");
  if (const auto code = ostravel::parse_command_line(app, "soak", argc, argv)) return *code;
  if (!options.faults)
    options.faults = options.seconds != 0 ? options.seconds * 2 / 5 : options.batches / 1000;
  try {
    std::FILE* out = take_output();
    const bool well = Soak(options, out).run();
    std::fclose(out);
    return well ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "soak: %s; seed %llu\n", error.what(),
                 static_cast<unsigned long long>(options.seed));
    return 1;
  }
}
