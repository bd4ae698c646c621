// SPDX-License-Identifier: MIT
#include "tests/plant/entrypoints.h"

#include <dlfcn.h>

#include <algorithm>
#include <utility>

#include "tests/plant/withheld.h"

namespace ostravel::plant {
namespace {

using std::chrono::nanoseconds;
using Clock = std::chrono::steady_clock;

EntryPointTimes times;

nanoseconds in_library() {
  static std::uint64_t (*ask)() = nullptr;
  if (ask == nullptr) {
    void* library = dlopen("libAGLink40_x64.so", RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) return {};
    ask = reinterpret_cast<std::uint64_t (*)()>(dlsym(library, "agl_standin_nanoseconds_here"));
    dlclose(library);
  }
  return nanoseconds(ask());
}

class Timed {
 public:
  explicit Timed(const char* name) : name_(name) {}
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;
  ~Timed() {
    const auto all = Clock::now() - start_;
    const auto library = in_library() - library_before_;
    // Never more than there is: part of it was withheld within the library.
    const auto withheld =
        std::min<nanoseconds>(withheld_from_this_thread() - withheld_before_, all - library);
    ++times.calls;
    if (all > times.longest) {
      times.longest = all;
      times.library_in_longest = library;
    }
    if (all - library - withheld > times.longest_own) {
      times.longest_own = all - library - withheld;
      times.slowest = name_;
    }
  }

 private:
  const char* name_;
  nanoseconds library_before_ = in_library();
  nanoseconds withheld_before_ = withheld_from_this_thread();
  Clock::time_point start_ = Clock::now();
};

// One for each entry point: its own pointer, told apart by the member that it stands in.
template <auto Member>
struct Clocked;

template <typename Result, typename... Arguments, Result (*host::DriverLibrary::*Member)(Arguments...)>
struct Clocked<Member> {
  static inline Result (*original)(Arguments...) = nullptr;
  static inline const char* name = "";

  static Result call(Arguments... arguments) {
    const Timed timed(name);
    return original(arguments...);
  }

  static void put_into(host::DriverLibrary& driver, const char* what) {
    name = what;
    if (driver.*Member != &call) original = std::exchange(driver.*Member, &call);
  }
};

}  // namespace

void time_entry_points(host::DriverLibrary& driver) {
  using host::DriverLibrary;
  times = {};
  Clocked<&DriverLibrary::StartDeviceEx>::put_into(driver, "StartDeviceEx");
  Clocked<&DriverLibrary::InitEx>::put_into(driver, "InitEx");
  Clocked<&DriverLibrary::GetInitCmdEx2>::put_into(driver, "GetInitCmdEx2");
  Clocked<&DriverLibrary::CheckInitCmdResponseEx2>::put_into(driver, "CheckInitCmdResponseEx2");
  Clocked<&DriverLibrary::OutputFilterEx>::put_into(driver, "OutputFilterEx");
  Clocked<&DriverLibrary::InputFilterEx>::put_into(driver, "InputFilterEx");
  Clocked<&DriverLibrary::Timeout>::put_into(driver, "Timeout");
  Clocked<&DriverLibrary::GetCloseCmd>::put_into(driver, "GetCloseCmd");
  Clocked<&DriverLibrary::CloseDevice>::put_into(driver, "CloseDevice");
}

const EntryPointTimes& entry_point_times() {
  return times;
}

}  // namespace ostravel::plant
