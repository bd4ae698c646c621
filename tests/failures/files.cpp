// SPDX-License-Identifier: MIT
// The driver's file operations and its thread. What it prints is swallowed, what it deletes stays.
#include <pthread.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <utility>

#include "tests/failures/injection.h"

extern "C" {
std::FILE* __real_fopen(const char* name, const char* mode);
int __real_fseek(std::FILE* file, long offset, int whence);
long __real_ftell(std::FILE* file);
std::size_t __real_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
int __real_fclose(std::FILE* file);
int __real_remove(const char* name);
int __real_puts(const char* text);
std::FILE* __wrap_fopen(const char* name, const char* mode);
int __wrap_fseek(std::FILE* file, long offset, int whence);
long __wrap_ftell(std::FILE* file);
std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
int __wrap_fclose(std::FILE* file);
int __wrap_remove(const char* name);
int __wrap_puts(const char* text);
int __wrap_printf(const char* format, ...);
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                          void* of);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                          void* of);
int __wrap_pthread_detach(pthread_t thread);
}

namespace injection {

bool driver_is_at_work();

namespace {

bool deliver_half = false;
std::vector<std::string> removed_files;
void* (*started_body)(void*) = nullptr;
void* started_with = nullptr;

}  // namespace

std::vector<std::string> take_removed_files() {
  return std::exchange(removed_files, {});
}

bool run_started_thread() {
  const auto body = std::exchange(started_body, nullptr);
  if (body == nullptr) return false;
  const DriverSide thread;
  body(started_with);
  return true;
}

void forget_started_thread() {
  started_body = nullptr;
}

void let_reads_deliver_half(bool half) {
  deliver_half = half;
}

}  // namespace injection

using injection::driver_is_at_work;
using injection::fails;
using injection::Kind;
using injection::OtherSide;

std::FILE* __wrap_fopen(const char* name, const char* mode) {
  return fails(Kind::File, "fopen") ? nullptr : __real_fopen(name, mode);
}
int __wrap_fseek(std::FILE* file, long offset, int whence) {
  return fails(Kind::File, "fseek") ? -1 : __real_fseek(file, offset, whence);
}
long __wrap_ftell(std::FILE* file) {
  return fails(Kind::File, "ftell") ? -1 : __real_ftell(file);
}
std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
  if (!fails(Kind::File, "fread")) return __real_fread(to, size, count, file);
  return injection::deliver_half ? __real_fread(to, size, count / 2, file) : 0;
}
int __wrap_fclose(std::FILE* file) {
  const bool refused = fails(Kind::File, "fclose");
  const int result = __real_fclose(file);  // the stream is gone in any case
  return refused ? EOF : result;
}
int __wrap_remove(const char* name) {
  if (!driver_is_at_work()) return __real_remove(name);
  if (fails(Kind::File, "remove")) return -1;
  const OtherSide bookkeeping;
  injection::removed_files.emplace_back(name);
  return 0;
}
int __wrap_puts(const char* text) {
  if (!driver_is_at_work()) return std::strcmp(text, "loadfunction 2") == 0 ? 0 : __real_puts(text);
  return fails(Kind::File, "puts") ? EOF : 0;
}
int __wrap_printf(const char* format, ...) {
  if (driver_is_at_work()) return fails(Kind::File, "printf") ? -1 : 0;
  std::va_list arguments;
  va_start(arguments, format);
  const int result = std::vprintf(format, arguments);
  va_end(arguments);
  return result;
}

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                          void* of) {
  if (!driver_is_at_work()) return __real_pthread_create(thread, attributes, body, of);
  if (fails(Kind::Thread, "pthread_create")) return EAGAIN;
  *thread = pthread_self();
  injection::started_body = body;
  injection::started_with = of;
  return 0;
}
// Only the connection thread does so, and here it is the test's own.
int __wrap_pthread_detach(pthread_t) {
  return 0;
}
