// SPDX-License-Identifier: MIT
#include "host/check/checker.h"

#include <fmt/format.h>

#include <algorithm>

namespace ostravel::host::check {
namespace {

constexpr std::size_t kBatchItems = 100;
constexpr std::size_t kBatchBytes = std::size_t{1} << 20;
constexpr std::string_view kPlaceholderEnd = "INDEX]";

void add(TagReport& report, Reason reason, std::string text) {
  // Texts of one array tend to fail alike.
  const Finding finding{Verdict::Bad, reason, std::move(text)};
  if (std::find(report.findings.begin(), report.findings.end(), finding) == report.findings.end()) {
    report.findings.push_back(finding);
  }
}

bool has_placeholder(const std::string& name) {
  return name.find(kPlaceholderEnd) != std::string::npos;
}

// NAME[...INDEX] with the number in place of what is in the brackets.
std::string with_number(const std::string& name, int number) {
  const auto end = name.find(kPlaceholderEnd);
  const auto begin = name.rfind('[', end);
  return fmt::format("{}[{}]{}", name.substr(0, begin), number, name.substr(end + kPlaceholderEnd.size()));
}

// A tag whose index stands in its name has none left for the elements behind.
Tag as_read(const Tag& tag) {
  Tag read = tag;
  if (has_placeholder(tag.name)) {
    read.first.reset();
  }
  return read;
}

}  // namespace

std::string array_of(const std::string& path) {
  if (!path.ends_with(']')) {
    return path;
  }
  return path.substr(0, path.rfind('['));
}

std::vector<std::string> paths_of(const Tag& tag) {
  if (has_placeholder(tag.name)) {
    return {with_number(tag.name, tag.first.value_or(0))};
  }
  if (!tag.type->is_text() || !tag.first || tag.name.ends_with(']')) {
    return {tag.name};
  }
  std::vector<std::string> paths;
  paths.reserve(tag.elements);
  for (int i = 0; i < tag.elements; ++i) {
    paths.push_back(fmt::format("{}[{}]", tag.name, *tag.first + i));
  }
  return paths;
}

void Checker::check(std::span<const Tag> tags, bool char_paired, const Sink& sink, const Stop& stop) {
  const auto hand_over = [&] {
    read_pending();
    for (const auto& report : reports_) {
      sink(report);
    }
    reports_.clear();
  };
  for (std::size_t i = 0; i < tags.size() && !(stop && stop()); ++i) {
    reports_.emplace_back().row = i;
    examine(tags[i], char_paired);
    if (reports_.size() >= kBatchItems || pending_.size() >= kBatchItems || pending_bytes_ >= kBatchBytes) {
      hand_over();
    }
  }
  hand_over();
}

void Checker::examine(const Tag& tag, bool char_paired) {
  auto& report = reports_.back();
  report.findings = judge_name(tag.name);
  if (!report.findings.empty()) {
    return;
  }
  const auto read = as_read(tag);
  // An array of texts is judged as a whole by its first text; the others only have to be readable.
  std::vector<Pending> accesses;
  for (const auto& path : paths_of(tag)) {
    Pending pending{reports_.size() - 1, path, {}, {}};
    if (accesses.empty()) {
      Variable variable;
      variable.dimensions = dimensions_of(tag.type->is_text() && read.first ? tag.name : array_of(path));
      variable.element = !variable.dimensions.empty() &&
                         (tag.type->is_text() && read.first ? tag.name : path).ends_with(']');
      if (!open(path, pending, report) || !describe(pending, variable, report)) {
        return;
      }
      report.plc_type = type_text(variable);
      report.findings = judge(read, char_paired, variable);
      // Texts beyond the bounds have been named; to ask for each of them would only repeat it.
      const bool known = std::any_of(report.findings.begin(), report.findings.end(),
                                     [](const auto& finding) { return finding.reason == Reason::Index; });
      accesses.push_back(std::move(pending));
      if (known) {
        break;
      }
    } else if (open(path, pending, report)) {
      accesses.push_back(std::move(pending));
    }
  }
  for (auto& access : accesses) {
    pending_bytes_ += access.buffer.size();
    pending_.push_back(std::move(access));
  }
}

// None where there is no such array: that the path leads nowhere shows elsewhere.
std::vector<Bounds> Checker::dimensions_of(const std::string& path) const {
  HandleType node = 0;
  agl_int32_t position = 0;
  if (library_.Symbolic_GetNodeByPath(link_.symbols(), path.c_str(), &node, &position) != AGL40_SUCCESS) {
    return {};
  }
  const LibraryHandle owner(library_, node);
  agl_int32_t count = 0;
  if (library_.Symbolic_GetArrayDimensionCount(node, &count) != AGL40_SUCCESS) {
    return {};
  }
  std::vector<Bounds> dimensions;
  for (agl_int32_t i = 0; i < count; ++i) {
    Bounds bounds;
    if (library_.Symbolic_GetArrayDimension(node, i, &bounds.lower, &bounds.upper) != AGL40_SUCCESS) {
      return {};
    }
    dimensions.push_back(bounds);
  }
  return dimensions;
}

bool Checker::open(const std::string& path, Pending& pending, TagReport& report) const {
  HandleType access = 0;
  agl_int32_t position = 0;
  auto code = library_.Symbolic_CreateAccessByPath(link_.symbols(), path.c_str(), &access, &position);
  if (code != AGL40_SUCCESS) {
    explain_path(path, code, position, report);
    return false;
  }
  pending.access = LibraryHandle(library_, access);
  agl_int32_t size = 0;
  code = library_.Symbolic_GetAccessBufferSize(access, &size);
  if (code != AGL40_SUCCESS || size < 0) {
    add(report, Reason::Library,
        fmt::format("AGL_Symbolic_GetAccessBufferSize: {}",
                    code == AGL40_SUCCESS ? fmt::format("{} bytes", size) : library_.text_of(code)));
    return false;
  }
  pending.buffer.resize(static_cast<std::size_t>(std::max(size, 1)));
  return true;
}

// Where the path stops to fit, and of an array before that place its bounds.
void Checker::explain_path(const std::string& path, agl_int32_t code, agl_int32_t position,
                           TagReport& report) const {
  const auto words = library_.text_of(code);
  HandleType node = 0;
  agl_int32_t ignored = 0;
  if (library_.Symbolic_GetNodeByPath(link_.symbols(), path.c_str(), &node, &ignored) == AGL40_SUCCESS) {
    const LibraryHandle owner(library_, node);
    return add(report, Reason::Access, fmt::format("the path leads to something without a value: {}", words));
  }
  const auto stop = static_cast<std::size_t>(std::clamp<long>(position, 0, static_cast<long>(path.size())));
  const auto bracket = path.rfind('[', stop);
  const auto close = path.find(']', bracket);
  if (bracket != std::string::npos && close != std::string::npos && stop <= close) {
    const auto dimensions = dimensions_of(path.substr(0, bracket));
    std::string bounds;
    for (const auto& [lower, upper] : dimensions) {
      bounds += fmt::format("{}{}..{}", bounds.empty() ? "" : ", ", lower, upper);
    }
    const auto index = path.substr(bracket, close - bracket + 1);
    if (!dimensions.empty()) {
      return add(report, Reason::Index, fmt::format("index {} is outside [{}]: {}", index, bounds, words));
    }
  }
  add(report, Reason::Path,
      stop == 0 || stop >= path.size()
          ? fmt::format("unknown path, stops at its {}: {}", stop == 0 ? "beginning" : "end", words)
          : fmt::format("unknown path, stops after '{}' at '{}' (character {}): {}", path.substr(0, stop),
                        path.substr(stop), stop + 1, words));
}

bool Checker::describe(const Pending& pending, Variable& variable, TagReport& report) const {
  const auto access = pending.access.get();
  const auto ask = [&](const char* name, agl_int32_t code) {
    if (code != AGL40_SUCCESS) {
      add(report, Reason::Library, fmt::format("AGL_Symbolic_{}: {}", name, library_.text_of(code)));
    }
    return code == AGL40_SUCCESS;
  };
  if (!ask("GetAccessElementValueType",
           library_.Symbolic_GetAccessElementValueType(access, &variable.value)) ||
      !ask("GetAccessElementSystemType",
           library_.Symbolic_GetAccessElementSystemType(access, &variable.system)) ||
      !ask("GetAccessBufferElementCount",
           library_.Symbolic_GetAccessBufferElementCount(access, &variable.elements)) ||
      !ask("GetAccessBufferElementSize",
           library_.Symbolic_GetAccessBufferElementSize(access, &variable.element_size))) {
    return false;
  }
  const bool text = variable.value == ValueType_t::vt_STRING8 || variable.value == ValueType_t::vt_STRING16;
  return !text ||
         ask("GetAccessStringSize", library_.Symbolic_GetAccessStringSize(access, &variable.string_size));
}

void Checker::read_pending() {
  for (std::size_t at = 0; at < pending_.size(); at += kBatchItems) {
    read(std::span(pending_).subspan(at, std::min(kBatchItems, pending_.size() - at)));
  }
  pending_.clear();
  pending_bytes_ = 0;
}

agl_int32_t Checker::run_job(std::span<Pending> batch, std::vector<SymbolicRW_t>& items) const {
  items.clear();
  for (auto& pending : batch) {
    items.push_back(
        {pending.access.get(), pending.buffer.data(), static_cast<agl_long_t>(pending.buffer.size()), 0, 0});
  }
  agl_int32_t plc_error = 0;
  return library_.Symbolic_ReadMixEx(link_.connection(), items.data(), static_cast<agl_int32_t>(items.size()),
                                     &plc_error, link_.timeout(), 0);
}

// A job that fails as a whole is tried in halves, so that one variable does not hide the others. When its
// first and its last variable fail alone as well, it is the connection.
void Checker::read(std::span<Pending> batch) {
  std::vector<SymbolicRW_t> items;
  const auto code = run_job(batch, items);
  if (code == AGL40_SUCCESS) {
    for (std::size_t i = 0; i < batch.size(); ++i) {
      const auto& item = items[i];
      if (item.Result != AGL40_SUCCESS || item.SError != 0) {
        add(reports_[batch[i].report], Reason::Access,
            fmt::format("no access: {}{}",
                        item.Result != AGL40_SUCCESS ? library_.text_of(item.Result) : "refused by the PLC",
                        item.SError != 0 ? fmt::format(", PLC error {}", item.SError) : ""));
      }
    }
    return;
  }
  if (batch.size() == 1) {
    add(reports_[batch.front().report], Reason::Access, fmt::format("no access: {}", library_.text_of(code)));
    return;
  }
  const auto first = run_job(batch.first(1), items);
  if (first != AGL40_SUCCESS && run_job(batch.last(1), items) != AGL40_SUCCESS) {
    throw LibraryFailure(fmt::format("AGL_Symbolic_ReadMixEx: {}", library_.text_of(first)), first);
  }
  read(batch.first(batch.size() / 2));
  read(batch.subspan(batch.size() / 2));
}

}  // namespace ostravel::host::check
