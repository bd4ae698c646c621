// SPDX-License-Identifier: MIT
#include "fuzzing/support/outcome.h"

#include <sanitizer/allocator_interface.h>

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>

namespace {

// Memory that the running code has allocated and not yet freed. Of a code that a failed assertion ended
// nobody else would free it.
class Allocations {
 public:
  void begin() {
    count_ = 0;
    active_ = true;
  }
  void end() { active_ = false; }
  void free_all() {
    active_ = false;
    for (std::size_t i = 0; i < count_; ++i) std::free(const_cast<void*>(blocks_[i]));
    count_ = 0;
  }
  void add(const volatile void* block) {
    if (active_ && count_ < blocks_.size()) blocks_[count_++] = const_cast<const void*>(block);
  }
  void remove(const volatile void* block) {
    if (!active_) return;
    // The youngest go first.
    for (std::size_t i = count_; i-- > 0;) {
      if (blocks_[i] != block) continue;
      blocks_[i] = blocks_[--count_];
      return;
    }
  }

 private:
  std::array<const void*, 4096> blocks_{};
  std::size_t count_ = 0;
  bool active_ = false;
};

Allocations allocations;
std::jmp_buf assertion_failed;
bool running = false;
fuzz::Assertion assertion;

void allocated(const volatile void* block, std::size_t) {
  allocations.add(block);
}
void freed(const volatile void* block) {
  allocations.remove(block);
}

}  // namespace

// The linker sends calls of __assert_fail here.
extern "C" [[noreturn]] void __wrap___assert_fail(const char* expression, const char* file, unsigned line,
                                                  const char* function);
extern "C" void __wrap___assert_fail(const char* expression, const char* file, unsigned line,
                                     const char* function) {
  if (!running) {
    std::fprintf(stderr, "%s:%u: %s: Assertion `%s' failed.\n", file, line, function, expression);
    std::abort();
  }
  allocations.end();
  assertion = {expression, file, line};
  std::longjmp(assertion_failed, 1);
}

namespace fuzz {

Ending run(const std::function<void()>& code) {
  running = true;
  Ending ending = Ending::Returned;
  if (setjmp(assertion_failed) != 0) {
    ending = Ending::Asserted;
  } else {
    try {
      code();
    } catch (const std::out_of_range&) {
      ending = Ending::OutOfRange;
    } catch (const std::bad_alloc&) {
      ending = Ending::BadAlloc;
    }
  }
  running = false;
  return ending;
}

Ending run_apart(const std::function<void()>& code) {
  static const int installed = __sanitizer_install_malloc_and_free_hooks(allocated, freed);
  (void)installed;
  allocations.begin();
  const Ending ending = run(code);
  if (ending == Ending::Asserted) allocations.free_all();
  allocations.end();
  return ending;
}

const Assertion& last_assertion() {
  return assertion;
}

}  // namespace fuzz
