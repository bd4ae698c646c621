// SPDX-License-Identifier: MIT
#include "tests/tables/plcworld.h"

#include <bit>
#include <stdexcept>
#include <vector>

#include "tests/tables/address.h"

namespace tables {
namespace {

constexpr agl_int32_t kRefused = -77;

const std::vector<std::string> kKinds = {"UInt8", "UInt16", "UInt32",  "UInt64",  "Int8",
                                         "Int16", "Int32",  "Int64",   "Float32", "Float64",
                                         "Char8", "Char16", "String8", "String16"};

template <class T>
std::vector<T> cast_to(const std::vector<std::uint64_t>& list) {
  std::vector<T> values;
  values.reserve(list.size());
  for (const auto number : list) values.push_back(static_cast<T>(number));
  return values;
}

template <class T, class Bits>
std::vector<T> reals(const std::vector<std::uint64_t>& list) {
  std::vector<T> values;
  values.reserve(list.size());
  for (const auto number : list) values.push_back(std::bit_cast<T>(static_cast<Bits>(number)));
  return values;
}

// 2024-03-05, weekday 3, 13:14:15.
fake::Parts moment(std::uint32_t fraction) {
  return {2024, 3, 5, 3, 13, 14, 15, fraction};
}

Item make(const std::string& kind, const std::string& elements) {
  const auto list = numbers_of(elements);
  if (kind == "Bool") return Item::Bool(cast_to<bool>(list));
  if (kind == "UInt8") return Item::UInt8(cast_to<std::uint8_t>(list));
  if (kind == "UInt16") return Item::UInt16(cast_to<std::uint16_t>(list));
  if (kind == "UInt32") return Item::UInt32(cast_to<std::uint32_t>(list));
  if (kind == "UInt64") return Item::UInt64(list);
  if (kind == "Int8") return Item::Int8(cast_to<std::int8_t>(list));
  if (kind == "Int16") return Item::Int16(cast_to<std::int16_t>(list));
  if (kind == "Int32") return Item::Int32(cast_to<std::int32_t>(list));
  if (kind == "Int64") return Item::Int64(cast_to<std::int64_t>(list));
  if (kind == "Float32") return Item::Float32(reals<float, std::uint32_t>(list));
  if (kind == "Float64") return Item::Float64(reals<double, std::uint64_t>(list));
  if (kind == "Char8") return Item::Char8(cast_to<char>(list));
  if (kind == "Char16") return Item::Char16(cast_to<std::uint16_t>(list));
  if (kind == "Counter") return Item::Counter(static_cast<std::uint16_t>(list.at(0)));
  if (kind == "S5Time") return Item::S5Time(static_cast<std::uint32_t>(list.at(0)));
  if (kind == "Dtl") return Item::Dtl(moment(123456789));
  if (kind == "DateAndTime") return Item::DateAndTime(moment(789));
  throw std::invalid_argument("no kind: " + kind);
}

Item make_texts(const Texts& row) {
  std::vector<std::string> narrow;
  std::vector<std::u16string> wide;
  for (const auto& text : split(row.texts, '|')) {
    const auto characters = numbers_of(text);
    narrow.emplace_back(characters.begin(), characters.end());
    wide.emplace_back(characters.begin(), characters.end());
  }
  const bool is_wide = row.kind == std::string("String16");
  return is_wide ? Item::Strings16(wide, row.size) : Item::Strings8(narrow, row.size);
}

// One PLC: what is added to it suffers from the event.
class Variables {
 public:
  Variables(FakeLibrary& library, Event event) : library_(library), event_(event) {}

  // "Texts[0..3]": an array; "Matrix[1,0]" and "Text": no array.
  void add(const std::string& name_and_bounds, Item item) {
    const auto dots = name_and_bounds.find("..");
    if (dots == std::string::npos) return put(name_and_bounds, item);
    const auto open = name_and_bounds.find('[');
    item.array(std::stoi(name_and_bounds.substr(open + 1)), std::stoi(name_and_bounds.substr(dots + 2)));
    put(name_and_bounds.substr(0, open), item);
  }
  void add_numbers(const Numbers& row) {
    const Item four = make(row.kind, row.elements);
    put("Value", four.element(0));
    put("Line[2].Value", four.element(2));
    add("Array[0..3]", four);
    add("Based[1..4]", four);
    put("Matrix", Item(four).array(0, 1).array(0, 1));
  }

 private:
  void put(const std::string& name, Item item) {
    if (event_ == Event::BufferSizeRefused) item.failBufferSize(kRefused).result(kRefused);
    if (event_ == Event::AccessRefused) item.result(kRefused);
    if (event_ == Event::AccessFaulty) item.sError(kRefused);
    library_.add(name, item);
  }
  FakeLibrary& library_;
  Event event_;
};

// "Texts" of "Texts[0..3]" and of "Texts[INDEX] @2".
std::string base_of(const std::string& name) {
  return name.substr(0, name.find_first_of(" ["));
}

void clear(FakeLibrary& library) {
  for (const char* name : {"Value", "Line[2].Value", "Array", "Based", "Matrix"}) library.remove(name);
  for (const auto& row : texts()) library.remove(base_of(row.variable));
  for (const auto& row : texts()) library.remove(row.variable);
  for (const auto& row : variables()) library.remove(base_of(row.variable));
}

}  // namespace

void fill(FakeLibrary& library, const std::string& type, const std::string& address, Event event) {
  clear(library);
  library.add(kGuard, Item::Counter(kGuardValue));
  if (event == Event::PathUnknown) return;
  Variables plc(library, event);
  for (const auto& row : numbers()) {
    if (row.type == type) plc.add_numbers(row);
  }
  const auto base = base_of(address);
  for (const auto& row : variables()) {
    if (base_of(row.variable) == base) plc.add(row.variable, make(row.kind, row.elements));
  }
  for (const auto& row : texts()) {
    if (type == "STRING" && base_of(row.variable) == base) plc.add(row.variable, make_texts(row));
  }
}

void begin(FakeLibrary& library, Event event) {
  library.clearLog();
  if (event == Event::JobRefused) {
    library.fail("AGL_Symbolic_ReadMixEx", kRefused);
    library.fail("AGL_Symbolic_WriteMixEx", kRefused);
  }
  if (event != Event::ValuesRefused) return;
  for (const auto& kind : kKinds) {
    library.fail("AGL_Symbolic_GetAccessBuffer" + kind, kRefused);
    library.fail("AGL_Symbolic_SetAccessBuffer" + kind, kRefused);
  }
}

void end(FakeLibrary& library) {
  library.succeed("AGL_Symbolic_ReadMixEx");
  library.succeed("AGL_Symbolic_WriteMixEx");
  for (const auto& kind : kKinds) {
    library.succeed("AGL_Symbolic_GetAccessBuffer" + kind);
    library.succeed("AGL_Symbolic_SetAccessBuffer" + kind);
  }
}

}  // namespace tables
