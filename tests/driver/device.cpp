// SPDX-License-Identifier: MIT
#include "tests/driver/device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

// A simulated device's close releases the block without its members, on purpose: no leak to fail for.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:KORVALE_DRV_StartDeviceEx\nleak:CloseDevice_ReleasesTheBlock\n";
}

namespace {

// Devices live as long as the program, as online ones do for the runtime: a connection thread may still be on
// its way out of one.
void keep(DWORD* handle) {
  static auto& devices = *new std::vector<DWORD*>;
  devices.push_back(handle);
}

}  // namespace

Device::Device(const ProjectFile& project, Mode mode) {
  std::string name = project.write(folder_);
  KORVALE_DRV_StartDeviceEx(mode, &handle_, name.data(), project.position());
  keep(handle_);
}

Device& Device::address(BYTE station) {
  auto words = parameter_words(station);
  KORVALE_DRV_InitEx(0, words.data());
  int response_length = 0;
  KORVALE_DRV_GetInitCmdEx2(&response_length, 0, station, 0, &handle_);
  return *this;
}

Device& Device::connected() {
  loader().station_id = kStation;
  loader().root_schema_node = kTree;
  loader().loader_state = SymbolsLoader::Success;
  data().bIsInitDevice = true;
  return *this;
}

Batch Device::batch(std::vector<RequestBuilder> requests) const {
  Batch records;
  for (auto& request : requests) records.push_back(request.device(handle_).build());
  return records;
}

FRAME_DATA Device::output(Batch& records) const {
  return KORVALE_DRV_OutputFilterEx(records.data(), static_cast<int>(records.size()));
}

FRAME_DATA Device::output(std::vector<RequestBuilder> requests) const {
  auto records = batch(std::move(requests));
  return output(records);
}

std::vector<INPUT_DATA> Device::input(int count, bool read) const {
  const auto size = static_cast<std::size_t>(count);
  std::vector<INPUT_DATA> records(size + 2);
  std::memset(records.data(), kUntouchedByte, records.size() * sizeof(INPUT_DATA));
  std::vector<DEVICE_INFO> infos(size);
  for (std::size_t i = 0; i < size; ++i) {
    std::memset(&infos[i], kReservedPattern, sizeof(DEVICE_INFO));
    infos[i].bRead = read ? TRUE : FALSE;
    infos[i].nReadWORDSize = read_words_ + static_cast<int>(i);
    infos[i].pdwMemAddr = i == 0 ? handle_ : nullptr;
  }
  FRAME_DATA frame{};
  KORVALE_DRV_InputFilterEx(&records[1], &frame, infos.data(), count);
  const auto untouched = [](const INPUT_DATA& record) {
    const auto* bytes = reinterpret_cast<const BYTE*>(&record);
    return std::all_of(bytes, bytes + sizeof record, [](BYTE b) { return b == kUntouchedByte; });
  };
  EXPECT_TRUE(untouched(records.front())) << "written in front of the first record";
  EXPECT_TRUE(untouched(records.back())) << "written behind the last record";
  return {records.begin() + 1, records.end() - 1};
}

std::vector<INPUT_DATA> Device::read(std::vector<RequestBuilder> requests) const {
  const int count = static_cast<int>(requests.size());
  output(std::move(requests));
  return input(count);
}

std::vector<WORD> parameter_words(int station) {
  std::vector<WORD> words(16, 0x7777);
  words[4] = 10;
  words[5] = 1;
  words[6] = 0xA8C0;
  words[10] = static_cast<WORD>(0x5500 | station);
  return words;
}

std::vector<WORD> words_of(const INPUT_DATA& record, std::size_t count) {
  return {record.wData, record.wData + count};
}

std::string status_of(const INPUT_DATA& record) {
  return std::to_string(record.byErrCode) + "/" + std::to_string(record.byCurSysStatus);
}

std::string status_of(const FRAME_DATA& frame) {
  return std::to_string(frame.byErrCode) + "/" + std::to_string(frame.byCurSysStatus) + "/" +
         std::to_string(frame.nLength);
}
