// SPDX-License-Identifier: MIT
#include "tests/aglink/rows.h"

#include <cstdio>
#include <functional>
#include <string_view>
#include <type_traits>

#include "aglink/AGLink40.h"

namespace {

template <typename Result>
std::string resultText(Result result) {
  if constexpr (std::is_pointer_v<Result>) {
    return asText(static_cast<const void*>(result));
  } else if constexpr (std::is_floating_point_v<Result>) {
    return asText(result);
  } else {
    return asText(static_cast<std::int64_t>(result));
  }
}

// Calls any function as one with the fakes' shape: what the forwarding function was declared with is no
// matter.
template <typename Result>
std::string callAs(void (*address)(), const FakeArguments& arguments) {
  const auto function = reinterpret_cast<FakeFunction<Result>>(address);
  const auto& i = arguments.integers;
  const auto& r = arguments.reals;
  const auto call = [&] {
    return function(i[0], i[1], i[2], i[3], i[4], i[5], i[6], i[7], i[8], i[9], r[0], r[1], r[2], r[3], r[4],
                    r[5], r[6], r[7], r[8], r[9]);
  };
  if constexpr (std::is_void_v<Result>) {
    call();
    return "nothing";
  } else {
    return resultText(call());
  }
}

std::string callAGL_GetParas(const FakeArguments& a) {
  return asText(std::int64_t{
      AGL_GetParas(static_cast<agl_int32_t>(a.integers[0]), static_cast<agl_int32_t>(a.integers[1]),
                   std::bit_cast<void*>(a.integers[2]), static_cast<agl_int32_t>(a.integers[3]))});
}

std::string callAGL_SetDevType(const FakeArguments& a) {
  return asText(std::int64_t{
      AGL_SetDevType(static_cast<agl_int32_t>(a.integers[0]), static_cast<agl_int32_t>(a.integers[1]))});
}

template <typename Result>
std::string fakeResultText(std::string_view name) {
  if constexpr (std::is_void_v<Result>) {
    return "nothing";
  } else {
    return resultText(fakeResult<Result>(name));
  }
}

template <typename... Parameters>
constexpr int parameterCount(agl_int32_t (*)(Parameters...)) {
  return sizeof...(Parameters);
}

}  // namespace

const std::vector<Row>& rows() {
  static const std::vector<Row> all{
#define AGL_FUNCTION(Result, Name, Failure, Lookup, Parameters)               \
  {#Name,                                                                     \
   #Result,                                                                   \
   std::string_view(#Lookup) == "Resolved",                                   \
   false,                                                                     \
   10,                                                                        \
   10,                                                                        \
   [](const FakeArguments& arguments) {                                       \
     return callAs<Result>(reinterpret_cast<void (*)()>(&(Name)), arguments); \
   },                                                                         \
   fakeResultText<Result>(#Name)},
#define AGL_REPORTING_FUNCTION(Result, Name, Failure, Lookup, Parameters) \
  {#Name,                                                                 \
   #Result,                                                               \
   std::string_view(#Lookup) == "Resolved",                               \
   true,                                                                  \
   parameterCount(&(Name)),                                               \
   0,                                                                     \
   call##Name,                                                            \
   fakeResultText<Result>(#Name)},
#include "aglink/functions.def"
  };
  return all;
}

std::string asText(std::int64_t value) {
  return std::to_string(value);
}

std::string asText(float value) {
  char text[9];
  std::snprintf(text, sizeof(text), "%08x", std::bit_cast<std::uint32_t>(value));
  return text;
}

std::string asText(const void* value) {
  return "at " + std::to_string(std::bit_cast<std::uintptr_t>(value));
}

FakeArguments argumentsFor(const Row& row) {
  const auto seed = static_cast<std::int64_t>(std::hash<std::string>()(row.name) & 0x00ffffffffffffff);
  FakeArguments arguments{};
  for (int i = 0; i < 10; ++i) {
    const std::int64_t value = seed + i * 0x0101010101010101;
    arguments.integers[i] = row.reporting ? static_cast<std::int32_t>(value) : value;
    arguments.reals[i] = static_cast<double>(seed) / 1024 + i;
  }
  return arguments;
}

std::string logLine(const std::string& name, const FakeArguments& arguments, int integers, int reals) {
  std::string line = name;
  for (int i = 0; i < integers; ++i) line += " " + std::to_string(arguments.integers[i]);
  for (int i = 0; i < reals; ++i) {
    char text[40];
    std::snprintf(text, sizeof(text), " %a", arguments.reals[i]);
    line += text;
  }
  return line;
}
