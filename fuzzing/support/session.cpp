// SPDX-License-Identifier: MIT
#include "fuzzing/support/session.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "driver/statuscodes.h"
#include "fuzzing/support/demand.h"
#include "fuzzing/support/expectations.h"
#include "fuzzing/support/memoryfile.h"
#include "fuzzing/support/outcome.h"

namespace fuzz {
namespace {

constexpr std::array<std::string_view, 28> kNames = {
    "Bool",  "USInt", "UInt",   "UDInt",  "ULInt",      "SInt",      "Int",         "DInt",
    "LInt",  "Real",  "LReal",  "Char",   "WChar",      "String",    "WString",     "Wide",
    "BoolA", "IntA",  "DIntN",  "RealP",  "StringA[0]", "IntM[1,2]", "IntA[INDEX]", "StringA[AINDEX].INDEX]",
    "Dtl",   "",      "INDEX]", "S5Time]"};

constexpr std::array<BYTE, 20> kTypes = {DT_BYTE,  DT_WORD, DT_DWORD,  DT_UDINT,  DT_LWORD, DT_LINT, DT_ULINT,
                                         DT_LREAL, DT_UINT, DT_USINT,  DT_LTIME,  DT_BOOL,  DT_SINT, DT_INT,
                                         DT_DINT,  DT_REAL, DT_BITARY, DT_STRING, 0,        5};

constexpr std::size_t kMostDevices = 3;
constexpr BYTE kUntouched = 0xEE;

// One file for each version of the table.
char* project(std::uint8_t version) {
  static std::array<MemoryFile, 4> files;
  static const bool written = [] {
    for (std::size_t v = 0; v < files.size(); ++v) {
      std::vector<unsigned char> bytes(7);
      const auto put = [&](std::uint64_t value, int width) {
        for (int i = 0; i < width; ++i) bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
      };
      put(v, 4);
      put(kNames.size(), 4);
      for (const std::string_view name : kNames) {
        put(name.size(), 2);
        bytes.insert(bytes.end(), name.begin(), name.end());
        put(1, 1);
        put(name.size() + 7, 4);
        put(0, 4);
      }
      put(0, 2);
      put(1, 1);
      put(4, 2);
      put(0x77777777, 4);
      files[v].hold(bytes);
    }
    return true;
  }();
  (void)written;
  return files[version % files.size()].name();
}

void expect_empty(const FRAME_DATA& frame) {
  FUZZ_DEMAND(frame.wSequenceID == 0 && frame.byErrCode == 0 && frame.byCurSysStatus == kFrameStatus);
  FUZZ_DEMAND(frame.nLength == 0);
}

void expect_status(const INPUT_DATA& record) {
  FUZZ_DEMAND(record.byErrCode == kOk || record.byErrCode == kNoData || record.byErrCode == kAskAgain ||
              record.byErrCode == kUntouched);
  FUZZ_DEMAND(record.byCurSysStatus == kInputStatus || record.byCurSysStatus == kUntouched);
}

}  // namespace

std::span<const std::string_view> session_names() {
  return kNames;
}

void expect_working_sessions() {
  Library& library = Library::installed();
  library.begin(nullptr);
  // Up with a request for row 6, which is a 16-bit integer; once more, and its value.
  constexpr std::array<std::uint8_t, 21> kCalls = {0, 0, 0x0F, 1, 0, 10, 0, 1,    0, 0xC0, 0xA8,
                                                   0, 1, 1,    0, 6, 13, 0, 0xFF, 1, 0};
  Input input(kCalls.data(), kCalls.size());
  Session session(input, library);
  session.run();
  const GData& data = session.device().data();
  FUZZ_DEMAND(data.GsymbolsParser.loader_state == SymbolsLoader::Success && data.pGCmdQueue != nullptr);
  std::vector<INPUT_DATA> records(1);
  std::vector<DEVICE_INFO> infos(1);
  infos[0].bRead = TRUE;
  infos[0].pdwMemAddr = session.device().handle();
  KORVALE_DRV_InputFilterEx(records.data(), nullptr, infos.data(), 1);
  FUZZ_DEMAND(records[0].byErrCode == kOk && records[0].wData[0] != 0 && data.device_connect_state);
}

Session::Session(Input& input, Library& library) : input_(input), library_(library) {
  reset_shared_state();
  version_ = input_.byte();
  open();
}

Session::~Session() {
  devices_.clear();
  reset_shared_state();
}

void Session::run() {
  while (!input_.empty() && call()) {
  }
}

void Session::open() {
  const BYTE simulated = input_.byte();
  devices_.push_back(
      std::make_unique<Device>(project(version_), 0, simulated < 0xC0 ? simulated & 1 : simulated));
  current_ = devices_.size() - 1;
}

// What a runtime does most comes under the most bytes. False when the process is gone.
bool Session::call() {
  const std::uint8_t what = input_.byte();
  if (what >= 0xA0) return output(false);
  if (what >= 0x40) return input(false);
  library_.said = {};
  switch (what % 16) {
    case 0:
      return connect();
    case 1:
      KORVALE_DRV_Timeout(input_.byte(), device().handle());
      return true;
    case 2:
      initialise();
      return true;
    case 3: {
      DWORD* handle = device().handle();
      FUZZ_DEMAND(KORVALE_DRV_CheckInitCmdResponseEx2(nullptr, input_.byte(), &handle) ==
                  (device().data().device_connect_state ? TRUE : FALSE));
      return true;
    }
    case 4:
      set_address();
      return true;
    case 5:
      if (devices_.size() < kMostDevices) open();
      return true;
    case 6:
      if (devices_.size() > 1) {
        devices_.erase(devices_.begin() + static_cast<std::ptrdiff_t>(current_));
        current_ = 0;
      }
      return true;
    case 7:
      current_ = input_.byte() % devices_.size();
      return true;
    case 8:
      library_.file_loads = !library_.file_loads;
      return true;
    case 9:
      library_.plc_loads = !library_.plc_loads;
      return true;
    case 10:
      library_.jobs_succeed = !library_.jobs_succeed;
      return true;
    case 11:
      let_threads_start(input_.byte() % 2 == 0);
      return true;
    case 12:
      ask_tables();
      return true;
    case 13:
      return output(true);
    case 14:
      return input(true);
    default:
      // A device that is up, as after all of the above.
      set_address();
      initialise();
      output(false);
      return connect();
  }
}

// Runs the connection threads that wait.
bool Session::connect() {
  const Ending ending = fuzz::run(run_connection_threads);
  FUZZ_DEMAND(ending == Ending::Returned);
  return true;
}

void Session::set_address() {
  std::array<WORD, 11> words{};
  input_.fill(words.data(), 4 * sizeof(WORD));
  words[10] = words[0];
  words[4] = words[1];
  words[5] = words[2];
  words[6] = words[3];
  KORVALE_DRV_InitEx(0, words.data());
  FUZZ_DEMAND(DeviceIP.size() < 64 && ip_table.size() == 1);
}

void Session::initialise() {
  DWORD* handle = device().handle();
  const int index = input_.byte() % 3;
  const BYTE station = input_.byte();
  int length = -1;
  const FRAME_DATA frame = KORVALE_DRV_GetInitCmdEx2(&length, index, station, 0, &handle);
  FUZZ_DEMAND(length == 0 && frame.nLength == 0 && frame.byCurSysStatus == 0);
  FUZZ_DEMAND(KORVALE_DRV_GetCloseCmd(&length, 0).nLength == 0);
}

void Session::ask_tables() {
  const auto attribute = std::make_unique<DRIVER_ATTRIBUTE>();
  KORVALE_DRV_GetAttributeEx(attribute.get());
  std::vector<std::array<char, 9 * 10>> limits(17);
  int count = 0;
  KORVALE_DRV_GetCommandSizeLimitInfo(reinterpret_cast<char(*)[9][10]>(limits.data()), &count);
  FUZZ_DEMAND(count == 17);
  std::vector<std::array<char, 15 * 30>> table(17);
  KORVALE_DRV_GetDeviceTableEx(reinterpret_cast<char(*)[15][30]>(table.data()), &count);
  FUZZ_DEMAND(count == 17);
  std::vector<BYTE> block(kTagDataBlockSize);
  input_.fill(block.data(), block.size());
  int type = -1;
  FUZZ_DEMAND(KORVALE_DRV_GetDataType(block.data(), nullptr, type) == TRUE);
}

// A request of which the bytes that decide most are short, or any 19 bytes of tag data.
void Session::fill(GUI_REQUEST& request, bool raw) {
  std::memset(static_cast<void*>(&request), 0xA5, sizeof request);
  BYTE* block = request.byDriverData;
  request.stCmdType.byFunCode = input_.byte() % 8;
  if (raw) {
    input_.fill(block, kTagDataBlockSize);
  } else {
    const DWORD row = input_.byte() % (kNames.size() + 1);
    std::memcpy(block, &row, sizeof row);
    block[kTagDataTypeOffset] = kTypes[input_.byte() % kTypes.size()];
    block[kTagAlternateTypeOffset] = 0;
    block[kTagBitSelectorOffset] = input_.byte();
    const std::uint8_t index = input_.byte();
    block[kTagIndexOffOffset] = index == 0xFE;
    const WORD array_index = index == 0xFF ? kNoArrayIndex : index == 0xFD ? input_.number<WORD>() : index;
    std::memcpy(block + kTagArrayIndexOffset, &array_index, sizeof array_index);
    const std::uint8_t elements = input_.byte();
    const WORD count = elements < 0xF0 ? elements % 16 : input_.number<WORD>();
    std::memcpy(block + kTagElementCountOffset, &count, sizeof count);
  }
  // Offline each element takes its time: arrays beyond a record's 2048 words, but not far beyond them.
  if (device().data().GOffLineSim != FALSE) block[kTagElementCountOffset + 1] &= 0x0B;
  if (request.stCmdType.byFunCode == kFunctionWordWrite || request.stCmdType.byFunCode == kFunctionBitWrite) {
    WORD_WRITE_COMMAND& command = request.stCommand.stWORDWrite;
    const std::uint8_t words = input_.byte();
    command.wDataNo = words == 0xFF ? input_.number<WORD>() : words;
    const auto taken = input_.take(std::min<std::size_t>(words, 16));
    if (!taken.empty()) std::memcpy(command.wData, taken.data(), taken.size());
  }
  request.pdwMemAddr = device().handle();
}

bool Session::output(bool offline) {
  const std::uint8_t shape = input_.byte();
  const int count = shape >= 0xF8 ? 8 * (shape - 0xF8) - 1 : shape % 5;
  const auto requests =
      std::make_unique_for_overwrite<GUI_REQUEST[]>(static_cast<std::size_t>(std::max(count, 0)));
  for (int i = 0; i < count; ++i) fill(requests[static_cast<std::size_t>(i)], shape % 8 == 7);
  library_.said = {};
  const GData& data = device().data();
  offline = offline || data.GOffLineSim != FALSE;
  FRAME_DATA frame = {};
  frame.byCurSysStatus = kFrameStatus;
  const Ending ending = fuzz::run([&] {
    frame = offline ? KORVALE_DRV_OutputFilterExOffLine(requests.get(), count)
                    : KORVALE_DRV_OutputFilterEx(requests.get(), count);
  });
  expect_empty(frame);
  if (ending == Ending::Returned) return true;
  FUZZ_DEMAND(!offline && count > 0);
  expect_after_output(data, requests.get(), count, ending);
  return ending != Ending::Asserted;
}

bool Session::input(bool offline) {
  const std::uint8_t shape = input_.byte();
  const int count = shape >= 0xF8 ? 8 * (shape - 0xF8) - 1 : shape % 5;
  const auto size = static_cast<std::size_t>(std::max(count, 0));
  std::vector<INPUT_DATA> records(size);
  std::vector<DEVICE_INFO> infos(size);
  if (size != 0) std::memset(static_cast<void*>(records.data()), kUntouched, size * sizeof records[0]);
  const bool read = shape % 8 != 7;
  for (DEVICE_INFO& info : infos) {
    info.bRead = read ? TRUE : FALSE;
    info.nReadWORDSize = shape % 8 == 6 ? input_.number<INT>() : shape;
  }
  if (size != 0) infos[0].pdwMemAddr = device().handle();
  library_.said = {};
  const GData& data = device().data();
  offline = offline || data.GOffLineSim != FALSE;
  const Ending ending = fuzz::run([&] {
    if (offline) {
      KORVALE_DRV_InputFilterExOffLine(records.data(), nullptr, infos.data(), count);
    } else {
      KORVALE_DRV_InputFilterEx(records.data(), nullptr, infos.data(), count);
    }
  });
  for (const INPUT_DATA& record : records) expect_status(record);
  if (ending == Ending::Returned) return true;
  FUZZ_DEMAND(!offline && count > 0);
  expect_after_input(data, ending);
  return ending != Ending::Asserted;
}

}  // namespace fuzz
