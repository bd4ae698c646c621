// SPDX-License-Identifier: MIT
#include "host/session.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "host/usererror.h"

namespace ostravel::host {
namespace {

constexpr BYTE kFunctionRead = 0;
constexpr BYTE kNoDataCode = 2;
constexpr BYTE kAskAgainCode = 13;
constexpr BYTE kUntouched = 0xFF;  // set before the input filter is asked; the driver never answers it
constexpr int kFailedLoaderLength = 8;
constexpr BYTE kHmiStation = 0;
constexpr WORD kSerial = 0;
constexpr std::chrono::milliseconds kAskAgainPause{10};

WORD no_word(int, int) {
  return 0;
}
void ignore_word(int, int, WORD) {}

void put_word(BYTE* at, std::uint16_t word) {
  at[0] = static_cast<BYTE>(word & 0xFF);
  at[1] = static_cast<BYTE>(word >> 8);
}

void fill_tag_data(BYTE* block, const Access& access) {
  put_word(block + kTagRowOffset, static_cast<std::uint16_t>(access.row & 0xFFFF));
  put_word(block + kTagRowOffset + 2, static_cast<std::uint16_t>(access.row >> 16));
  block[kTagDataTypeOffset] = access.type;
  block[kTagBitSelectorOffset] = access.bit_selector;
  put_word(block + kTagArrayIndexOffset, access.array_index);
  put_word(block + kTagElementCountOffset, access.elements);
}

}  // namespace

std::vector<std::uint8_t> parse_address(const std::string& text) {
  std::array<std::uint8_t, 4> octets{};
  if (inet_pton(AF_INET, text.c_str(), octets.data()) != 1) {
    throw UserError(fmt::format("address '{}' is no IPv4 address; write it like 192.168.0.1", text));
  }
  return {octets.begin(), octets.end()};
}

Session::Session(const DriverLibrary& driver, DeviceSettings settings)
    : driver_(driver),
      settings_(std::move(settings)),
      requests_(kBatchLimit),
      infos_(kBatchLimit),
      inputs_(kBatchLimit) {
  parse_address(settings_.address);
  driver_.LinkSetHMIDataInterface(ignore_word);
  driver_.LinkGetHMIDataInterface(no_word);
  describe(driver_);
  auto file = settings_.project_file;
  driver_.StartDeviceEx(settings_.offline ? 1 : 0, &device_, file.data(), settings_.table_position);
  initialise();
}

Session::~Session() {
  int response_length = 0;
  driver_.GetCloseCmd(&response_length, 0);
  driver_.CloseDevice(settings_.offline ? 1 : 0, device_);
}

// The address goes through a table of the driver that the initialisation of any device empties, so both calls
// follow each other at once.
void Session::initialise() {
  const auto octets = parse_address(settings_.address);
  std::array<WORD, 32> parameters{};
  parameters[4] = octets[3];
  parameters[5] = octets[2];
  parameters[6] = static_cast<WORD>(octets[0] | octets[1] << 8);
  parameters[10] = settings_.station;
  driver_.InitEx(kSerial, parameters.data());
  int response_length = 0;
  auto frame = driver_.GetInitCmdEx2(&response_length, 0, settings_.station, kHmiStation, &device_);
  driver_.CheckInitCmdResponseEx2(&frame, 0, &device_);
}

void Session::reinitialise() {
  driver_.Timeout(settings_.offline ? 1 : 0, device_);
  initialise();
}

bool Session::connected() {
  FRAME_DATA frame{};
  return driver_.CheckInitCmdResponseEx2(&frame, 0, &device_) != FALSE;
}

GUI_REQUEST Session::request_of(const Access& access, BYTE function) {
  GUI_REQUEST request{};
  request.stCmdType.byFunCode = function;
  request.stCmdType.byHMIStationNo = kHmiStation;
  request.stCmdType.byPLCStationNo = settings_.station;
  request.stCmdType.byDeviceType = access.type;
  request.wSequenceID = sequence_++;
  request.byUseTag = 1;
  request.pdwMemAddr = device_;
  request.stCommand.stRead.wDataNo = access.words;
  fill_tag_data(request.byDriverData, access);
  return request;
}

BatchAnswer Session::read(std::span<const Access> batch) {
  if (batch.empty() || batch.size() > kBatchLimit) {
    throw std::invalid_argument("a batch holds 1 to 31 requests");
  }
  for (std::size_t i = 0; i < batch.size(); ++i) {
    requests_[i] = request_of(batch[i], kFunctionRead);
  }
  return exchange(batch, true);
}

BatchAnswer Session::write(const WriteAccess& write) {
  if (write.words.size() > kRecordWords) {
    throw std::invalid_argument("a record holds 2048 words");
  }
  requests_[0] = request_of(write.access, write.words.empty() ? kFunctionBitWrite : kFunctionWordWrite);
  auto& command = requests_[0].stCommand;
  if (write.words.empty()) {
    command.stBitWrite = {
        static_cast<BYTE>(write.access.bit_selector == 0 ? 0 : write.access.bit_selector - 1),
        static_cast<BYTE>(write.bit ? 1 : 0), 0};
  } else {
    command.stWORDWrite.wDataNo = static_cast<WORD>(write.words.size());
    std::memcpy(command.stWORDWrite.wData, write.words.data(), write.words.size() * sizeof(WORD));
  }
  return exchange({&write.access, 1}, false);
}

BatchAnswer Session::exchange(std::span<const Access> batch, bool read) {
  const auto count = static_cast<int>(batch.size());
  auto frame = driver_.OutputFilterEx(requests_.data(), count);
  // A response of that length never comes: the runtime would wait for it until its time-out.
  if (requests_[0].byWaitResponse == 1 && requests_[0].nResponseLength == kFailedLoaderLength) {
    return {Outcome::Failed, {}};
  }
  for (std::size_t i = 0; i < batch.size(); ++i) {
    infos_[i] = {};
    infos_[i].bRead = read ? TRUE : FALSE;
    infos_[i].nReadWORDSize = batch[i].words;
    infos_[i].wCurDeviceType = batch[i].type;
    infos_[i].byHMIStationNo = kHmiStation;
    infos_[i].byPLCStationNo = settings_.station;
    infos_[i].pdwMemAddr = device_;
  }
  const auto until = std::chrono::steady_clock::now() + patience_;
  for (;;) {
    for (std::size_t i = 0; i < batch.size(); ++i) {
      inputs_[i] = {};
      inputs_[i].byErrCode = kUntouched;
    }
    driver_.InputFilterEx(inputs_.data(), &frame, infos_.data(), count);
    if (inputs_[0].byErrCode != kAskAgainCode || std::chrono::steady_clock::now() >= until) {
      return collect(batch, read);
    }
    std::this_thread::sleep_for(kAskAgainPause);
  }
}

BatchAnswer Session::collect(std::span<const Access> batch, bool read) const {
  BatchAnswer answer;
  for (std::size_t i = 0; i < batch.size(); ++i) {
    const auto& input = inputs_[i];
    Record record{input.byErrCode, input.byCurSysStatus, {}};
    if (read && input.byErrCode == 0 && input.nLength > 0) {
      record.words.assign(input.wData, input.wData + std::min<int>(input.nLength, kRecordWords));
    }
    answer.records.push_back(std::move(record));
  }
  const auto& first = inputs_[0];
  if (first.byErrCode == kAskAgainCode) {
    answer.outcome = Outcome::NotReady;
  } else if (read && first.nLength == 0) {
    // A batch that was worked on carries the length asked for, also where a tag had no data.
    answer.outcome = Outcome::NoData;
    for (auto& record : answer.records) {
      record.error = record.error == 0 || record.error == kUntouched ? kNoDataCode : record.error;
    }
  } else if (!read && first.byErrCode == kNoDataCode) {
    answer.outcome = Outcome::NoData;
  }
  return answer;
}

}  // namespace ostravel::host
