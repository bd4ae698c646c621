// SPDX-License-Identifier: MIT
#include "tests/simulator/trial/trial.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <utility>

#include "host/files.h"
#include "host/process.h"
#include "host/tagscsv.h"
#include "simulator/program/encoding.h"
#include "simulator/program/source.h"
#include "simulator/program/tags.h"
#include "tests/simulator/trial/deliveredform.h"

namespace ostravel::trial {
namespace {

using host::Process;
using nlohmann::json;

constexpr std::chrono::seconds kPatience{30};
constexpr const char* kSymbolFile = "/mnt/project/1_s71500_symbolic.ap";

std::vector<std::string> source_arguments(const SourceSet& set, const TrialOptions& options, bool instances) {
  std::vector<std::string> arguments;
  for (const auto& constant : options.constants) arguments.insert(arguments.end(), {"--constant", constant});
  if (instances) arguments.emplace_back("--instances");
  if (options.accessible) arguments.emplace_back("--accessible");
  for (const auto& file : set.files()) arguments.push_back(file.string());
  return arguments;
}

std::string output_of(const std::string& program, const std::vector<std::string>& arguments, int worst) {
  Process process(program, arguments);
  process.close_input();
  auto output = process.read_all();
  if (const int code = process.wait(); code > worst) {
    throw std::runtime_error(
        fmt::format("{} {} ended with code {}", program, fmt::join(arguments, " "), code));
  }
  return output;
}

// The PLC with its program at a stand, so that all reads meet the same values.
class HeldPlc {
 public:
  HeldPlc(const std::string& program, std::vector<std::string> arguments)
      : process_(program, with_port(std::move(arguments))) {
    const auto line = process_.read_line(kPatience);
    const auto colon = line ? line->rfind(':') : std::string::npos;
    if (colon == std::string::npos) throw std::runtime_error("ostravel-plc did not start to listen");
    // The driver asks for port 102; the stand-in library goes to this one instead.
    setenv("OSTRAVEL_STANDIN_PORT", line->substr(colon + 1).c_str(), 1);
    cycle_ = command("hold").at("cycle").get<std::uint64_t>();
  }

  json command(const std::string& line) {
    const auto answer = process_.write(line + "\n") ? process_.read_line(kPatience) : std::nullopt;
    if (!answer) throw std::runtime_error("ostravel-plc does not answer '" + line + "'");
    auto object = json::parse(*answer);
    if (object.contains("error")) {
      throw std::runtime_error("'" + line + "': " + object["error"].get<std::string>());
    }
    return object;
  }
  json value(const std::string& path) {
    return command(fmt::format("read {} @{}", path, cycle_)).at("value");
  }

 private:
  static std::vector<std::string> with_port(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--exit-with-stdin", "--cycle", "0", "--port", "0"});
    return arguments;
  }
  Process process_;
  std::uint64_t cycle_ = 0;
};

// Which bytes of which variable have been delivered.
class Coverage {
 public:
  explicit Coverage(const plc::Program& program) {
    plc::for_each_variable(program.blocks, [&](const plc::Leaf& leaf) {
      sizes_[leaf.path] = plc::byte_count(*leaf.symbol);
      return true;
    });
  }
  void add(const std::string& path, std::uint64_t first_byte, std::uint64_t bytes) {
    auto& seen = seen_[path];
    for (std::uint64_t i = 0; i < bytes; ++i) seen.insert(first_byte + i);
  }
  bool complete(const std::string& path) const {
    const auto seen = seen_.find(path);
    return seen != seen_.end() && seen->second.size() == sizes_.at(path);
  }
  const std::map<std::string, std::uint64_t>& sizes() const { return sizes_; }

 private:
  std::map<std::string, std::uint64_t> sizes_;
  std::map<std::string, std::set<std::uint64_t>> seen_;
};

// What a row of the table stands for in the PLC.
struct Row {
  host::Tag tag;
  plc::Target target;
  std::string variable;      // path of the variable as a whole
  std::uint64_t first = 0;   // element of the variable
  std::uint64_t number = 1;  // of elements
};

Row row_of(const plc::Program& program, const host::Tag& tag) {
  const auto target = plc::resolve(program.blocks, tag.name);
  if (!target) throw std::runtime_error("the table names " + tag.name + ", which the program does not have");
  Row row{tag, *target, tag.name, 0, 1};
  const auto& symbol = *target->symbol;
  if (target->element) {
    row.variable = tag.name.substr(0, tag.name.rfind('['));
    row.first = plc::element_of_index(symbol, target->index).value();
    return row;
  }
  if (symbol.dimensions.empty()) return row;
  const auto lower = symbol.dimensions.size() > 1 ? 0 : symbol.dimensions.front().lower;
  row.first = static_cast<std::uint64_t>(tag.first.value_or(lower) - lower);
  row.number = tag.type->is_text() ? tag.elements : tag.count;
  return row;
}

class Trial {
 public:
  Trial(const SourceSet& set, const TrialOptions& options) : options_(options), set_(set) {}

  Outcome run() {
    if (!load()) return outcome_;
    const auto table = plc::export_tags(program_);
    outcome_.variables = Coverage(program_).sizes().size();
    for (const auto& left_out : table.left_out) ++outcome_.left_out[left_out.reason];
    if (outcome_.variables == 0) return outcome_;
    const auto arguments = source_arguments(set_, options_, instances_);
    HeldPlc plc(options_.programs + "/ostravel-plc", arguments);
    make_project(arguments, table);
    std::filesystem::remove(kSymbolFile);  // of the program before
    read_and_compare(plc, "start value");
    vary(plc);
    const auto coverage = read_and_compare(plc, "value of its own");
    check_coverage(coverage, table);
    return outcome_;
  }

 private:
  bool load() {
    try {
      plc::LoadOptions load;
      load.instances = true;
      load.accessible = options_.accessible;
      for (const auto& constant : options_.constants) {
        const auto equals = constant.find('=');
        load.constants[constant.substr(0, equals)] =
            constant.substr(std::min(equals, constant.size() - 1) + 1);
      }
      instances_ = true;
      try {
        program_ = plc::load_program(set_.files(), load, &outcome_.warnings);
      } catch (const plc::SourceError& error) {
        // Types and blocks that lack something of theirs do not keep the data blocks from being used.
        load.instances = instances_ = false;
        outcome_.warnings = {fmt::format("without instances: {}", error.what())};
        program_ = plc::load_program(set_.files(), load, &outcome_.warnings);
      }
      return true;
    } catch (const plc::SourceError& error) {
      outcome_.refused = error.what();
      return false;
    }
  }

  void make_project(std::vector<std::string> arguments, const plc::TagTable& table) {
    arguments.insert(arguments.begin(), "--export-tags");
    const auto csv = output_of(options_.programs + "/ostravel-plc", arguments, 0);
    if (csv != table.csv) throw std::runtime_error("ostravel-plc exports another table than its library");
    std::filesystem::create_directories(options_.work);
    const auto list = options_.work + "/tags.csv";
    project_ = options_.work + "/tags.project";
    host::write_file(list, csv, true);
    for (const auto& tag : host::project_from_csv(csv, list).tags) rows_.push_back(row_of(program_, tag));
    if (!rows_.empty())
      output_of(options_.programs + "/ostravel-tags", {"pack", "--force", list, project_}, 0);
  }

  std::vector<json> deliver() {
    std::vector<json> lines;
    if (rows_.empty()) return lines;
    const auto output = output_of(options_.programs + "/ostravel-host",
                                  {"--project", project_, "--json", "--timeout", "60000", "read"}, 1);
    for (std::size_t start = 0; start < output.size();) {
      const auto end = std::min(output.find('\n', start), output.size());
      lines.push_back(json::parse(output.substr(start, end - start)));
      start = end + 1;
    }
    if (lines.size() != rows_.size()) {
      throw std::runtime_error(
          fmt::format("ostravel-host read gives {} lines for {} tags", lines.size(), rows_.size()));
    }
    return lines;
  }

  static json expected(const Row& row, const json& held) {
    const auto& symbol = *row.target.symbol;
    if (row.target.element || symbol.dimensions.empty()) {
      const auto one = delivered_form(symbol, held);
      return one.is_array() ? one : json::array({one});
    }
    json values = json::array();
    for (std::uint64_t i = row.first; i < row.first + row.number; ++i) {
      values.push_back(delivered_form(symbol, held.at(i)));
    }
    return values;
  }

  Coverage read_and_compare(HeldPlc& plc, std::string_view what) {
    Coverage coverage(program_);
    const auto lines = deliver();
    std::map<std::string, json> held;  // a long array stands in several rows
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const auto& row = rows_[i];
      if (!held.contains(row.tag.name)) held[row.tag.name] = plc.value(row.tag.name);
      const auto wanted = expected(row, held[row.tag.name]);
      const auto& value = lines[i].at("value");
      if (lines[i].at("tag") != row.tag.name)
        throw std::runtime_error("ostravel-host read changes the tags' order");
      if ((value.is_array() ? value : json::array({value})) == wanted) {
        const std::uint64_t each = row.target.symbol->element_size;
        coverage.add(row.variable, row.first * each, row.number * each);
      } else {
        outcome_.differences.push_back(fmt::format("{} ({}): the PLC holds {}, the driver delivers {} ({})",
                                                   row.tag.name, what, wanted.dump(), value.dump(),
                                                   lines[i].at("meaning").get<std::string>()));
      }
    }
    return coverage;
  }

  void vary(HeldPlc& plc) const {
    std::uint64_t seed = 0;
    plc::for_each_leaf(program_.blocks, [&](const plc::Leaf& leaf) {
      json values = json::array();
      for (std::uint64_t i = 0; i < plc::element_count(*leaf.symbol); ++i) {
        values.push_back(distinct_value(*leaf.symbol, seed++));
      }
      const auto& value = leaf.symbol->dimensions.empty() ? values.front() : values;
      plc.command(fmt::format("write {} {}", leaf.path, value.dump()));
      return true;
    });
  }

  // Each variable is delivered in full, or the table says why it is left out.
  void check_coverage(const Coverage& coverage, const plc::TagTable& table) {
    std::set<std::string> left_out;
    for (const auto& entry : table.left_out) left_out.insert(entry.leaf.path);
    for (const auto& [path, size] : coverage.sizes()) {
      if (coverage.complete(path)) {
        ++outcome_.read;
        if (left_out.contains(path))
          outcome_.differences.push_back(path + " is left out and was read nevertheless");
      } else if (!left_out.contains(path)) {
        outcome_.differences.push_back(path + " is neither read in full nor left out with a reason");
      }
    }
  }

  const TrialOptions& options_;
  const SourceSet& set_;
  Outcome outcome_;
  plc::Program program_;
  bool instances_ = false;
  std::vector<Row> rows_;
  std::string project_;
};

}  // namespace

Outcome try_sources(const SourceSet& set, const TrialOptions& options) {
  return Trial(set, options).run();
}

}  // namespace ostravel::trial
