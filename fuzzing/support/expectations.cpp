// SPDX-License-Identifier: MIT
#include "fuzzing/support/expectations.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "driver/datatypes.h"
#include "fuzzing/support/demand.h"
#include "fuzzing/support/library.h"

namespace fuzz {
namespace {

constexpr std::int64_t kAllocationLimit = std::int64_t{64} << 20;  // see options.cpp

const Library::Said& said() {
  return Library::installed().said;
}

bool is_text(agl_int32_t type) {
  return type == ValueType_t::vt_STRING8 || type == ValueType_t::vt_STRING16;
}

bool has_layout(agl_int32_t type) {
  return type >= ValueType_t::vt_SYSTEM_SPECIFIC && type <= ValueType_t::vt_FLOAT64 &&
         type != ValueType_t::vt_CHAR32 && type != ValueType_t::vt_STRING32;
}

void expect_bad_alloc() {
  FUZZ_DEMAND(said().bytes + (std::int64_t{1} << 16) >= kAllocationLimit);
}

void expect_reader_assertion() {
  const Assertion& assertion = last_assertion();
  FUZZ_DEMAND(assertion.file == "bufferreader.cpp");
  if (assertion.line == 172) {
    FUZZ_DEMAND(assertion.expression == "false" && !has_layout(said().value_type));
  } else if (assertion.line == 414) {
    FUZZ_DEMAND(assertion.expression == "res == AGL40_SUCCESS");
    FUZZ_DEMAND(said().value_type == ValueType_t::vt_STRING16 && said().string_result != AGL40_SUCCESS);
  } else if (assertion.line == 460) {
    FUZZ_DEMAND(assertion.expression == "res == AGL40_SUCCESS");
    FUZZ_DEMAND(said().value_type == ValueType_t::vt_SYSTEM_SPECIFIC &&
                said().system_result != AGL40_SUCCESS);
  } else {
    FUZZ_DEMAND(assertion.line == 484 && assertion.expression == "false");
    FUZZ_DEMAND(said().value_type == ValueType_t::vt_SYSTEM_SPECIFIC &&
                said().system_result == AGL40_SUCCESS);
    const agl_int32_t type = said().system_type;
    FUZZ_DEMAND(type != SystemType_t::st_S7_Counter && type != SystemType_t::st_S7_S5Time &&
                type != SystemType_t::st_S7_Date_And_Time && type != SystemType_t::st_S7_DTL);
  }
}

// A text that the library declares to have no room for a byte.
bool text_without_bytes() {
  return is_text(said().value_type) && said().string_result == AGL40_SUCCESS && said().string_size < 0;
}

// The array that the path names an element of cannot be named.
bool array_name_raises(std::string_view path) {
  return path.empty() || (path.back() == ']' && path.find('[') == std::string_view::npos);
}

// The command's value does not reach to the element asked for.
bool conversion_raises(const stCmdDesc& command, const ReadBatch& values) {
  if (command.Place >= values.size()) return false;
  const std::size_t size = values.value(command.Place).size();
  const bool whole = command.ArrayIndex == kNoArrayIndex || IsMultiDimensionArray(command.tag_name.view());
  const std::size_t offset = whole ? 0 : command.ArrayIndex;
  const std::size_t words = std::min<std::size_t>(command.WordCount, kDataBufferWords);
  const DataTypeInfo& type = data_type_info(command.DataType);
  switch (type.form) {
    case WordForm::Bool:
      return words != 0 && offset / 16 >= size;
    case WordForm::Byte:
      return words != 0 && offset + words > size;
    case WordForm::Direct:
      return offset * type.element_bytes >= size;
    case WordForm::None:
    case WordForm::String:
      break;
  }
  return false;
}

bool is_write(const GUI_REQUEST& request) {
  return request.stCmdType.byFunCode == kFunctionWordWrite ||
         request.stCmdType.byFunCode == kFunctionBitWrite;
}

bool write_raises(const GData& device, const GUI_REQUEST& request) {
  if (name_raises(row_name(device, request))) return true;
  const bool text = request.byDriverData[kTagDataTypeOffset] == DT_STRING;
  const std::vector<unsigned char>& data = text ? write_string_data : device.write_bytes;
  const bool lone_zero = data.size() == 1 && data[0] == 0;
  // One that says "text" only later has its elements written one by one, of which there is none without data.
  if (!is_text(said().first_value_type)) return lone_zero && is_text(said().value_type);
  // A library that takes its type back leaves a number to be written from behind the end.
  return data.empty() || lone_zero || said().value_type != said().first_value_type;
}

}  // namespace

bool name_raises(std::string_view name) {
  const std::size_t end = name.find("INDEX]");
  return end != std::string_view::npos && name.substr(0, end).find('[') == std::string_view::npos;
}

std::string_view row_name(const GData& device, const GUI_REQUEST& request) {
  DWORD row = 0;
  std::memcpy(&row, request.byDriverData, sizeof row);
  return device.GTagTable.Get(row)->pStringA;
}

void expect_after_output(const GData& device, const GUI_REQUEST* requests, int count, Ending ending) {
  switch (ending) {
    case Ending::Returned:
      return;
    case Ending::OutOfRange: {
      if (is_write(requests[0])) {
        FUZZ_DEMAND(write_raises(device, requests[0]));
        return;
      }
      const int served = std::min(count, kCommandPoolSize);
      FUZZ_DEMAND(std::any_of(requests, requests + served, [&](const GUI_REQUEST& request) {
        return name_raises(row_name(device, request));
      }));
      return;
    }
    case Ending::BadAlloc:
      FUZZ_DEMAND(is_write(requests[0]));
      return expect_bad_alloc();
    case Ending::Asserted: {
      const Assertion& assertion = last_assertion();
      FUZZ_DEMAND(is_write(requests[0]));
      FUZZ_DEMAND(assertion.file == "bufferwriter.cpp" && assertion.line == 191 &&
                  assertion.expression == "false" && !has_layout(said().value_type));
      return;
    }
  }
}

void expect_after_input(const GData& device, Ending ending) {
  switch (ending) {
    case Ending::Returned:
      return;
    case Ending::OutOfRange: {
      bool raises = text_without_bytes();
      for (int i = 0; i < device.last_batch; ++i) {
        raises = raises || conversion_raises(device.GCmdDesc[i], device.read_batch);
      }
      for (std::size_t i = 0; i < device.read_batch.size(); ++i) {
        raises = raises || array_name_raises(device.read_batch.path(i));
      }
      FUZZ_DEMAND(raises);
      return;
    }
    case Ending::BadAlloc:
      return expect_bad_alloc();
    case Ending::Asserted:
      return expect_reader_assertion();
  }
}

void expect_after_read(std::string_view path, Ending ending) {
  switch (ending) {
    case Ending::Returned:
      return;
    case Ending::OutOfRange:
      FUZZ_DEMAND(text_without_bytes() || array_name_raises(path));
      return;
    case Ending::BadAlloc:
      return expect_bad_alloc();
    case Ending::Asserted:
      return expect_reader_assertion();
  }
}

}  // namespace fuzz
