// SPDX-License-Identifier: MIT
#include "tests/tables/rows.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tables {
namespace {

#define NUMBERS(type, kind, elements)
#define TEXTS(variable, kind, size, texts)
#define VARIABLE(variable, kind, elements)
#define READ(type, form, address, words) ReadRow{#type, #form, address, words},
const std::vector<ReadRow> kReads = {
#include "tests/tables/reads8.def"

#include "tests/tables/reads16.def"

#include "tests/tables/reads32.def"

#include "tests/tables/reads64.def"

#include "tests/tables/reads_other.def"
};
#undef READ
#define READ(type, form, address, words)

#undef NUMBERS
#define NUMBERS(type, kind, elements) Numbers{#type, #kind, elements},
const std::vector<Numbers> kNumbers = {
#include "tests/tables/reads8.def"

#include "tests/tables/reads16.def"

#include "tests/tables/reads32.def"

#include "tests/tables/reads64.def"

#include "tests/tables/reads_other.def"
};
#undef NUMBERS
#define NUMBERS(type, kind, elements)

#undef TEXTS
#define TEXTS(variable, kind, size, texts) Texts{variable, #kind, size, texts},
const std::vector<Texts> kTexts = {
#include "tests/tables/reads_other.def"
};
#undef TEXTS
#define TEXTS(variable, kind, size, texts)

#undef VARIABLE
#define VARIABLE(variable, kind, elements) Variable{variable, #kind, elements},
const std::vector<Variable> kVariables = {
#include "tests/tables/reads_other.def"
};

#define WRITE(type, form, address, words, path, elements) \
  WriteRow{#type, #form, address, words, path, elements},
const std::vector<WriteRow> kWrites = {
#include "tests/tables/writes16.def"
#include "tests/tables/writes32.def"
#include "tests/tables/writes64.def"
#include "tests/tables/writes8.def"
#include "tests/tables/writes_other.def"
};

#define OFFLINE(type, form, writes, address, words) OfflineRow{#type, #form, writes, address, words},
const std::vector<OfflineRow> kOffline = {
#include "tests/tables/offline16.def"
#include "tests/tables/offline32.def"
#include "tests/tables/offline64.def"
#include "tests/tables/offline8.def"
#include "tests/tables/offline_other.def"
};

#define READ_ANSWER(event, output, record, guard, loader) \
  ReadAnswer{Event::event, #event, output, record, guard, Loader::loader},
#define WRITE_ANSWER(event, output, record, reaches, written)
#define OFFLINE_ANSWER(event, record)
const std::vector<ReadAnswer> kReadAnswers = {
#include "tests/tables/answers.def"
};
#undef READ_ANSWER
#undef WRITE_ANSWER
#define READ_ANSWER(event, output, record, guard, loader)
#define WRITE_ANSWER(event, output, record, reaches, written) \
  WriteAnswer{Event::event, #event, output, record, Reaches::reaches, written},
const std::vector<WriteAnswer> kWriteAnswers = {
#include "tests/tables/answers.def"
};
#undef WRITE_ANSWER
#undef OFFLINE_ANSWER
#define WRITE_ANSWER(event, output, record, reaches, written)
#define OFFLINE_ANSWER(event, record) OfflineAnswer{Event::event, #event, record},
const std::vector<OfflineAnswer> kOfflineAnswers = {
#include "tests/tables/answers.def"
};

bool begins(const std::string& address, std::string_view name) {
  return address.starts_with(name) &&
         (address.size() == name.size() || address[name.size()] == ' ' || address[name.size()] == '[');
}

template <class Row, class Answer>
std::string name_of(const char* direction, const Row& row, const Answer& answer) {
  return std::string(direction) + "_" + row.type + "_" + row.form + "_" + answer.event_name;
}

bool can_happen(const ReadRow& row, Event event) {
  const bool has_no_bytes = event == Event::AccessFaulty || event == Event::ValuesRefused;
  if (has_no_bytes && is_based(row.address)) return false;
  return event != Event::ValuesRefused || is_numbers(row.address);
}

std::vector<ReadCase> reads(bool lost) {
  std::vector<ReadCase> cases;
  for (const auto& row : kReads) {
    for (const auto& answer : kReadAnswers) {
      if ((answer.event == Event::JobRefused) == lost && can_happen(row, answer.event)) {
        cases.push_back({row, answer});
      }
    }
  }
  return cases;
}

template <class Case, class Row, class Answer>
std::vector<Case> product(const std::vector<Row>& rows, const std::vector<Answer>& answers) {
  std::vector<Case> cases;
  for (const auto& row : rows) {
    for (const auto& answer : answers) cases.push_back({row, answer});
  }
  return cases;
}

}  // namespace

bool is_based(const std::string& address) {
  return begins(address, "Based") || begins(address, "BasedTexts");
}

bool is_numbers(const std::string& address) {
  static constexpr std::array<std::string_view, 5> kNames = {"Value", "Array", "Based", "Matrix", "Line"};
  return std::any_of(kNames.begin(), kNames.end(),
                     [&](std::string_view name) { return begins(address, name); });
}

const std::vector<Numbers>& numbers() {
  return kNumbers;
}
const std::vector<Texts>& texts() {
  return kTexts;
}
const std::vector<Variable>& variables() {
  return kVariables;
}

std::string ReadCase::name() const {
  return name_of("Read", row, answer);
}
std::string WriteCase::name() const {
  return name_of("Write", row, answer);
}
std::string OfflineCase::name() const {
  return name_of("Offline", row, answer);
}

const std::vector<ReadCase>& read_cases() {
  static const auto cases = reads(false);
  return cases;
}
const std::vector<ReadCase>& lost_connection_cases() {
  static const auto cases = reads(true);
  return cases;
}
const std::vector<WriteCase>& write_cases() {
  static const auto cases = product<WriteCase>(kWrites, kWriteAnswers);
  return cases;
}
const std::vector<OfflineCase>& offline_cases() {
  static const auto cases = product<OfflineCase>(kOffline, kOfflineAnswers);
  return cases;
}

}  // namespace tables
