// SPDX-License-Identifier: MIT
// A communication library whose PLC is a piece of memory: what a write job sends is what a read job brings.
// Access buffers hold the elements as the memory does, little-endian and one after the other; a text is its
// length in 16 bits and then its characters. It records nothing and is quick. One at a time.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "aglink/AGLink40.h"

class MemoryLibrary {
 public:
  static constexpr HandleType kRoot = 0x1'0000'0001;

  struct Bounds {
    agl_int32_t lower;
    agl_int32_t upper;
  };
  struct Shape {
    ValueType_t::enum_t value_type = ValueType_t::vt_UNDEFINED;
    SystemType_t::enum_t system_type = SystemType_t::st_UNKNOWN;
    agl_int32_t element_size = 0;  // bytes
    agl_int32_t string_size = 0;   // declared characters
  };
  // What a path names: an element, or all of a variable.
  struct Place {
    Shape shape;
    std::vector<Bounds> dimensions;  // of an array as a whole
    std::size_t offset = 0;          // in the memory
    agl_int32_t count = 0;           // elements
  };

  MemoryLibrary();   // unloads whatever library is loaded
  ~MemoryLibrary();  // unloads itself
  MemoryLibrary(const MemoryLibrary&) = delete;
  MemoryLibrary& operator=(const MemoryLibrary&) = delete;

  // Adds a variable and, of an array, every element: Table[2], Matrix[1,2]. The memory is zero.
  void add(const std::string& path, const Shape& shape, const std::vector<Bounds>& dimensions = {});

  // std::out_of_range for a path that there is not.
  const Place& place(const std::string& path) const { return places_.at(path); }
  const std::vector<unsigned char>& memory() const { return memory_; }

  std::size_t open_accesses() const { return places_of_handles_.size() - free_.size(); }

  // For the library's functions.
  const Place* find(const std::string& path) const;
  HandleType open(const Place& place);
  bool close(HandleType handle);
  const Place* access(HandleType handle) const;
  unsigned char* at(std::size_t offset) { return memory_.data() + offset; }

 private:
  static constexpr HandleType kFirst = 0x2'0000'0001;

  std::unordered_map<std::string, Place> places_;
  std::vector<unsigned char> memory_;
  std::vector<const Place*> places_of_handles_;
  std::vector<std::size_t> free_;
};
