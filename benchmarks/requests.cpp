// SPDX-License-Identifier: MIT
#include "benchmarks/requests.h"

#include <algorithm>
#include <stdexcept>

#include "driver/statuscodes.h"

namespace bench {

namespace {

constexpr WORD kFirstWord = 0x4141;

TagBlock block(const Access& access, int row, int count) {
  TagBlock tag(access.type.code);
  tag.row(static_cast<DWORD>(row)).count(count);
  if (access.type.code != DT_STRING && access.count > 1) tag.index(access.lower);
  return tag;
}

bool is_bit(const Access& access) {
  return access.type.value == Value::Bool;
}

}  // namespace

const std::vector<Type>& types() {
  // The table's order is that of a mixed poll: what follows each other differs.
  static const std::vector<Type> kTypes = {
      {"INT", DT_INT, Value::Int16, 1},          {"BOOL", DT_BOOL, Value::Bool, 1},
      {"REAL", DT_REAL, Value::Float32, 2},      {"DINT", DT_DINT, Value::Int32, 2},
      {"WORD", DT_WORD, Value::UInt16, 1},       {"BYTE", DT_BYTE, Value::UInt8, 1},
      {"LREAL", DT_LREAL, Value::Float64, 4},    {"UINT", DT_UINT, Value::UInt16, 1},
      {"UDINT", DT_UDINT, Value::UInt32, 2},     {"SINT", DT_SINT, Value::Int8, 1},
      {"LINT", DT_LINT, Value::Int64, 4},        {"DWORD", DT_DWORD, Value::UInt32, 2},
      {"USINT", DT_USINT, Value::UInt8, 1},      {"ULINT", DT_ULINT, Value::UInt64, 4},
      {"LWORD", DT_LWORD, Value::UInt64, 4},     {"BITARY", DT_BITARY, Value::Bool, 1},
      {"LTIME", DT_LTIME, Value::Int64, 4},      {"STRING", DT_STRING, Value::String8, 1},
      {"WSTRING", DT_STRING, Value::String16, 1}};
  return kTypes;
}

const Type& type(const std::string& name) {
  const auto found =
      std::find_if(types().begin(), types().end(), [&](const Type& t) { return name == t.name; });
  if (found == types().end()) throw std::logic_error("no type " + name);
  return *found;
}

int words_of(const Access& access) {
  return access.type.code == DT_STRING ? kStringCharacters : access.count * access.type.words;
}

std::vector<RequestBuilder> read_requests(const std::vector<Access>& accesses) {
  std::vector<RequestBuilder> requests;
  for (std::size_t i = 0; i < accesses.size(); ++i) {
    const int words = words_of(accesses[i]);
    const int count = accesses[i].type.code == DT_STRING ? words : accesses[i].count;
    requests.push_back(RequestBuilder::Read(block(accesses[i], static_cast<int>(i), count), words));
  }
  return requests;
}

std::vector<WORD> write_words(const Access& access) {
  if (is_bit(access)) return std::vector<WORD>(static_cast<std::size_t>(access.count), 1);
  const int words = access.type.code == DT_STRING ? kStringCharacters / 2 : words_of(access);
  std::vector<WORD> data;
  data.reserve(static_cast<std::size_t>(words));
  for (int i = 0; i < words; ++i) data.push_back(static_cast<WORD>(kFirstWord + (i & 15)));
  return data;
}

RequestBuilder write_request(const Access& access, const std::vector<WORD>& words, int row) {
  const int count = access.type.code == DT_STRING ? static_cast<int>(words.size()) : access.count;
  const TagBlock tag = block(access, row, count);
  return is_bit(access) ? RequestBuilder::BitWrite(tag, 1) : RequestBuilder::WordWrite(tag, words);
}

std::string difference(const std::vector<Access>& accesses, const std::vector<std::string>& names,
                       const std::vector<INPUT_DATA>& records, const std::vector<INPUT_DATA>& expected) {
  for (std::size_t i = 0; i < accesses.size(); ++i) {
    if (records[i].byErrCode != kOk || records[i].byCurSysStatus != kInputStatus) {
      return names[i] + ": no good answer";
    }
    const int words = words_of(accesses[i]);
    const auto wrong = std::mismatch(records[i].wData, records[i].wData + words, expected[i].wData);
    if (wrong.first != records[i].wData + words) {
      return names[i] + ": word " + std::to_string(wrong.first - records[i].wData) + " is " +
             std::to_string(*wrong.first) + " instead of " + std::to_string(*wrong.second);
    }
  }
  return {};
}

}  // namespace bench
