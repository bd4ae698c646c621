// SPDX-License-Identifier: MIT
#include "common/optiontable.h"

#include <nlohmann/json.hpp>

#include "common/commandline.h"
#include "common/exitcodes.h"

namespace ostravel {
namespace {

using Json = nlohmann::ordered_json;

// CLI11 tells checks only as text behind the type: TEXT:{csv,json} or INT:INT in [0 - 255].
struct ValueDescription {
  std::string value;
  std::vector<std::string> choices;
};

ValueDescription describe_value(const CLI::Option& option) {
  ValueDescription description;
  if (option.get_items_expected_max() == 0) {
    return description;  // a flag
  }
  const auto text = option.get_type_name();
  const auto colon = text.find(':');
  description.value = text.substr(0, colon);
  const auto checks = colon == std::string::npos ? std::string() : text.substr(colon + 1);
  if (checks.starts_with('{') && checks.ends_with('}')) {
    description.choices = CLI::detail::split(checks.substr(1, checks.size() - 2), ',');
  }
  return description;
}

Json table_of(const CLI::Option& option) {
  const auto described = describe_value(option);
  Json names = Json::array();
  for (const auto& name : option.get_snames()) {
    names.push_back("-" + name);
  }
  for (const auto& name : option.get_lnames()) {
    names.push_back("--" + name);
  }
  constexpr int kSeveral = 2;
  return {{"names", names},
          {"positional", option.get_positional() ? option.get_name(true) : std::string()},
          {"value", described.value},
          {"default", option.get_default_str()},
          {"choices", described.choices},
          {"help", option.get_description()},
          {"required", option.get_required()},
          {"repeatable", option.get_items_expected_max() >= kSeveral}};
}

void add_command(Json& table, const CLI::App& app, const std::string& inherited_footer) {
  table["help"] = app.get_description();
  table["footer"] = app.get_footer() == inherited_footer ? std::string() : app.get_footer();
  table["options"] = Json::array();
  for (const auto* option : app.get_options()) {
    if (!option->get_group().empty()) {
      table["options"].push_back(table_of(*option));
    }
  }
  table["commands"] = Json::array();
  for (const auto* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (!command->get_group().empty()) {
      Json entry{{"name", command->get_name()}};
      add_command(entry, *command, app.get_footer());
      table["commands"].push_back(std::move(entry));
    }
  }
}

}  // namespace

std::string option_table(const CLI::App& app, std::string_view program) {
  const auto bit = program_bit(program);
  Json table{{"name", program}, {"version", OSTRAVEL_VERSION}, {"exit_codes", Json::array()}};
  for (const auto& entry : exit_codes()) {
    if ((entry.programs & bit) == bit) {
      table["exit_codes"].push_back({{"code", entry.code}, {"meaning", entry.meaning}});
    }
  }
  add_command(table, app, {});
  return table.dump(1) + "\n";
}

}  // namespace ostravel
