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

}  // namespace

void* __wrap_dlopen(const char* name, int mode) {
  record("dlopen", name);
  if (openCallback) openCallback();
  return __real_dlopen(name, mode);
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
