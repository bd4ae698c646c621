// SPDX-License-Identifier: MIT
#include "tests/tables/roundtrip_plc.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace roundtrip {
namespace {

using V = ValueType_t;
using S = SystemType_t;
using Shape = MemoryLibrary::Shape;

const std::vector<std::pair<std::string, Shape>>& shapes() {
  static const std::vector<std::pair<std::string, Shape>> list = {
      {"BYTE", {V::vt_UINT8, S::st_S7_Byte, 1}},
      {"USINT", {V::vt_UINT8, S::st_S7_USInt, 1}},
      {"SINT", {V::vt_INT8, S::st_S7_SInt, 1}},
      {"WORD", {V::vt_UINT16, S::st_S7_Word, 2}},
      {"UINT", {V::vt_UINT16, S::st_S7_UInt, 2}},
      {"INT", {V::vt_INT16, S::st_S7_Int, 2}},
      {"DWORD", {V::vt_UINT32, S::st_S7_DWord, 4}},
      {"UDINT", {V::vt_UINT32, S::st_S7_UDInt, 4}},
      {"DINT", {V::vt_INT32, S::st_S7_DInt, 4}},
      {"REAL", {V::vt_FLOAT32, S::st_S7_Real, 4}},
      {"LWORD", {V::vt_UINT64, S::st_S7_LWord, 8}},
      {"LINT", {V::vt_INT64, S::st_S7_LInt, 8}},
      {"ULINT", {V::vt_UINT64, S::st_S7_ULInt, 8}},
      {"LREAL", {V::vt_FLOAT64, S::st_S7_LReal, 8}},
      {"BOOL", {V::vt_UINT8, S::st_S7_Bool, 1}},
      {"BITARY", {V::vt_UINT8, S::st_S7_Bool, 1}},
      {"STRING", {V::vt_STRING8, S::st_S7_String, kTextSize + 2, kTextSize}},
  };
  return list;
}

const std::vector<std::string>& tags() {
  static const auto list = [] {
    std::vector<std::string> names;
    for (const auto& [type, shape] : shapes()) {
      for (const char* name :
           {"Value", "Array", "Array[3]", "Array[INDEX]", "Based", "Matrix[1,2]", "Line[INDEX].Value"}) {
        names.push_back(type + "." + name);
      }
    }
    names.emplace_back("Wide");
    return names;
  }();
  return list;
}

}  // namespace

Plc::Plc(MemoryLibrary& library) : library_(library) {
  for (const auto& [type, shape] : shapes()) {
    library.add(type + ".Value", shape);
    library.add(type + ".Array", shape, {{0, kElements - 1}});
    library.add(type + ".Based", shape, {{kBase, kBase + kElements - 1}});
    library.add(type + ".Matrix", shape, {{0, 2}, {0, 3}});
    for (int i = 0; i < 4; ++i) library.add(type + ".Line[" + std::to_string(i) + "].Value", shape);
  }
  library.add("Wide", {V::vt_STRING16, S::st_S7_WString, 2 * kTextSize + 2, kTextSize});
  account_.assign(library.memory().size(), 0);
}

ProjectFile Plc::project(bool paired) {
  ProjectFile file(paired ? 1 : 0);
  for (const auto& name : tags()) file.tag(name);
  return file;
}

DWORD Plc::row(const std::string& tag) {
  const auto found = std::find(tags().begin(), tags().end(), tag);
  if (found == tags().end()) throw std::invalid_argument("no tag " + tag);
  return static_cast<DWORD>(found - tags().begin());
}

void Plc::put(const std::string& path, const std::vector<unsigned char>& bytes) {
  const auto offset = library_.place(path).offset;
  std::copy(bytes.begin(), bytes.end(), account_.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::vector<unsigned char> Plc::bytes(const std::string& path, int count) const {
  const auto& place = library_.place(path);
  const auto from = account_.begin() + static_cast<std::ptrdiff_t>(place.offset);
  return {from, from + std::ptrdiff_t{count} * place.shape.element_size};
}

}  // namespace roundtrip
