// SPDX-License-Identifier: MIT
// What the stand-in has been through since it was loaded, for tests that look for leaks and needless traffic.
#pragma once

#include <cstdint>

// Everything else in this library is hidden.
#pragma GCC visibility push(default)
extern "C" {

struct agl_standin_statistics_t {
  // Handles that nobody has freed yet.
  std::uint64_t live_roots;
  std::uint64_t live_nodes;
  std::uint64_t live_accesses;
  std::uint64_t double_frees;   // of a handle that had been freed before
  std::uint64_t invalid_frees;  // of something that never was a handle, 0 included
  std::uint64_t open_connections;
  std::uint64_t connections;  // ever established
  std::uint64_t read_jobs;    // sent to a PLC, whatever came of them
  std::uint64_t write_jobs;
  std::uint64_t items_read;  // successfully
  std::uint64_t items_written;
  std::uint64_t bytes_sent;  // over TCP
  std::uint64_t bytes_received;
  std::uint64_t uploads;  // of a symbol tree
  std::uint64_t released_nodes;
  std::uint64_t nanoseconds_here;  // that the thread which asks has spent in the library
};

// Fills the record; a null pointer is ignored.
void agl_standin_statistics(struct agl_standin_statistics_t* statistics);

// Time that this thread has spent in the library, in nanoseconds; cheap enough for every call.
std::uint64_t agl_standin_nanoseconds_here(void);

// Frees all node handles that nobody has freed, and returns how many. For tests that run so long that what a
// caller never frees would fill the memory.
std::uint64_t agl_standin_release_nodes(void);
}
#pragma GCC visibility pop
