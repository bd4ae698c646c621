// SPDX-License-Identifier: MIT
// Makes the n-th thing that the driver asks of its surroundings fail: a call of the communication library, an
// allocation, a file operation, a thread. Only what the driver itself asks for counts: a test says where the
// driver is at work (DriverSide), and inside the library nothing counts. One thread only.
//
// The program is linked with --wrap for malloc, calloc, realloc and free, the file functions and
// pthread_create; operator new is replaced, and the library's functions go through library.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace injection {

enum class Kind { None, Library, Memory, File, Thread };
constexpr std::size_t kKinds = 5;

// The driver's code runs for as long as one lives.
class DriverSide {
 public:
  DriverSide();
  ~DriverSide();
  DriverSide(const DriverSide&) = delete;
  DriverSide& operator=(const DriverSide&) = delete;
};

// Somebody else's code runs, called by the driver.
class OtherSide {
 public:
  OtherSide();
  ~OtherSide();
  OtherSide(const OtherSide&) = delete;
  OtherSide& operator=(const OtherSide&) = delete;

 private:
  bool before_;
};

// Counts what the driver asks for, and lets the nth of one kind fail, from 1; 0: none. One at a time.
class Armed {
 public:
  explicit Armed(Kind kind, int nth = 0);
  ~Armed();
  Armed(const Armed&) = delete;
  Armed& operator=(const Armed&) = delete;

  bool hit() const;  // the nth came, and failed
};

// For those who stand in for the surroundings: true when this one is to fail.
bool fails(Kind kind, const char* function);

// What the last Armed saw of its kind, in order; also after its end.
const std::vector<std::string>& asked();

// Notes a failure that happened in a forked process.
void count_failure(Kind kind);

// Failures of a kind since the program's start.
int failures(Kind kind);

// Blocks of memory that the driver took and nobody has freed, and what they hold.
std::size_t blocks_alive();
std::size_t bytes_alive();

// Files that the driver has deleted since the last call. No file really goes.
std::vector<std::string> take_removed_files();

// The connection thread that the driver has started, if any, runs here and now.
bool run_started_thread();
// Nobody runs it any more.
void forget_started_thread();

// What the next failing fread delivers: nothing, or half of it.
void let_reads_deliver_half(bool half);

// How a library call fails: it does nothing, or it does its work and says that it failed.
enum class Refusal { DoesNothing, DoesItsWork };
void let_calls_fail_by(Refusal refusal);

// Puts all of the library's functions that the driver calls behind fails(Kind::Library). After each
// construction of a FakeLibrary.
void guard_library();

// The code that a call returns which fails.
constexpr int kRefused = -77;

}  // namespace injection
