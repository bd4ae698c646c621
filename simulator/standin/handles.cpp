// SPDX-License-Identifier: MIT
#include "simulator/standin/handles.h"

#include <utility>

namespace ostravel::standin {

HandleType Handles::insert(Object object) {
  const std::lock_guard lock(mutex_);
  live_.emplace(next_, std::move(object));
  return next_++;
}

void Handles::free(HandleType handle) {
  Object last;  // a whole tree may go with it: not under the lock
  const std::lock_guard lock(mutex_);
  const auto found = live_.find(handle);
  if (found == live_.end()) {
    ++(handle >= kFirst && handle < next_ ? double_frees_ : invalid_frees_);
    throw Failure(Error::InvalidHandle);
  }
  last = std::move(found->second);
  live_.erase(found);
}

std::uint64_t Handles::release_nodes() {
  const std::lock_guard lock(mutex_);
  const auto released = std::erase_if(live_, [](const auto& entry) {
    return std::holds_alternative<std::shared_ptr<const Node>>(entry.second);
  });
  released_nodes_ += released;
  return released;
}

HandleCounts Handles::counts() const {
  const std::lock_guard lock(mutex_);
  HandleCounts counts{0, 0, 0, double_frees_, invalid_frees_, released_nodes_};
  for (const auto& [handle, object] : live_) {
    counts.roots += object.index() == 0 ? 1U : 0U;
    counts.nodes += object.index() == 1 ? 1U : 0U;
    counts.accesses += object.index() == 2 ? 1U : 0U;
  }
  return counts;
}

Handles& handles() {
  static Handles instance;
  return instance;
}

}  // namespace ostravel::standin
