// SPDX-License-Identifier: MIT
#include "simulator/program/catalogue.h"

#include <fmt/format.h>

#include <algorithm>

#include "simulator/program/data_type.h"
#include "simulator/program/literal.h"
#include "simulator/program/system_types.h"
#include "simulator/program/text.h"

namespace ostravel::plc {
namespace {

// A constant may stand for another one, but not for ever.
constexpr unsigned constant_chain_limit = 16;

const Value* local_constant(const std::string& name, const Declaration* scope) {
  if (scope == nullptr) return nullptr;
  const auto found =
      std::find_if(scope->constants.begin(), scope->constants.end(),
                   [&name](const Constant& constant) { return equal_names(constant.name, name); });
  return found == scope->constants.end() ? nullptr : &found->value;
}

std::string unquoted(std::string_view name) {
  name = trimmed(name);
  if (name.size() > 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
  return folded(name);
}

}  // namespace

Catalogue::Catalogue(const std::vector<Declaration>& declarations, const LoadOptions& options) {
  for (const auto& [name, value] : options.constants) constants_.emplace(unquoted(name), trimmed(value));
  std::map<std::string, const Declaration*, std::less<>> blocks;
  for (const Declaration& declaration : declarations) {
    const bool block = declaration.kind == Declaration::Kind::DataBlock;
    const auto [place, added] = (block ? blocks : types_).emplace(folded(declaration.name), &declaration);
    if (added) continue;
    const Position& first = place->second->position;
    fail(declaration.position,
         fmt::format("\"{}\" is already declared at {}:{}:{}; rename one or leave one file out",
                     declaration.name, first.file, first.line, first.column));
  }
}

Catalogue::Meaning Catalogue::meaning(const TypeUse& use) const {
  if (!use.quoted) {
    if (const auto elementary = elementary_type(use.name)) return {elementary, nullptr, false};
  }
  if (const auto found = types_.find(folded(use.name)); found != types_.end()) {
    return {std::nullopt, found->second, false};
  }
  if (const auto alias = system_type_alias(use.name)) return {alias, nullptr, false};
  if (const Declaration* const declaration = system_type(use.name)) return {std::nullopt, declaration, false};
  if (is_known_opaque_type(use.name)) return {std::nullopt, nullptr, true};
  if (use.quoted) {
    fail(
        use.position,
        fmt::format("the type or function block \"{}\" is not declared; add the source file that declares it",
                    use.name));
  }
  return {};
}

std::optional<std::string> Catalogue::literal(const Value& value, const Declaration* scope) const {
  const Value* current = &value;
  for (unsigned i = 0; i < constant_chain_limit; ++i) {
    if (current->kind == Value::Kind::Literal) return current->text;
    if (current->kind != Value::Kind::Constant) return std::nullopt;
    const Value* const local = local_constant(current->text, scope);
    if (local == nullptr) {
      const auto found = constants_.find(folded(current->text));
      if (found == constants_.end()) return std::nullopt;
      return found->second;
    }
    current = local;
  }
  return std::nullopt;
}

std::int64_t Catalogue::integer(const Value& value, const Declaration* scope) const {
  const std::optional<std::string> text = literal(value, scope);
  if (!text) {
    fail(value.position,
         fmt::format("the constant \"{0}\" is not known; give its value as --constant \"{0}=...\"",
                     value.text));
  }
  const std::optional<std::int64_t> number = integer_from_literal(*text);
  if (!number) fail(value.position, fmt::format("{} is no whole number", quoted_piece(*text)));
  return *number;
}

}  // namespace ostravel::plc
