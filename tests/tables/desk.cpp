// SPDX-License-Identifier: MIT
#include "tests/tables/desk.h"

#include <algorithm>
#include <sstream>

#include "tests/tables/address.h"

namespace tables {
namespace {

auto loader_state(Event event) {
  switch (event) {
    case Event::Loading:
      return SymbolsLoader::Loading;
    case Event::Idle:
      return SymbolsLoader::Idle;
    case Event::LoaderFailed:
      return SymbolsLoader::Error;
    case Event::Disconnected:
      return SymbolsLoader::Disconnect;
    default:
      return SymbolsLoader::Success;
  }
}

// "-" for what is still as the record was handed over.
std::string part(int value, int untouched) {
  return value == untouched ? "-" : std::to_string(value);
}

constexpr int kUntouchedLength = static_cast<int>(0xEEEEEEEEU);

}  // namespace

std::unique_ptr<FakeLibrary> Desk::library_;
Device* Desk::online_[2];
Device* Desk::simulated_[2];

void Desk::SetUpTestSuite() {
  library_ = std::make_unique<FakeLibrary>();
  for (const std::size_t paired : {0U, 1U}) {
    online_[paired] = new Device(project(paired == 1));
    simulated_[paired] = new Device(project(paired == 1), Device::Simulated);
  }
}

void Desk::TearDownTestSuite() {
  for (const std::size_t paired : {0U, 1U}) {
    delete online_[paired];
    delete simulated_[paired];
  }
  library_.reset();
}

Device& Desk::in_state(Device& device, Event event) {
  KORVALE_DRV_Timeout(0, device.handle());
  device.connected().read_words(kAsked);
  device.loader().bDisconnect = false;
  device.loader().loader_state = loader_state(event);
  return device;
}

Device& Desk::device(Event event) {
  return in_state(*online_[event == Event::Paired ? 1 : 0], event);
}

Device& Desk::new_device(Event event) {
  auto& place = online_[event == Event::Paired ? 1 : 0];
  delete place;
  place = new Device(project(event == Event::Paired));
  return in_state(*place, event);
}

Device& Desk::simulated_device(Event event) {
  auto& device = in_state(*simulated_[event == Event::Paired ? 1 : 0], event);
  device.data().GMap.clear();
  return device;
}

std::string Desk::output(const Device& device, Batch& batch) {
  const Batch before = batch;
  const auto frame = device.output(batch);
  for (std::size_t i = 0; i < batch.size(); ++i) {
    auto expected = before[i];
    if (i == 0) {
      expected.nResponseLength = batch[0].nResponseLength;
      expected.byWaitResponse = batch[0].byWaitResponse;
    }
    const BYTE alternate = expected.byDriverData[6];
    if (batch[i].byDriverData[4] == alternate) expected.byDriverData[4] = alternate;
    const auto* bytes = reinterpret_cast<const BYTE*>(&expected);
    EXPECT_TRUE(std::equal(bytes, bytes + sizeof expected, reinterpret_cast<const BYTE*>(&batch[i])))
        << "request " << i << " has changed";
  }
  return status_of(frame) + " " + std::to_string(batch[0].byWaitResponse) + " " +
         std::to_string(batch[0].nResponseLength);
}

void Desk::expect_record(const INPUT_DATA& record, const std::string& expected, int asked,
                         const std::vector<WORD>& value) {
  std::istringstream stream(expected);
  std::string status, length, words;
  stream >> status >> length >> words;
  EXPECT_EQ(part(record.byErrCode, kUntouchedByte) + "/" + part(record.byCurSysStatus, kUntouchedByte),
            status);
  EXPECT_EQ(part(record.nLength, kUntouchedLength), length == "asked" ? std::to_string(asked) : length);
  const auto given = words == "value" ? value : std::vector<WORD>();
  for (std::size_t i = 0; i < kRecordWords; ++i) {
    const WORD wanted = i < given.size() ? given[i] : kUntouchedWord;
    if (record.wData[i] == wanted) continue;
    ADD_FAILURE() << "word " << i << " is " << std::hex << record.wData[i] << " instead of " << wanted
                  << (i < given.size() ? "" : ": nothing was to be put there");
    return;
  }
}

Loader state_of(const Device& device) {
  switch (device.loader().loader_state) {
    case SymbolsLoader::Idle:
      return Loader::Idle;
    case SymbolsLoader::Loading:
      return Loader::Loading;
    case SymbolsLoader::Success:
      return Loader::Success;
    case SymbolsLoader::Error:
      return Loader::Error;
    default:
      return Loader::Disconnect;
  }
}

}  // namespace tables
