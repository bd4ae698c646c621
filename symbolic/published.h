// SPDX-License-Identifier: MIT
// A value that one thread writes and others poll without a lock. What was written before a store is visible
// to whoever loads the stored value: Arm would reorder the two otherwise.
#pragma once

#include <atomic>

template <class T>
class Published {
 public:
  constexpr Published() = default;
  constexpr Published(T value) : value_(value) {}  // NOLINT(google-explicit-constructor): reads like a T
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  Published& operator=(T value) {
    value_.store(value, std::memory_order_release);
    return *this;
  }
  operator T() const {
    return value_.load(std::memory_order_acquire);
  }  // NOLINT(google-explicit-constructor)

 private:
  static_assert(std::atomic<T>::is_always_lock_free);
  std::atomic<T> value_{};
};
