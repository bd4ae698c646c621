// SPDX-License-Identifier: MIT
// What the bench measures: pieces of work that the driver does, each with the floor's way of doing the same.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "benchmarks/driver.h"
#include "benchmarks/floor.h"
#include "benchmarks/shapes.h"

namespace bench {

class Work {
 public:
  Work() = default;
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
  virtual ~Work() = default;
  virtual void by_driver() = 0;
  virtual void by_floor() = 0;
  // One line on what the driver did wrong in its last run; empty when nothing. Both ways have run before.
  virtual std::string fault() const { return {}; }
};

// A data type of the runtime and what stands for it in the PLC.
struct Type {
  const char* name;
  BYTE code;
  Value value;
  int words;  // of the runtime, for one element
};
const std::vector<Type>& types();
const Type& type(const std::string& name);

// What one request asks for: `count` elements of a tag whose first element has the index `lower`.
struct Access {
  Type type;
  int count;
  int lower;
};

// Batches that are polled on one device. With `idle_devices` as many devices are connected beside it and left
// alone.
std::unique_ptr<Work> online_poll(const Driver& driver, const std::vector<Access>& accesses, int name_length,
                                  int idle_devices = 0);
std::unique_ptr<Work> online_write(const Driver& driver, const Access& access, int name_length);

std::unique_ptr<Work> offline_poll(const Driver& driver, const std::vector<Access>& accesses,
                                   int name_length);
std::unique_ptr<Work> offline_write(const Driver& driver, const Access& access, int name_length);
// 31 texts, each an element 1 of its own row near the end of a table of `rows` rows.
std::unique_ptr<Work> offline_elements(const Driver& driver, int rows);
std::unique_ptr<Work> offline_element_write(const Driver& driver, int rows);

std::unique_ptr<Work> tag_table(const Driver& driver, int rows);
std::unique_ptr<Work> forwarded_call(const Driver& driver);

}  // namespace bench
