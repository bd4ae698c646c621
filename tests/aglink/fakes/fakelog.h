// SPDX-License-Identifier: MIT
// What a fake library and the test that calls it agree on: the arguments of every call, and the result that
// the fake function of a given name returns. The test registers a listener that the fake tells about each
// call.
#ifndef OSTRAVEL_TESTS_AGLINK_FAKES_FAKELOG_H_
#define OSTRAVEL_TESTS_AGLINK_FAKES_FAKELOG_H_

#include <bit>
#include <cstdint>
#include <string_view>
#include <type_traits>

// More of each kind than there are registers, so that some travel on the stack.
struct FakeArguments {
  std::int64_t integers[10];
  double reals[10];
};

// Name and arguments of one call; the arguments are valid only during the notification.
using FakeListener = void (*)(const char* name, const FakeArguments& arguments);

// Every fake function but the reporting ones has this shape.
template <typename Result>
using FakeFunction = Result (*)(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                                std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t, double,
                                double, double, double, double, double, double, double, double, double);

// A result that no other name has, whatever the type: never a failure value.
template <typename Result>
Result fakeResult(std::string_view name) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  if constexpr (std::is_pointer_v<Result>) {
    return std::bit_cast<Result>(hash);
  } else if constexpr (std::is_floating_point_v<Result>) {
    return static_cast<Result>(hash % 1000000) + Result{0.5};
  } else if constexpr (!std::is_void_v<Result>) {
    return static_cast<Result>(hash | 1);
  }
}

#endif  // OSTRAVEL_TESTS_AGLINK_FAKES_FAKELOG_H_
