// SPDX-License-Identifier: MIT
// What a source declares, as it stands there: names are not resolved, values not understood yet.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/program/position.h"

namespace ostravel::plc {

struct Value {
  enum class Kind : unsigned char {
    Literal,    // text: a literal, its sign included; TRUE, FALSE and NULL are literals
    Constant,   // text: name of a constant, of the block or global
    List,       // items: the elements of an array, in order
    Structure,  // items: the members of a structure, in order; without items it keeps the default
    Repeat,     // items.front(): how often; the others: what is repeated
  };
  Kind kind = Kind::Literal;
  Position position;
  std::string text;
  std::vector<Value> items;
};

struct Member;

struct TypeUse {
  Position position;
  std::string name;  // type's name without quotes; empty for a structure declared in place
  bool quoted = false;
  bool structure = false;   // members are declared in place
  bool open_array = false;  // Array[*]: a parameter that takes any array
  std::vector<std::pair<Value, Value>> bounds;
  std::optional<Value> length;  // String[length]
  std::vector<Member> members;
};

struct Member {
  Position position;
  std::string name;
  TypeUse type;
  std::optional<Value> initial;
  std::string view_of;  // AT: name of the member it lies over; empty for a member with storage of its own
  bool accessible = true;
  bool writable = true;
};

struct Constant {
  std::string name;
  Value value;
};

struct PathPart {
  std::string name;
  std::vector<Value> index;
};

struct Assignment {
  Position position;
  std::vector<PathPart> path;
  Value value;
};

struct Declaration {
  enum class Kind : unsigned char { Type, FunctionBlock, DataBlock };
  Kind kind = Kind::Type;
  Position position;
  std::string name;
  TypeUse content;
  std::vector<Constant> constants;
  std::vector<Assignment> assignments;
  bool read_only = false;
};

}  // namespace ostravel::plc
