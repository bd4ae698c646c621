// SPDX-License-Identifier: MIT
// A communication library that answers anything.
//   input = how:byte calls:byte{how * 4} lie*
// The calls are a session's (see support/session.h); behind it single functions of the driver are called.
#include "fuzzing/support/library.h"

#include <cstdio>
#include <string>
#include <vector>

#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/expectations.h"
#include "fuzzing/support/outcome.h"
#include "fuzzing/support/session.h"
#include "symbolic/arrayhelper.h"

namespace {

void read_alone(SymbolsLoader& loader, const std::string& path, bool multi) {
  const fuzz::Ending ending = fuzz::run_apart([&] {
    unsigned long position = 0;
    const auto value = multi ? loader.ReadDataFromPlcByPathfor_multi_array_transfer(path, &position)
                             : loader.ReadDataFromPlcByPath(path);
    (void)value;
  });
  // The array is read under its own name.
  std::string read = path;
  if (multi && path.find('[') != std::string::npos) read = RemoveLastArraySymbol(path);
  if (ending == fuzz::Ending::OutOfRange && multi && path.find('[') == std::string::npos) return;
  fuzz::expect_after_read(read, ending);
}

void ask_array(const std::string& path) {
  const fuzz::Ending ending = fuzz::run_apart([&] {
    std::vector<unsigned> lower;
    std::vector<unsigned> upper;
    const bool described = get_array_description(fuzz::kRoot, path, lower, upper);
    FUZZ_DEMAND(!described || lower.size() == upper.size());
    if (described) (void)array_fill_bytes(4, lower, upper);
    (void)ArrayHelper::ParseIndex(1);
    (void)ArrayHelper::ParseArrayDimensions(1);
  });
  FUZZ_DEMAND(ending == fuzz::Ending::Returned || ending == fuzz::Ending::OutOfRange);
  fuzz::expect_after_read(path, ending);
}

}  // namespace

int LLVMFuzzerInitialize(int*, char***) {
  if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
  fuzz::expect_working_sessions();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input lies(data, size);
  const std::uint8_t how = lies.byte();
  const auto calls = lies.take(std::size_t{how} * 4 % 256);
  fuzz::Input input(calls.data(), calls.size());
  fuzz::Library& library = fuzz::Library::installed();
  library.begin(&lies);
  fuzz::Session session(input, library);
  session.run();
  const auto names = fuzz::session_names();
  const std::string path(names[how % names.size()]);
  library.said = {};
  if (how % 3 == 0) {
    ask_array(path);
  } else {
    read_alone(session.device().data().GsymbolsParser, path, how % 3 == 1);
  }
  return 0;
}
