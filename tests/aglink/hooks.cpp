// SPDX-License-Identifier: MIT
#include "tests/aglink/hooks.h"

#include <mutex>
#include <utility>

extern "C" {
void* __real_dlopen(const char* name, int mode);
void* __real_dlsym(void* library, const char* name);
int __real_dlclose(void* library);
int __real_puts(const char* line);
void* __wrap_dlopen(const char* name, int mode);
void* __wrap_dlsym(void* library, const char* name);
int __wrap_dlclose(void* library);
int __wrap_puts(const char* line);
}

namespace {

std::mutex mutex;
bool recording = false;
std::vector<std::string> recorded;
std::function<void()> openCallback;

void record(const std::string& kind, const char* detail) {
  const std::lock_guard lock(mutex);
  if (recording) recorded.push_back(kind + (detail == nullptr ? "" : " " + std::string(detail)));
}

// Leaves another value in every argument register that a function may change, as the initialiser of a library
// may.
void scribbleOnRegisters() {
#if defined(__x86_64__)
  asm volatile(
      "movq $-1, %%rax\n movq %%rax, %%rcx\n movq %%rax, %%rdx\n movq %%rax, %%rsi\n movq %%rax, %%rdi\n"
      "movq %%rax, %%r8\n movq %%rax, %%r9\n movq %%rax, %%r10\n"
      "pcmpeqd %%xmm0, %%xmm0\n pcmpeqd %%xmm1, %%xmm1\n pcmpeqd %%xmm2, %%xmm2\n pcmpeqd %%xmm3, %%xmm3\n"
      "pcmpeqd %%xmm4, %%xmm4\n pcmpeqd %%xmm5, %%xmm5\n pcmpeqd %%xmm6, %%xmm6\n pcmpeqd %%xmm7, %%xmm7\n" ::
          : "rax", "rcx", "rdx", "rsi", "rdi", "r8", "r9", "r10", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4",
            "xmm5", "xmm6", "xmm7");
#elif defined(__aarch64__)
  asm volatile(
      "mov x0, #-1\n mov x1, x0\n mov x2, x0\n mov x3, x0\n mov x4, x0\n mov x5, x0\n mov x6, x0\n"
      "mov x7, x0\n mov x8, x0\n dup v0.2d, x0\n dup v1.2d, x0\n dup v2.2d, x0\n dup v3.2d, x0\n"
      "dup v4.2d, x0\n dup v5.2d, x0\n dup v6.2d, x0\n dup v7.2d, x0\n" ::
          : "x0", "x1", "x2", "x3", "x4", "x5", "x6", "x7", "x8", "v0", "v1", "v2", "v3", "v4", "v5", "v6",
            "v7");
#endif
}

}  // namespace

void* __wrap_dlopen(const char* name, int mode) {
  record("dlopen", name);
  if (openCallback) openCallback();
  void* const library = __real_dlopen(name, mode);
  scribbleOnRegisters();
  return library;
}

void* __wrap_dlsym(void* library, const char* name) {
  record("dlsym", name);
  return __real_dlsym(library, name);
}

int __wrap_dlclose(void* library) {
  record("dlclose", nullptr);
  return __real_dlclose(library);
}

int __wrap_puts(const char* line) {
  record("puts", line);
  return __real_puts(line);
}

Recording::Recording() {
  const std::lock_guard lock(mutex);
  recording = true;
  recorded.clear();
}

Recording::~Recording() {
  const std::lock_guard lock(mutex);
  recording = false;
}

std::vector<std::string> Recording::events() const {
  const std::lock_guard lock(mutex);
  return recorded;
}

std::vector<std::string> Recording::eventsOf(const std::string& kind) const {
  std::vector<std::string> chosen;
  for (const std::string& event : events()) {
    if (event.starts_with(kind + " ")) chosen.push_back(event.substr(kind.size() + 1));
    if (event == kind) chosen.emplace_back();
  }
  return chosen;
}

void onOpen(std::function<void()> callback) {
  openCallback = std::move(callback);
}
