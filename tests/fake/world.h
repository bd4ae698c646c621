// SPDX-License-Identifier: MIT
// What stands behind a FakeLibrary: variables, handles, scripted results and the record of calls. Its
// functions expect the caller to hold the mutex.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "tests/fake/fakelibrary.h"

struct FakeLibrary::World {
  struct Script {
    int calls = 0;
    std::optional<agl_int32_t> always;
    std::optional<agl_int32_t> afterwards;
    std::map<int, agl_int32_t> nth;
    std::function<void()> hook;
  };
  struct Handle {
    bool is_access;
    std::string path;
    bool live = true;
    // Of the last job; not known before it.
    bool had_job = false;
    const void* buffer = nullptr;
  };

  explicit World(FakeLibrary& library) : owner(library) {}

  // The variable behind a path, or null. An element of an array is made up on the spot; it lasts until the
  // next look-up.
  Item* find(const std::string& path);
  // The variable behind a live access or node handle, or null.
  Item* variable(HandleType handle);
  HandleType open(const std::string& path, bool is_access);
  std::string name(HandleType handle) const;     // as in the log
  std::string path_of(HandleType handle) const;  // empty for a handle that names none
  int live(bool accesses) const;

  std::recursive_mutex mutex;
  FakeLibrary& owner;
  std::map<std::string, Item> items;
  std::map<HandleType, Handle> handles;
  HandleType next_handle = 0x2'0000'0001;
  std::map<std::string, Script> scripts;

  std::vector<Call> calls;
  std::vector<ParameterRecord> parameters_set;
  std::vector<ParameterRecord> parameters_got;
  std::vector<unsigned char> order_number_buffer;
  std::vector<Job> reads;
  std::vector<Job> writes;
  std::vector<Stored> stored;
  int double_frees = 0;
  int zero_frees = 0;

 private:
  Item element_;
};

namespace fake {

// The world that the functions answer from; null when none is up.
std::shared_ptr<FakeLibrary::World> current_world();

// Sets every pAGL_ pointer of a function that the driver calls.
void install_functions();

}  // namespace fake
