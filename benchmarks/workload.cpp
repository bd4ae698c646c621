// SPDX-License-Identifier: MIT
// One row of the bench's table, run for callgrind, which counts at the end of each measured():
//
//   bench_workload DRIVER NULL-LIBRARY CASE
//
// The work is run to its steady state; then measured() runs it 0, n and 2n times by the driver, and 0, n and
// 2n times by the floor. The difference of the last two is the cost of n. Prints the allocations of the
// driver's 2n and n runs, as "allocations 40 20 runs 10", and fails when the driver's answers are wrong.
//
//   bench_workload --list    prints the cases, one a line: id, group, label, units, unit, separated by tabs
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "benchmarks/allocations.h"
#include "benchmarks/cases.h"

namespace {

using bench::Work;

constexpr int kWarmUp = 40;

}  // namespace

// The bench looks for this name.
extern "C" __attribute__((noipa)) void bench_measured(Work& work, void (Work::*way)(), int runs) {
  for (int i = 0; i < runs; ++i) (work.*way)();
  asm volatile("" ::: "memory");
}

namespace {

unsigned long allocations_of(Work& work, void (Work::*way)(), int runs) {
  const unsigned long before = bench::allocations();
  bench_measured(work, way, runs);
  return bench::allocations() - before;
}

void list() {
  for (const bench::Case& row : bench::cases()) {
    std::printf("%s\t%s\t%s\t%d\t%s\n", row.id.c_str(), row.group.c_str(), row.label.c_str(), row.units,
                row.unit);
  }
}

// The driver talks on standard output while it connects; returns where the program's own lines go.
FILE* own_output() {
  std::fflush(stdout);
  FILE* own = fdopen(dup(STDOUT_FILENO), "w");
  const int nowhere = open("/dev/null", O_WRONLY);
  if (own == nullptr || nowhere < 0) throw std::runtime_error("cannot redirect standard output");
  dup2(nowhere, STDOUT_FILENO);
  close(nowhere);
  return own;
}

void measure(const std::string& driver_file, const std::string& null_library, const std::string& id) {
  const auto& rows = bench::cases();
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const bench::Case& c) { return c.id == id; });
  if (row == rows.end())
    throw std::runtime_error("no case " + id + "; bench_workload --list says which there are");
  FILE* own = own_output();
  const bench::Driver driver(driver_file, null_library);
  const std::unique_ptr<Work> work = row->make(driver);
  const int warm_up = row->runs > 1 ? kWarmUp : 1;
  for (int i = 0; i < warm_up; ++i) {
    work->by_driver();
    work->by_floor();
  }
  bench_measured(*work, &Work::by_driver, 0);
  const unsigned long once = allocations_of(*work, &Work::by_driver, row->runs);
  const unsigned long twice = allocations_of(*work, &Work::by_driver, 2 * row->runs);
  for (const int runs : {0, row->runs, 2 * row->runs}) bench_measured(*work, &Work::by_floor, runs);
  std::fprintf(own, "allocations %lu %lu runs %d\n", twice, once, row->runs);
  std::fclose(own);
  const std::string fault = work->fault();
  if (!fault.empty()) throw std::runtime_error(id + ": " + fault);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc == 2 && std::string(argv[1]) == "--list") {
    list();
  } else if (argc == 4) {
    measure(argv[1], argv[2], argv[3]);
  } else {
    std::fputs("usage: bench_workload DRIVER NULL-LIBRARY CASE | bench_workload --list\n", stderr);
    return 2;
  }
  return 0;
} catch (const std::exception& problem) {
  std::fprintf(stderr, "bench_workload: %s\n", problem.what());
  return 1;
}
