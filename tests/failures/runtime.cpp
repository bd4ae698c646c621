// SPDX-License-Identifier: MIT
#include "tests/failures/runtime.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <stdexcept>

#include "tests/driver/device.h"
#include "tests/failures/injection.h"

namespace {

std::string text_of(const INPUT_DATA& record) {
  const auto text = [](auto number, auto untouched) {
    return number == untouched ? std::string("-") : std::to_string(number);
  };
  constexpr INT kUntouchedLength = static_cast<INT>(0xEEEEEEEE);
  std::string line = text(+record.byErrCode, +kUntouchedByte) + "/" +
                     text(+record.byCurSysStatus, +kUntouchedByte) + "/" +
                     text(record.nLength, kUntouchedLength);
  for (const WORD word : record.wData) {
    if (word == kUntouchedWord) break;
    line += fmt::format(" {:04X}", word);
  }
  return line;
}

}  // namespace

Runtime::Runtime(const ProjectFile& project, Mode mode)
    : file_(project.write(folder_)), position_(project.position()), mode_(mode) {}

Runtime::~Runtime() {
  injection::forget_started_thread();
  delete device_of(handle_);
}

template <class Call>
std::string Runtime::call(Call entry_point) {
  raised_.clear();
  try {
    const injection::DriverSide driver;
    entry_point();
  } catch (const std::bad_alloc&) {
    raised_ = "bad_alloc";
  } catch (const std::out_of_range&) {
    raised_ = "out_of_range";
  }
  return raised_;
}

std::string Runtime::start() {
  delete device_of(handle_);
  handle_ = nullptr;
  return call([this] { KORVALE_DRV_StartDeviceEx(mode_, &handle_, file_.data(), position_); });
}

std::string Runtime::init() {
  auto words = parameter_words(kStationNumber);
  // Numbers that are none of an address make the longest text that a runtime can ask for.
  words[4] = words[5] = 0xFFFF;
  return call([&] { KORVALE_DRV_InitEx(0, words.data()); });
}

std::string Runtime::init_command() {
  int response_length = -1;
  return call([&] { KORVALE_DRV_GetInitCmdEx2(&response_length, 0, kStationNumber, 0, &handle_); });
}

std::string Runtime::output(const std::vector<RequestBuilder>& requests) {
  std::vector<GUI_REQUEST> records;
  for (RequestBuilder request : requests) records.push_back(request.device(handle_).build());
  FRAME_DATA frame{};
  const int count = static_cast<int>(records.size());
  if (!call([&] { frame = KORVALE_DRV_OutputFilterEx(records.data(), count); }).empty()) return raised_;
  return fmt::format("{} wait {} length {}", status_of(frame), records[0].byWaitResponse,
                     records[0].nResponseLength);
}

std::vector<std::string> Runtime::input(int count, bool read) {
  const auto size = static_cast<std::size_t>(count);
  std::vector<INPUT_DATA> records(size);
  std::memset(records.data(), kUntouchedByte, size * sizeof(INPUT_DATA));
  std::vector<DEVICE_INFO> infos(size);
  for (DEVICE_INFO& info : infos) {
    info.bRead = read ? TRUE : FALSE;
    info.nReadWORDSize = kWordsAsked;
    info.pdwMemAddr = handle_;
  }
  FRAME_DATA frame{};
  if (!call([&] { KORVALE_DRV_InputFilterEx(records.data(), &frame, infos.data(), count); }).empty()) {
    return {raised_};
  }
  std::vector<std::string> lines;
  for (const INPUT_DATA& record : records) lines.push_back(text_of(record));
  return lines;
}

void Runtime::timeout() {
  call([this] { KORVALE_DRV_Timeout(mode_, handle_); });
}

void Runtime::close_command() {
  int response_length = 0;
  call([&] { KORVALE_DRV_GetCloseCmd(&response_length, 0); });
}

void Runtime::bring_up() {
  ASSERT_EQ(start(), "");
  ASSERT_EQ(init(), "");
  ASSERT_EQ(init_command(), "");
}

void Runtime::connect() {
  ASSERT_EQ(output({RequestBuilder::Read(TagBlock(DT_INT))}), "0/8/0 wait 0 length 0");
  ASSERT_TRUE(injection::run_started_thread());
  ASSERT_EQ(loader().loader_state, SymbolsLoader::Success);
  timeout();  // the queue goes; the loader stays as it is
}

void Runtime::reconnect(const std::vector<RequestBuilder>& requests) {
  timeout();
  ASSERT_EQ(init(), "");
  ASSERT_EQ(init_command(), "");
  ASSERT_EQ(output(requests), "0/8/0 wait 0 length 0");
  ASSERT_TRUE(injection::run_started_thread());
  ASSERT_EQ(loader().loader_state, SymbolsLoader::Success);
  input(static_cast<int>(requests.size()));  // or what is queued would be answered to the next batch
}

void forget_globals() {
  ip_table.clear();
  std::string().swap(DeviceIP);
  std::vector<unsigned char>().swap(write_string_data);
}
