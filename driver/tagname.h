// SPDX-License-Identifier: MIT
// The name of a command's variable. As a rule it is a row's name, borrowed from the tag table, so that a poll
// copies no names; a name with an index put into it is built in memory that is kept for the next one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "driver/arrayelement.h"
#include "driver/indexregister.h"

inline std::uint32_t hash_of_name(std::string_view name) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>{}(name));
}

class TagName {
 public:
  TagName() = default;
  TagName(const TagName&) = delete;
  TagName& operator=(const TagName&) = delete;

  // NUL-terminated; valid until the name changes and for as long as what it was borrowed from lives.
  std::string_view view() const { return name_; }
  std::uint32_t hash() const { return hash_; }

  // text is NUL-terminated behind its end.
  void Borrow(std::string_view text, std::uint32_t hash) {
    name_ = text;
    hash_ = hash;
  }

  // As substitute_index; the name stays as it is when name has no placeholder.
  bool SubstituteIndex(std::string_view name, WORD array_index) {
    if (!substitute_index(name, array_index, built_)) return false;
    UseBuilt();
    return true;
  }

  // Names an element of the array that the name stands for, or whose other element it names.
  void NameElement(WORD array_index) { BuildElement(without_index(name_), array_index); }

  // "[" index "]" behind the whole name.
  void AppendIndex(WORD array_index) { BuildElement(name_, array_index); }

  TagName& operator=(std::string_view text) {
    built_ = text;
    UseBuilt();
    return *this;
  }
  friend bool operator==(const TagName& name, std::string_view text) { return name.name_ == text; }

 private:
  // array may be a piece of built_. Without memory for it the name stays as it is.
  void BuildElement(std::string_view array, WORD array_index) {
    constexpr std::size_t kLongestIndex = 7;  // "[65535]"
    if (built_.capacity() < array.size() + kLongestIndex) {
      std::string longer;
      longer.reserve(array.size() + kLongestIndex);
      longer = array;
      built_.swap(longer);
    } else {
      built_ = array;
    }
    append_index(built_, array_index);
    UseBuilt();
  }
  void UseBuilt() { Borrow(built_, hash_of_name(built_)); }

  static constexpr const char* kNoText = "";  // not a null pointer: it is handed to the library
  std::string_view name_ = kNoText;
  std::uint32_t hash_ = 0;
  std::string built_;
};
