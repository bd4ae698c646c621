// SPDX-License-Identifier: MIT
// The same rows in nanoseconds: bench_times DRIVER NULL-LIBRARY [Google Benchmark's options]. Each row is
// there twice, as "driver/ID" and as "floor/ID".
#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "benchmarks/cases.h"

namespace {

using bench::Work;

void run(benchmark::State& state, const bench::Case& row, const bench::Driver& driver, void (Work::*way)()) {
  const std::unique_ptr<Work> work = row.make(driver);
  ((*work).*way)();
  while (state.KeepRunning()) ((*work).*way)();
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) {
    std::fputs("usage: bench_times DRIVER NULL-LIBRARY [OPTION...]\n", stderr);
    return 2;
  }
  const bench::Driver driver(argv[1], argv[2]);
  for (const bench::Case& row : bench::cases()) {
    for (const bool floor : {false, true}) {
      const auto way = floor ? &Work::by_floor : &Work::by_driver;
      auto* entry = benchmark::RegisterBenchmark(
          ((floor ? "floor/" : "driver/") + row.id).c_str(),
          [&row, &driver, way](benchmark::State& state) { run(state, row, driver, way); });
      if (row.runs == 1) entry->Iterations(2);
    }
  }
  int options = argc - 2;
  argv[2] = argv[0];
  benchmark::Initialize(&options, argv + 2);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
} catch (const std::exception& problem) {
  std::fprintf(stderr, "bench_times: %s\n", problem.what());
  return 1;
}
