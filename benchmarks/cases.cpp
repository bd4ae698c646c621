// SPDX-License-Identifier: MIT
#include "benchmarks/cases.h"

namespace bench {

namespace {

constexpr int kRuns = 10;
constexpr int kNameLength = 40;  // where it is not what is varied

std::vector<Access> scalars(int count) {
  constexpr std::size_t kScalarTypes = 15;  // those in front of the types that no value is delivered of
  std::vector<Access> accesses;
  accesses.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    accesses.push_back({types()[static_cast<std::size_t>(i) % kScalarTypes], 1, 0});
  return accesses;
}

std::string number(int value) {
  std::string text = std::to_string(value);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, ",");
  return text;
}

std::string plural(int count, const std::string& what) {
  return number(count) + " " + what + (count == 1 ? "" : "s");
}

class Table {
 public:
  const std::vector<Case>& rows() const { return rows_; }

  Table() {
    for (const bool offline : {false, true}) {
      polls(offline);
      reads(offline);
      writes(offline);
    }
    elements();
    tag_tables();
    others();
  }

 private:
  void add(Case row) { rows_.push_back(std::move(row)); }

  void polls(bool offline) {
    const std::string prefix = offline ? "offline-" : "";
    const auto poll = [&](int count, int length) {
      add({prefix + "poll-" + std::to_string(count) + "-names-" + std::to_string(length),
           offline ? "Offline polls of scalar tags" : "Polls of scalar tags",
           plural(count, "tag") + ", names of " + std::to_string(length), count, "tag", kRuns,
           [=](const Driver& driver) {
             return offline ? offline_poll(driver, scalars(count), length)
                            : online_poll(driver, scalars(count), length);
           }});
    };
    for (const int length : kNameLengths) {
      for (const int count : {1, 8, 31}) poll(count, length);
    }
    for (const int count : {3, 30}) poll(count, kNameLength);
  }

  void read(bool offline, const std::string& name, int count, int lower, const std::string& id,
            const std::string& label, const char* unit) {
    const Access access{type(name), count, lower};
    const int units = access.type.code == DT_STRING ? kStringCharacters : count;
    add({(offline ? "offline-" : "") + id, offline ? "Offline reads" : "Reads", label, units, unit, kRuns,
         [=](const Driver& driver) {
           return offline ? offline_poll(driver, {access}, kNameLength)
                          : online_poll(driver, {access}, kNameLength);
         }});
  }

  void reads(bool offline) {
    for (const int lower : {0, 1}) {
      for (const int count : {10, 100, 200, 1000, 2000}) {
        read(offline, "INT", count, lower,
             "read-int-" + std::to_string(count) + "-from-" + std::to_string(lower),
             number(count) + " 16-bit integers from " + std::to_string(lower), "element");
      }
    }
    read(offline, "BYTE", 1000, 0, "read-byte-1000", "1,000 bytes", "element");
    read(offline, "LREAL", 250, 0, "read-lreal-250", "250 doubles", "element");
    read(offline, "LREAL", 500, 0, "read-lreal-500", "500 doubles", "element");
    read(offline, "BOOL", 1000, 0, "read-bool-1000", "1,000 Booleans", "element");
    read(offline, "STRING", 1, 0, "read-string-254", "a string of 254", "character");
    read(offline, "WSTRING", 1, 0, "read-wstring-254", "a wide string of 254", "character");
  }

  void write(bool offline, const Type& what, int count, const std::string& id, const std::string& label) {
    const Access access{what, count, 0};
    const bool text = what.code == DT_STRING;
    add({(offline ? "offline-write-" : "write-") + id, offline ? "Offline writes" : "Writes", label,
         text ? kStringCharacters : count, text ? "character" : "element", kRuns, [=](const Driver& driver) {
           return offline ? offline_write(driver, access, kNameLength)
                          : online_write(driver, access, kNameLength);
         }});
  }

  void writes(bool offline) {
    for (const Type& what : types()) {
      const std::string name = what.name;
      const bool text = what.code == DT_STRING;
      std::string id;
      for (const char c : name) id += static_cast<char>(c - 'A' + 'a');
      write(offline, what, 1, id, (text ? "a " : "one ") + name + (text ? " of 254" : ""));
    }
    for (const int count : {10, 100, 200, 1000, 2000}) {
      write(offline, type("INT"), count, "int-" + std::to_string(count), number(count) + " 16-bit integers");
    }
  }

  void elements() {
    constexpr int kElements = 31;
    for (const int rows : {10000, 100000}) {
      const std::string in = "in a table of " + number(rows) + " rows";
      add({"offline-elements-" + std::to_string(rows), "Offline string elements", "31 elements read " + in,
           kElements, "element", 1, [=](const Driver& driver) { return offline_elements(driver, rows); }});
      add({"offline-element-write-" + std::to_string(rows), "Offline string elements",
           "one element written " + in, 1, "element", 1,
           [=](const Driver& driver) { return offline_element_write(driver, rows); }});
    }
  }

  void tag_tables() {
    for (const int rows : {100, 10000, 100000, 1000000}) {
      add({"table-" + std::to_string(rows), "The tag table", number(rows) + " rows", rows, "row", 1,
           [=](const Driver& driver) { return tag_table(driver, rows); }});
    }
  }

  void others() {
    add({"forwarded-call", "Others", "a forwarded call", 1, "call", kRuns,
         [](const Driver& driver) { return forwarded_call(driver); }});
    // As poll-8-names-40 with a second device: what it takes more is what a device costs that is left alone.
    add({"poll-8-beside-idle", "Others", "8 tags, names of 40, beside an idle device", 8, "tag", kRuns,
         [](const Driver& driver) { return online_poll(driver, scalars(8), kNameLength, 1); }});
  }

  std::vector<Case> rows_;
};

}  // namespace

const std::vector<Case>& cases() {
  static const Table table;
  return table.rows();
}

}  // namespace bench
