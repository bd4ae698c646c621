// SPDX-License-Identifier: MIT
// How a function of the fake records its call and finds its result: arguments to text, scripted failures,
// hooks, then the function's own answer.
#pragma once

#include <fmt/format.h>

#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "tests/fake/world.h"

namespace fake {

using World = FakeLibrary::World;

// A character count or buffer length that can be meant; beyond it the fake touches no memory.
constexpr agl_long_t kSane = 1 << 22;
constexpr bool sane(agl_long_t size) {
  return size >= 0 && size <= kSane;
}

// Arguments that the log shows other than as numbers.
struct Handle {
  HandleType handle;
};
template <class T>
struct Out {
  const T* value;
};
template <class T>
Out(T*) -> Out<T>;
struct Memory {
  const void* memory;
};
struct AccessMemory {
  HandleType access;
  const void* memory;
};
struct Text {
  std::string_view bytes;
};
struct WideText {
  std::u16string_view units;
};
struct Indices {
  const agl_int32_t* list;
  agl_int32_t count;
};
struct Accesses {
  const SymbolicRW_t* list;
  agl_int32_t count;
};

inline std::string describe(World&, std::integral auto number) {
  return std::to_string(+number);
}
inline std::string describe(World&, std::floating_point auto number) {
  return fmt::format("{}", number);
}
inline std::string describe(World& world, Handle argument) {
  return world.name(argument.handle);
}
template <class T>
std::string describe(World& world, Out<T> argument) {
  if (argument.value == nullptr) return "null";
  if constexpr (std::same_as<T, HandleType>) return "&" + world.name(*argument.value);
  if constexpr (std::floating_point<T>) return fmt::format("&{}", *argument.value);
  return "&" + std::to_string(static_cast<std::int64_t>(*argument.value));
}
inline std::string describe(World&, Memory argument) {
  return argument.memory == nullptr ? "null" : "buffer";
}
inline std::string describe(World& world, AccessMemory argument) {
  if (argument.memory == nullptr) return "null";
  const auto found = world.handles.find(argument.access);
  const bool other =
      found != world.handles.end() && found->second.had_job && found->second.buffer != argument.memory;
  return other ? "other-buffer" : "buffer";
}
inline std::string describe(World&, Text argument) {
  std::string text;
  for (const char byte : argument.bytes) {
    const auto code = static_cast<unsigned char>(byte);
    text += code >= 0x20 && code < 0x7F ? std::string(1, byte) : fmt::format("\\x{:02X}", code);
  }
  return "\"" + text + "\"";
}
inline std::string describe(World&, WideText argument) {
  std::string text;
  for (const char16_t unit : argument.units) {
    const auto code = static_cast<unsigned>(unit);
    text += code >= 0x20 && code < 0x7F ? std::string(1, static_cast<char>(code))
                                        : fmt::format("\\x{:04X}", code);
  }
  return "u\"" + text + "\"";
}
inline std::string describe(World&, Indices argument) {
  std::string text;
  for (agl_int32_t i = 0; i < argument.count; ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(argument.list[i]);
  }
  return "[" + text + "]";
}
inline std::string describe(World& world, Accesses argument) {
  std::string text;
  for (agl_int32_t i = 0; i < argument.count; ++i) {
    text += (i == 0 ? "" : ", ") + world.name(argument.list[i].AccessHandle);
  }
  return "[" + text + "]";
}

// Runs work on the world, when there is one.
template <class Work>
void with_world(Work work) {
  if (const auto world = current_world()) {
    const std::lock_guard lock(world->mutex);
    work(*world);
  }
}

template <class Answer, class... Arguments>
agl_int32_t call(const char* function, Answer answer, const Arguments&... arguments) {
  const auto world = current_world();
  if (world == nullptr) return AGL40_LIB_NOT_LOADED;
  World::Script script;
  {
    const std::lock_guard lock(world->mutex);
    world->calls.push_back({function, {describe(*world, arguments)...}});
    ++world->scripts[function].calls;
    script = world->scripts[function];
  }
  if (script.hook) script.hook();
  if (const auto nth = script.nth.find(script.calls); nth != script.nth.end()) return nth->second;
  if (script.always) return *script.always;
  const std::lock_guard lock(world->mutex);
  const agl_int32_t result = answer(*world);
  return script.afterwards.value_or(result);
}

}  // namespace fake
