// SPDX-License-Identifier: MIT
// Everything the library hands out a handle for. Handles are unique over the library's whole life, so a stale
// one is never taken for another; objects live on while somebody uses them, also when their handle is freed
// meanwhile.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <variant>
#include <vector>

#include "simulator/program/program.h"
#include "simulator/standin/agltypes.h"
#include "simulator/standin/errors.h"
#include "simulator/standin/valuetypes.h"

namespace ostravel::standin {

struct Tree {
  std::vector<plc::Symbol> blocks;
  std::uint64_t fingerprint = 0;
};

// What a root handle stands for.
struct Root {
  std::shared_ptr<const Tree> tree;
};

struct Node {
  std::shared_ptr<const Tree> tree;
  plc::Target target;
};

// A prepared access to one variable or one element; its buffer holds the elements as the PLC's memory does.
struct Access {
  std::shared_ptr<const Tree> tree;
  const plc::Symbol* symbol = nullptr;
  std::uint32_t address = 0;
  std::int32_t elements = 0;
  std::int32_t element_size = 0;
  ElementType type;
  std::int32_t size() const { return elements * element_size; }
};

struct HandleCounts {
  std::uint64_t roots = 0;
  std::uint64_t nodes = 0;
  std::uint64_t accesses = 0;
  std::uint64_t double_frees = 0;
  std::uint64_t invalid_frees = 0;
  std::uint64_t released_nodes = 0;
};

class Handles {
 public:
  template <typename T>
  HandleType add(T object) {
    return insert(std::make_shared<const T>(std::move(object)));
  }

  // The object behind a handle; throws Failure(InvalidHandle) when there is none or it is of another kind.
  template <typename T>
  std::shared_ptr<const T> get(HandleType handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = live_.find(handle);
    require(found != live_.end(), Error::InvalidHandle);
    const auto* object = std::get_if<std::shared_ptr<const T>>(&found->second);
    require(object != nullptr, Error::InvalidHandle);
    return *object;
  }

  // Throws Failure(InvalidHandle), having counted the mistake.
  void free(HandleType handle);

  // Frees every node; a handle of one is unknown from then on, and freeing it counts as a double free.
  std::uint64_t release_nodes();

  HandleCounts counts() const;

 private:
  using Object =
      std::variant<std::shared_ptr<const Root>, std::shared_ptr<const Node>, std::shared_ptr<const Access>>;
  static constexpr HandleType kFirst = 0x10001;

  HandleType insert(Object object);

  mutable std::mutex mutex_;
  std::unordered_map<HandleType, Object> live_;
  HandleType next_ = kFirst;
  std::uint64_t double_frees_ = 0;
  std::uint64_t invalid_frees_ = 0;
  std::uint64_t released_nodes_ = 0;
};

Handles& handles();

}  // namespace ostravel::standin
