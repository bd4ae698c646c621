// SPDX-License-Identifier: MIT
// A communication library that answers anything.
//   input = how:byte calls:byte{how * 4} lie*
// The calls are a session's (see support/session.h); behind it single functions of the driver are called.
#include "fuzzing/support/library.h"

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/expectations.h"
#include "fuzzing/support/outcome.h"
#include "fuzzing/support/session.h"
#include "symbolic/arrayhelper.h"
#include "symbolic/bufferreader.h"
#include "symbolic/bufferwriter.h"
#include "symbolic/enumhelper.h"

namespace {

void read_alone(SymbolsLoader& loader, const std::string& path, bool multi) {
  const fuzz::Ending ending = fuzz::run_apart([&] {
    unsigned long position = 0;
    const auto value = multi ? loader.ReadDataFromPlcByPathfor_multi_array_transfer(path, &position)
                             : loader.ReadDataFromPlcByPath(path);
    (void)value;
  });
  // The array is read under its own name.
  std::string read = path;
  if (multi && path.find('[') != std::string::npos) read = RemoveLastArraySymbol(path);
  if (ending == fuzz::Ending::OutOfRange && multi && path.find('[') == std::string::npos) return;
  fuzz::expect_after_read(read, ending);
}

void ask_array(const std::string& path) {
  const fuzz::Ending ending = fuzz::run_apart([&] {
    std::vector<unsigned> lower;
    std::vector<unsigned> upper;
    const bool described = get_array_description(fuzz::kRoot, path, lower, upper);
    FUZZ_DEMAND(!described || lower.size() == upper.size());
    if (described) (void)array_fill_bytes(4, lower, upper);
    (void)ArrayHelper::ParseIndex(1);
    (void)ArrayHelper::ParseArrayDimensions(1);
  });
  FUZZ_DEMAND(ending == fuzz::Ending::Returned || ending == fuzz::Ending::OutOfRange);
  fuzz::expect_after_read(path, ending);
}

// Each reader alone, on an access and behind bytes that are there already.
void read_elements(fuzz::Input& lies, HandleType access) {
  using Reader = void (*)(const SymbolicRW_t&, const size_t&, std::vector<unsigned char>&);
  static constexpr std::array<Reader, 20> kReaders = {
      BufferReader::GetBufferValue,    BufferReader::GetSystemSpecificBufferValue,
      BufferReader::ReadUInt8,         BufferReader::ReadUInt16,
      BufferReader::ReadUInt32,        BufferReader::ReadUInt64,
      BufferReader::ReadInt8,          BufferReader::ReadInt16,
      BufferReader::ReadInt32,         BufferReader::ReadInt64,
      BufferReader::ReadFloat32,       BufferReader::ReadFloat64,
      BufferReader::ReadChar8,         BufferReader::ReadChar16,
      BufferReader::ReadString8,       BufferReader::ReadString16,
      BufferReader::ReadS7Counter,     BufferReader::ReadS5Time,
      BufferReader::ReadS7DateAndtime, BufferReader::ReadDTL};
  const std::size_t which = lies.byte() % kReaders.size();
  const std::size_t before = lies.byte() % 8;
  fuzz::Library& library = fuzz::Library::installed();
  // What the dispatching readers ask for themselves.
  if (which == 1) library.said.value_type = ValueType_t::vt_SYSTEM_SPECIFIC;
  if (which == 14) library.said.value_type = ValueType_t::vt_STRING8;
  if (which == 15) library.said.value_type = ValueType_t::vt_STRING16;
  const fuzz::Ending ending = fuzz::run_apart([&] {
    std::array<unsigned char, 64> buffer{};
    const SymbolicRW_t rw{access, buffer.data(), buffer.size(), 0, 0};
    std::vector<unsigned char> data(before, 0xAB);
    kReaders[which](rw, which % 3, data);
    if (which != 0 && which != 14 && which != 15)
      FUZZ_DEMAND(data.size() >= before && data.size() <= before + 12);
  });
  fuzz::expect_after_read("x", ending);
}

// Each writer alone. A value that begins behind the data, and an empty text or Bool, raise.
void write_element(fuzz::Input& lies, HandleType access) {
  using Writer = void (*)(SymbolicRW_t&, const size_t&, const std::vector<unsigned char>&, size_t);
  static constexpr std::array<Writer, 16> kWriters = {
      BufferWriter::WriteUint8,      BufferWriter::WriteUint16,   BufferWriter::WriteUint32,
      BufferWriter::WriteUint64,     BufferWriter::WriteInt8,     BufferWriter::WriteInt16,
      BufferWriter::WriteInt32,      BufferWriter::WriteInt64,    BufferWriter::WriteFloat32,
      BufferWriter::WriteFloat64,    BufferWriter::WriteChar8,    BufferWriter::WriteChar16,
      BufferWriter::WriteString8,    BufferWriter::WriteString16, BufferWriter::WriteSystemSpecific,
      BufferWriter::WriteBufferValue};
  const std::size_t which = lies.byte() % kWriters.size();
  const std::size_t position = lies.byte() % 16;
  const auto bytes = lies.take(lies.byte() % 16);
  const std::size_t size = bytes.size();
  const bool zero = size == 1 && bytes[0] == 0;
  const fuzz::Ending ending = fuzz::run_apart([&] {
    // A buffer that is shorter than a value.
    std::array<unsigned char, 1> buffer{};
    SymbolicRW_t rw{access, buffer.data(), buffer.size(), 0, 0};
    kWriters[which](rw, which % 3, {bytes.begin(), bytes.end()}, position);
  });
  if (ending == fuzz::Ending::Asserted) {
    FUZZ_DEMAND(which == 15 && fuzz::last_assertion().file == "bufferwriter.cpp");
    return;
  }
  FUZZ_DEMAND(ending != fuzz::Ending::BadAlloc);
  FUZZ_DEMAND(ending == fuzz::Ending::Returned || position >= size || zero || size == 0);
}

// A text, or the assertion that there is none.
void name_enumerators(agl_int32_t number) {
  const auto name = [&](auto text_of, auto value) {
    const fuzz::Ending ending = fuzz::run_apart([&] { FUZZ_DEMAND(text_of(value)[0] != '\0'); });
    FUZZ_DEMAND(ending == fuzz::Ending::Returned || ending == fuzz::Ending::Asserted);
    if (ending == fuzz::Ending::Asserted) FUZZ_DEMAND(fuzz::last_assertion().file == "enumhelper.cpp");
  };
  name(EnumHelper::get_type_state_str, static_cast<TypeState_t::enum_t>(number));
  name(EnumHelper::get_segment_type_str, static_cast<SegmentType_t::enum_t>(number));
  name(EnumHelper::get_hierarchy_type_str, static_cast<HierarchyType_t::enum_t>(number));
  name(EnumHelper::get_system_type_str, static_cast<SystemType_t::enum_t>(number));
  name(EnumHelper::get_value_type_str, static_cast<ValueType_t::enum_t>(number));
  name(EnumHelper::get_access_type_str, static_cast<PermissionType_t::enum_t>(number));
  name(EnumHelper::get_node_type_str, static_cast<NodeType_t::enum_t>(number));
  name(EnumHelper::get_system_type_state_str, static_cast<SystemTypeState_t::enum_t>(number));
}

}  // namespace

int LLVMFuzzerInitialize(int*, char***) {
  if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
  fuzz::expect_working_sessions();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input lies(data, size);
  const std::uint8_t how = lies.byte();
  const auto calls = lies.take(std::size_t{how} * 4 % 256);
  fuzz::Input input(calls.data(), calls.size());
  fuzz::Library& library = fuzz::Library::installed();
  library.begin(&lies);
  fuzz::Session session(input, library);
  session.run();
  const auto names = fuzz::session_names();
  const std::string path(names[how % names.size()]);
  library.said = {};
  const HandleType access = library.open(path);
  switch (how % 6) {
    case 0:
      ask_array(path);
      break;
    case 1:
    case 2:
      read_alone(session.device().data().GsymbolsParser, path, how % 6 == 1);
      break;
    case 3:
      read_elements(lies, access);
      break;
    case 4:
      write_element(lies, access);
      break;
    default:
      name_enumerators(lies.number<agl_int32_t>());
      break;
  }
  return 0;
}
