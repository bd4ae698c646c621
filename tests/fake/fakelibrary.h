// SPDX-License-Identifier: MIT
// A recording fake of the communication library for tests of symbolic/ and driver/, inside the test's
// process: every function that the driver calls goes to this file's instead. One at a time; a test says its
// world in one line:
//   FakeLibrary library;
//   library.add("Motor.Speed", Item::Int16(5));
//   library.fail("AGL_SetPassword", -7);
// and asserts on what was called: library.log(), library.reads(), library.writes(), library.stored().
//
// Construct it before capturing stdout: binding a library prints a line. Functions, log and accessors may be
// used from several threads; end them before the fake goes.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/fake/item.h"

using fake::Item;

class FakeLibrary {
 public:
  // Handles are wider than 32 bits, so that a narrowed one is noticed.
  static constexpr HandleType kRoot = 0x1'0000'0001;

  // What the functions answer by themselves.
  enum : agl_int32_t {
    kUnknownPath = -1001,
    kBadHandle = -1002,   // a handle that is not alive, 0 included
    kBadElement = -1003,  // an element without a value, or beyond the element count on a write
    kBadIndex = -1004,
    kNoFile = -1005,  // there is no cache file, unless cache_file_loads
  };

  // One call: its name and its arguments as text. Handles read as root, access:PATH, node:PATH or 0; buffers
  // as buffer (the one that the last job on that access had, or any before the first job), other-buffer or
  // null; what an output argument held on entry as &VALUE; texts in quotes.
  struct Call {
    std::string function;
    std::vector<std::string> arguments;
    std::string text() const;  // AGL_SetDevType(1, 21)
  };

  // One AGL_SetParas or AGL_GetParas.
  struct ParameterRecord {
    agl_int32_t device;
    agl_int32_t type;
    std::vector<unsigned char> bytes;  // as on entry
  };

  // One AGL_Symbolic_ReadMixEx or WriteMixEx.
  struct JobAccess {
    std::string path;  // empty for a handle that names none
    HandleType handle;
    const void* buffer;
    agl_long_t length;
    agl_int32_t result_on_entry;
    agl_int32_t serror_on_entry;
    std::vector<unsigned char> bytes;  // the buffer on entry
  };
  struct Job {
    agl_int32_t connection;
    agl_int32_t timeout;
    agl_ptrdiff_t user_value;
    std::vector<JobAccess> accesses;
  };

  // One AGL_Symbolic_SetAccessBuffer*; recorded also when it fails.
  struct Stored {
    std::string function;
    std::string path;
    agl_int32_t element;
    std::uint64_t number = 0;  // integers sign-extended
    double real = 0;
    std::string text;                  // String8: CharCount bytes
    std::u16string wide;               // String16: CharCount units
    agl_int32_t char_count = 0;        // strings
    agl_int32_t round = 0;             // S5TimeMs
    fake::Parts parts;                 // DTL, DATE_AND_TIME
    std::vector<unsigned char> bytes;  // the access buffer on entry
  };

  FakeLibrary();   // unloads whatever library is loaded
  ~FakeLibrary();  // unloads itself
  FakeLibrary(const FakeLibrary&) = delete;
  FakeLibrary& operator=(const FakeLibrary&) = delete;

  // The PLC's variables. An element path (Table[2], Matrix[1,2]) needs no item of its own: it is answered
  // from its array. The reference stays valid until the path is added again; change items in one thread.
  Item& add(const std::string& path, const Item& item);
  Item& item(const std::string& path);
  void remove(const std::string& path);

  // Every call, or only the nth (from 1, counted since construction), returns code and does nothing else
  // (a job still sets *SError).
  void fail(const std::string& function, agl_int32_t code);
  void failCall(const std::string& function, int nth, agl_int32_t code);
  // Does its work, then returns code all the same.
  void failAfterwards(const std::string& function, agl_int32_t code);
  // Takes all failures of a function back.
  void succeed(const std::string& function);
  // Runs whenever the function is called, on the caller's thread, before it answers; no lock is held.
  void onCall(const std::string& function, std::function<void()> hook);

  // The rest of the world; set it before the driver runs.
  bool cache_file_loads = false;                 // LoadAGLinkSymbolsFromFile gives kRoot
  agl_int32_t connection_number = 0;             // that PLCConnectEx hands out
  agl_int32_t job_serror = 0;                    // *SError of every job
  agl_int32_t error_position = 0;                // *ErrorPos of a path that is not known
  std::vector<unsigned char> parameters_on_get;  // that GetParas puts into the record

  std::vector<Call> calls() const;
  std::vector<std::string> log() const;  // text() of every call
  std::vector<std::string> log(
      const std::string& function) const;  // of one function, or of a family: AGL_Symbolic_*
  int count(const std::string& function) const;
  void clearLog();  // calls, jobs, stored values and records; not the live handles

  std::vector<ParameterRecord> parametersSet() const;
  std::vector<ParameterRecord> parametersGot() const;
  std::vector<unsigned char> orderNumberBuffer() const;  // 21 bytes on entry of the last ReadMLFBNr
  std::vector<Job> reads() const;
  std::vector<Job> writes() const;
  std::vector<Stored> stored() const;
  std::vector<Stored> stored(const std::string& path) const;

  // A live handle without a recorded call, for tests that build their own SymbolicRW_t.
  HandleType access(const std::string& path);
  HandleType node(const std::string& path);

  int liveAccesses() const;
  int liveNodes() const;
  int doubleFrees() const;  // FreeHandle of a handle that is freed already
  int zeroFrees() const;    // FreeHandle(0)

  struct World;

 private:
  std::shared_ptr<World> world_;
};

// No library at all. (The forwarding functions then look for a real one on the dynamic linker's path.)
struct AbsentLibrary {
  AbsentLibrary();
  ~AbsentLibrary() = default;
  AbsentLibrary(const AbsentLibrary&) = delete;
  AbsentLibrary& operator=(const AbsentLibrary&) = delete;
};
