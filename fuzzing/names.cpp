// SPDX-License-Identifier: MIT
// Tag names and paths: what the driver makes of a name, compared with what the same is said to be in plainer
// words; and a path into a program of the simulated PLC, there and back.
//   input = index:u16 name
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "driver/arrayelement.h"
#include "driver/cmddesc.h"
#include "driver/tagname.h"
#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/expectations.h"
#include "fuzzing/support/input.h"
#include "fuzzing/support/library.h"
#include "fuzzing/support/outcome.h"
#include "simulator/program/paths.h"
#include "simulator/program/program.h"
#include "simulator/program/source.h"
#include "symbolic/arrayhelper.h"
#include "symbolic/symbolsloader.h"

using namespace ostravel;

namespace {

void substitute(const std::string& name, WORD index) {
  const std::size_t end = name.find("INDEX]");
  TagName substituted;
  substituted.Borrow(name, hash_of_name(name));
  stTag tag{};
  tag.ArrayIndex = index;
  std::vector<char> renamed(name.size() + 1, 'x');  // the result is never longer
  bool done = false;
  const fuzz::Ending ending = fuzz::run([&] {
    done = use_index_register(name.c_str(), renamed.data(), &tag);
    FUZZ_DEMAND(substituted.SubstituteIndex(name, index) == done);
  });
  FUZZ_DEMAND(ending == (fuzz::name_raises(name) ? fuzz::Ending::OutOfRange : fuzz::Ending::Returned));
  if (ending == fuzz::Ending::OutOfRange) {
    FUZZ_DEMAND(substituted == name);
    return;
  }
  FUZZ_DEMAND(done == (end != std::string::npos) && has_index_placeholder(name) == done);
  if (!done) {
    FUZZ_DEMAND(substituted == name && renamed[0] == 'x');
    return;
  }
  const std::string expected = name.substr(0, name.rfind('[', end)) + "[" + std::to_string(index) + "]" +
                               name.substr(end + std::string_view("INDEX]").size());
  FUZZ_DEMAND(substituted == expected && expected == renamed.data());
  FUZZ_DEMAND(substituted.hash() == hash_of_name(expected));
}

void name_elements(const std::string& name, WORD index) {
  const std::string suffix = "[" + std::to_string(index) + "]";
  FUZZ_DEMAND(with_index(name, index) == name + suffix);
  TagName element;
  element.Borrow(name, hash_of_name(name));
  element.AppendIndex(index);
  FUZZ_DEMAND(element == name + suffix);
  element.Borrow(name, hash_of_name(name));
  element.NameElement(index);
  FUZZ_DEMAND(element == name.substr(0, name.find_last_of('[')) + suffix);
  FUZZ_DEMAND(element.hash() == hash_of_name(element.view()));
}

bool is_multi_dimensional(const std::string& name) {
  if (name.empty() || name.back() != ']') return false;
  for (std::size_t i = name.size() - 1; i-- > 0;) {
    if (name[i] == ',') return true;
    if (name[i] == '[') return false;
  }
  return false;
}

void take_apart(const std::string& name) {
  FUZZ_DEMAND(IsMultiDimensionArray(name) == is_multi_dimensional(name));
  std::string array;
  const fuzz::Ending ending = fuzz::run([&] { array = RemoveLastArraySymbol(name); });
  const std::size_t open = name.rfind('[');
  const bool indexed = name.empty() || name.back() == ']';
  FUZZ_DEMAND(ending ==
              (indexed && open == std::string::npos ? fuzz::Ending::OutOfRange : fuzz::Ending::Returned));
  if (ending == fuzz::Ending::Returned) {
    std::string expected = name;
    if (indexed) expected.erase(open, name.size() - 1);
    FUZZ_DEMAND(array == expected);
  }
  const auto pieces = split(name, '.');
  FUZZ_DEMAND(pieces.size() == 1 + static_cast<std::size_t>(std::ranges::count(name, '.')));
  std::string joined;
  for (const std::string& piece : pieces)
    joined += (joined.empty() && &piece == pieces.data() ? "" : ".") + piece;
  FUZZ_DEMAND(joined == name);
}

// A path that leads somewhere is found again from there.
void resolve(const std::string& path) {
  static const plc::Program program = plc::load_text(
      "DATA_BLOCK \"A\"\nSTRUCT\n B : Array[-1..3] of Int;\n C : Array[1..2, 0..1] of STRUCT\n D : "
      "String[4];\n"
      " \"E.1\" : DTL;\nEND_STRUCT;\nEND_STRUCT;\nBEGIN\nEND_DATA_BLOCK\nDATA_BLOCK \"b [0]\"\nSTRUCT\n f : "
      "Bool;\n"
      "END_STRUCT;\nBEGIN\nEND_DATA_BLOCK\n",
      "names.db");
  std::size_t position = std::string::npos;
  const auto target = plc::resolve(program.blocks, path, &position);
  if (!target) {
    FUZZ_DEMAND(position <= path.size());
    return;
  }
  FUZZ_DEMAND(target->address < program.initial.size());
  const auto again = plc::path_of(program.blocks, *target);
  FUZZ_DEMAND(again.has_value());
  const auto found = plc::resolve(program.blocks, *again);
  FUZZ_DEMAND(found && found->symbol == target->symbol && found->address == target->address &&
              found->element == target->element && found->index == target->index);
}

}  // namespace

int LLVMFuzzerInitialize(int*, char***) {
  return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const auto index = input.number<WORD>();
  const auto bytes = input.rest();
  const std::string given(bytes.begin(), bytes.end());
  const std::string name = given.c_str();  // names end at their first zero byte
  substitute(name, index);
  name_elements(name, index);
  take_apart(name);
  resolve(given);
  // The indices of an element path, as the array's reader takes them.
  fuzz::Library& library = fuzz::Library::installed();
  library.begin(nullptr);
  SymbolsLoader loader;
  loader.root_schema_node = fuzz::kRoot;
  unsigned long position = 0;
  const fuzz::Ending ending = fuzz::run(
      [&] { (void)loader.ReadDataFromPlcByPathfor_multi_array_transfer("IntM" + name, &position); });
  FUZZ_DEMAND(ending == fuzz::Ending::Returned ||
              (ending == fuzz::Ending::OutOfRange && name.ends_with(']')));
  return 0;
}
