// SPDX-License-Identifier: MIT
// Everything that names in declarations can mean: declared types, system types, elementary types, constants.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/program/program.h"
#include "simulator/program/source.h"
#include "simulator/program/syntax.h"

namespace ostravel::plc {

class Catalogue {
 public:
  // The declarations must outlive the catalogue. Throws SourceError when a name is declared twice.
  Catalogue(const std::vector<Declaration>& declarations, const LoadOptions& options);

  struct Meaning {
    std::optional<DataType> elementary;
    const Declaration* declaration = nullptr;
    bool known_opaque = false;  // a type without layout that is no reason for a warning
  };

  // What a use of a type means; all empty when the name is unknown and may be a system type. Throws
  // SourceError for a name in quotes that is not declared: such a type is the user's own, and its source is
  // missing.
  Meaning meaning(const TypeUse& use) const;

  // The literal behind a value, constants of the scope and global ones followed. Nothing when a constant is
  // unknown or the value is no single one.
  std::optional<std::string> literal(const Value& value, const Declaration* scope) const;

  // The same as a number. Throws SourceError that says how to make the constant known.
  std::int64_t integer(const Value& value, const Declaration* scope) const;

 private:
  std::map<std::string, const Declaration*, std::less<>> types_;
  std::map<std::string, std::string, std::less<>> constants_;
};

}  // namespace ostravel::plc
