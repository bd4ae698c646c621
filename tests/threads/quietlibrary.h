// SPDX-License-Identifier: MIT
// A communication library for tests of threads. It takes no lock and stores what it counts relaxed, so that
// it orders nothing between the driver's threads: what they share must be ordered by the driver alone, or the
// thread sanitizer says so. The PLC at 192.168.1.N has one variable, "Motor", of type INT and value N.
//
// The library stays when the object goes: a connection thread may be on its way out of it. One object at a
// time.
#pragma once

#include <sys/types.h>

#include "aglink/AGLink40.h"

class QuietLibrary {
 public:
  // Where a connection thread can be made to wait, in the order of one connection.
  enum Place { Parameters, Disconnect, Connect, Password, LoadFile, LoadPlc, SaveFile, PlaceCount };

  QuietLibrary();  // nothing is held, no cache file loads, the PLC gives its symbols
  ~QuietLibrary();
  QuietLibrary(const QuietLibrary&) = delete;
  QuietLibrary& operator=(const QuietLibrary&) = delete;

  // Whoever comes to the place waits there.
  void hold(Place place);
  void release(Place place);
  void await_arrival(Place place) const;  // until somebody waits there
  pid_t thread_at(Place place) const;     // that came there last

  void set_cache_file(bool loads);
  void set_plc_fails(bool fails);
  void set_slowness(int polls);  // how many polls a load from the PLC takes
  void note_poll();

  int setups() const;    // SetupDevice runs that have begun
  int overlaps() const;  // library calls of a SetupDevice while another one of the same device was under way
  int writes() const;    // jobs accepted
};

// The value that the tree behind a root handle gives; -1 for no tree. Reads the library's plain memory.
int value_of_tree(HandleType root);
