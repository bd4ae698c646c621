// SPDX-License-Identifier: MIT
// The table that the cases of this folder are made of: every row of reads*.def, writes*.def and offline*.def,
// each tried in every event of answers.def. All bytes are written out in the table; nothing in it comes from
// the driver.
//
// Variables of the PLC:
//   NUMBERS(type, kind, elements)     for rows of that type, with four numbers as the PLC holds them: "Value"
//                                     (the first), "Array[0..3]", "Based[1..4]", "Matrix[0..1, 0..1]" and
//                                     "Line[2].Value" (the third)
//   TEXTS(name[bounds], kind, declared size, texts)    for rows of STRING; texts apart by "|", in characters
//   VARIABLE(name[bounds], kind, elements)             for rows of any type
//
// Rows:
//   READ(type, form, address, words)
//       words that the runtime gets, and not one more; "aligned | paired" when the layout of texts matters;
//       "no data", or "out of range" for the exception
//   WRITE(type, form, address, words, path, elements)
//       words of a word write, or "set [byte]" and "clear" for a bit write; the path that the library is
//       asked for, and the access buffer's elements as it gets them, or a text's characters ("empty": none);
//       "nothing" when the PLC has no such path
//   OFFLINE(type, form, writes, address, words)
//       writes apart by ";", each "address = words", or "address set [byte]" or "address clear"; then a read
//
// An address is the tag's name and what stands in the tag data block beside it: @5 the array index (0xFFFF if
// there is none), x3 the number of elements (else 1), .4 bit 4, .i the bit that the index names, .#129 the
// bit selector as it is, -i the index is off, ~ the type is given as the alternate type. Numbers are
// hexadecimal, but for those of addresses; 0041*3 is 0041 three times.
#pragma once

#include <string>
#include <vector>

namespace tables {

struct Numbers {
  const char* type;
  const char* kind;
  const char* elements;
};
struct Texts {
  const char* variable;
  const char* kind;
  int size;
  const char* texts;
};
struct Variable {
  const char* variable;
  const char* kind;
  const char* elements;
};

struct ReadRow {
  const char* type;
  const char* form;
  const char* address;
  const char* words;
};
struct WriteRow {
  const char* type;
  const char* form;
  const char* address;
  const char* words;
  const char* path;
  const char* elements;
};
struct OfflineRow {
  const char* type;
  const char* form;
  const char* writes;
  const char* address;
  const char* words;
};

enum class Event {
  Aligned,
  Paired,
  PathUnknown,
  BufferSizeRefused,
  AccessRefused,
  AccessFaulty,
  ValuesRefused,
  JobRefused,
  Loading,
  Idle,
  LoaderFailed,
  Disconnected,
};
// Values: one job with the row's elements; SomeJob: one job on the row's path; NoJob: the path is asked for,
// and that is all; NoCall: the library is not called.
enum class Reaches { Values, SomeJob, NoJob, NoCall };
enum class Loader { Idle, Loading, Success, Error, Disconnect };

struct ReadAnswer {
  Event event;
  const char* event_name;
  const char* output;
  const char* record;
  const char* guard;
  Loader loader;
};
struct WriteAnswer {
  Event event;
  const char* event_name;
  const char* output;
  const char* record;
  Reaches reaches;
  bool written;
};
struct OfflineAnswer {
  Event event;
  const char* event_name;
  const char* record;
};

const std::vector<Numbers>& numbers();
const std::vector<Texts>& texts();
const std::vector<Variable>& variables();

struct ReadCase {
  ReadRow row;
  ReadAnswer answer;
  std::string name() const;  // Read_INT_ArrayFrom1_Paired
};
struct WriteCase {
  WriteRow row;
  WriteAnswer answer;
  std::string name() const;
};
struct OfflineCase {
  OfflineRow row;
  OfflineAnswer answer;
  std::string name() const;
};

// The cases in which the symbol cache file goes are apart: they need a /mnt/project of their own.
const std::vector<ReadCase>& read_cases();
const std::vector<ReadCase>& lost_connection_cases();
const std::vector<WriteCase>& write_cases();
const std::vector<OfflineCase>& offline_cases();

// Whether an address is of an array that begins above zero.
bool is_based(const std::string& address);
// Whether an address is of a variable that NUMBERS made.
bool is_numbers(const std::string& address);

}  // namespace tables
