// SPDX-License-Identifier: MIT
#include "host/config/description.h"

#include <fmt/format.h>
#include <toml++/toml.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <span>

#include "host/session.h"
#include "host/usererror.h"

namespace ostravel::host {
namespace {

constexpr std::array<std::string_view, 7> kDeviceKeys{"name",    "project", "address", "station",
                                                      "offline", "driver",  "library"};
constexpr std::string_view kNameKey = "name";

bool is_name(std::string_view text) {
  const auto allowed = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), allowed);
}

class Reader {
 public:
  explicit Reader(std::string file) : file_(std::move(file)) {}

  std::vector<DeviceConfig> read(std::string_view text) {
    const auto root = parse(text);
    check_keys(root, std::array<std::string_view, 2>{"defaults", "device"}, "");
    DeviceConfig defaults;
    if (const auto* node = root.get("defaults")) {
      const auto& table = table_of(*node, "[defaults]");
      check_keys(table, std::span(kDeviceKeys).subspan(1), "[defaults]");
      fill(defaults, table);
    }
    const auto* devices = root.get("device");
    if (devices == nullptr || !devices->is_array() || devices->as_array()->empty()) {
      fail(devices == nullptr ? root : *devices, "a description needs at least one [[device]]");
    }
    for (const auto& node : *devices->as_array()) {
      add(defaults, table_of(node, "[[device]]"));
    }
    return std::move(devices_);
  }

 private:
  [[noreturn]] void fail(toml::source_position place, std::string_view what) const {
    throw UserError(
        fmt::format("{}:{}:{}: {}", file_, std::max(place.line, 1U), std::max(place.column, 1U), what));
  }
  [[noreturn]] void fail(const toml::node& node, std::string_view what) const {
    fail(node.source().begin, what);
  }

  toml::table parse(std::string_view text) const {
    try {
      return toml::parse(text, file_);
    } catch (const toml::parse_error& error) {
      // Its description may run over several lines.
      std::string what(error.description());
      std::replace(what.begin(), what.end(), '\n', ' ');
      fail(error.source().begin, what);
    }
  }

  const toml::table& table_of(const toml::node& node, std::string_view name) const {
    if (!node.is_table()) {
      fail(node, fmt::format("{} must be a table", name));
    }
    return *node.as_table();
  }

  void check_keys(const toml::table& table, std::span<const std::string_view> known,
                  std::string_view where) const {
    for (const auto& [key, node] : table) {
      if (std::find(known.begin(), known.end(), key.str()) == known.end()) {
        fail(key.source().begin, fmt::format("unknown key '{}'{}{}; known are {}", key.str(),
                                             where.empty() ? "" : " in ", where, fmt::join(known, ", ")));
      }
    }
  }

  template <class T>
  std::optional<T> get(const toml::table& table, std::string_view key, std::string_view kind) const {
    const auto* node = table.get(key);
    if (node == nullptr) {
      return std::nullopt;
    }
    auto value = node->value_exact<T>();
    if (!value) {
      fail(*node, fmt::format("{} must be {}", key, kind));
    }
    return value;
  }

  void take_file(std::string& target, const toml::table& table, std::string_view key) const {
    if (const auto name = get<std::string>(table, key, "a file name in quotes")) {
      target = (std::filesystem::path(file_).parent_path() / *name).string();
    }
  }

  void fill(DeviceConfig& config, const toml::table& table) const {
    take_file(config.project, table, "project");
    take_file(config.driver, table, "driver");
    take_file(config.library, table, "library");
    if (const auto address = get<std::string>(table, "address", "an IPv4 address in quotes")) {
      config.address = *address;
      try {
        parse_address(config.address);
      } catch (const UserError& error) {
        fail(*table.get("address"), error.what());
      }
    }
    if (const auto station = get<std::int64_t>(table, "station", "a number from 0 to 255")) {
      if (*station < 0 || *station > 255) {
        fail(*table.get("station"), fmt::format("station {} must be from 0 to 255", *station));
      }
      config.station = static_cast<int>(*station);
    }
    config.offline = get<bool>(table, "offline", "true or false").value_or(config.offline);
  }

  void add(const DeviceConfig& defaults, const toml::table& table) {
    check_keys(table, kDeviceKeys, "[[device]]");
    auto config = defaults;
    config.name = get<std::string>(table, kNameKey, "a text").value_or("");
    const auto& named = table.contains(kNameKey) ? *table.get(kNameKey) : table;
    if (!is_name(config.name)) {
      fail(named, "a device needs a name of letters, digits, '_', '-' and '.', as in name = \"press\"");
    }
    fill(config, table);
    if (config.project.empty()) {
      fail(table, fmt::format("device {} needs a project, as in project = \"{}.project\"", config.name,
                              config.name));
    }
    for (const auto& other : devices_) {
      if (other.name == config.name) {
        fail(named, fmt::format("there is a device {} already; names must differ", config.name));
      }
      if (other.station == config.station && !other.offline && !config.offline) {
        fail(table,
             fmt::format("devices {} and {} both have station {}; the driver tells devices apart by it",
                         other.name, config.name, config.station));
      }
      if (other.driver != config.driver || other.library != config.library) {
        fail(table, fmt::format("device {} needs the driver and library of {}: all are in one process",
                                config.name, other.name));
      }
    }
    devices_.push_back(std::move(config));
  }

  std::string file_;
  std::vector<DeviceConfig> devices_;
};

}  // namespace

std::vector<DeviceConfig> parse_description(std::string_view text, const std::string& file) {
  return Reader(file).read(text);
}

}  // namespace ostravel::host
