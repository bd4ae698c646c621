// SPDX-License-Identifier: MIT
// Goes through the tags of a project on a connection of its own: what each names, whether it fits, and
// whether the PLC lets it be read.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "host/check/findings.h"
#include "host/check/plclink.h"

namespace ostravel::host::check {

struct TagReport {
  std::size_t row = 0;
  std::string plc_type;  // empty while the path leads nowhere
  std::vector<Finding> findings;
  Verdict verdict() const { return worst(findings); }
};

class Checker {
 public:
  // Takes the reports, in the order of the tags, as soon as they are done.
  using Sink = std::function<void(const TagReport& report)>;
  // Called between tags; true ends the check early.
  using Stop = std::function<bool()>;

  explicit Checker(const PlcLink& link) : link_(link), library_(link.library()) {}

  // Throws LibraryFailure when the PLC no longer serves jobs at all; the sink has had the reports up to then.
  void check(std::span<const Tag> tags, bool char_paired, const Sink& sink, const Stop& stop = {});

 private:
  // One access that waits for its test read.
  struct Pending {
    std::size_t report;  // in reports_
    std::string path;
    LibraryHandle access;
    std::vector<unsigned char> buffer;
  };

  void examine(const Tag& tag, bool char_paired);
  std::vector<Bounds> dimensions_of(const std::string& path) const;
  bool open(const std::string& path, Pending& pending, TagReport& report) const;
  void explain_path(const std::string& path, agl_int32_t code, agl_int32_t position, TagReport& report) const;
  bool describe(const Pending& pending, Variable& variable, TagReport& report) const;
  void read_pending();
  void read(std::span<Pending> batch);
  agl_int32_t run_job(std::span<Pending> batch, std::vector<SymbolicRW_t>& items) const;

  const PlcLink& link_;
  const Library& library_;
  std::vector<TagReport> reports_;  // whose reads are outstanding
  std::vector<Pending> pending_;
  std::size_t pending_bytes_ = 0;
};

// The paths that the driver asks the library for to read a tag: one, or one for each text of an array.
std::vector<std::string> paths_of(const Tag& tag);

// The array whose bounds the driver looks at for a path: the path without its last index.
std::string array_of(const std::string& path);

}  // namespace ostravel::host::check
