// SPDX-License-Identifier: MIT
// From queued read commands to values in the runtime's records: one packed step a call, one library job a
// step.
#include <algorithm>
#include <cstdio>
#include <span>

#include "driver/driver.h"
#include "driver/pathset.h"
#include "driver/statuscodes.h"
#include "driver/valueconversion.h"

namespace {

using Records = std::span<INPUT_DATA>;

void answer_ask_again(Records records) {
  for (INPUT_DATA& record : records) {
    record.byErrCode = kAskAgain;
    record.byCurSysStatus = kInputStatus;
  }
}

// The status that a record holds stays, deliberately.
void answer_no_data(Records records) {
  for (INPUT_DATA& record : records) record.byErrCode = kNoData;
}

// A string array's element is read by a path of its own.
void name_string_element(stCmdDesc& command) {
  if (command.DataType == DT_STRING && command.ArrayIndex != kNoArrayIndex &&
      !IsMultiDimensionArray(command.tag_name.view())) {
    command.tag_name.NameElement(command.ArrayIndex);
  }
}

// Puts the distinct paths of the current step into the batch, in queue order. Nothing is unlinked yet.
void collect_paths(GData& device) {
  ReadBatch& batch = device.read_batch;
  batch.Clear();
  PathSet paths;
  stCmdDesc* command = device.pGCmdQueue;
  for (UINT i = 0; i < device.GPackSize[device.GCurrentStep] && command != nullptr; ++i) {
    if (command->use_index_register) {
      command->ArrayIndex = kNoArrayIndex;
    } else {
      name_string_element(*command);
    }
    command->Place = paths.PlaceOf(command->tag_name, batch);
    command = command->pNext;
  }
}

// The values are in the device's batch. One whose job failed holds none.
void read_step(GData& device) {
  collect_paths(device);
  int error_code = 0;
  if (device.GsymbolsParser.ReadPaths(device.read_batch, error_code)) {
    device.device_connect_state = true;
    return;
  }
  std::printf("read_error_code = %x,queue_size = %d\n", static_cast<unsigned>(error_code),
              static_cast<int>(device.read_batch.size()));
  std::printf("result_data.size()  = %x\n", 0U);
  device.GsymbolsParser.bDisconnect = true;
}

void convert(stCmdDesc& command, std::span<const unsigned char> data, std::uint32_t table_version) {
  command.Cmd_Status = !data.empty();
  if (!command.Cmd_Status) return command.EndData(0);
  // Without an index of its own the value starts where the data starts; else it is picked out of the whole
  // array.
  const bool whole = command.ArrayIndex == kNoArrayIndex || command.DataType == DT_STRING ||
                     IsMultiDimensionArray(command.tag_name.view());
  fill_data_buffer(command, data, whole ? WORD{0} : command.ArrayIndex, table_version);
}

void drop_queue(GData& device) {
  device.pGCmdQueue = nullptr;
  device.GCmdCounts = 0;
  device.GTotalStep = 0;
  device.GCurrentStep = 0;
}

// Ends the cycle when an exception leaves it: what was left of the queue would be answered to the next batch.
class CycleInQuestion {
 public:
  explicit CycleInQuestion(GData& device) : device_(&device) {}
  ~CycleInQuestion() {
    if (device_ != nullptr) drop_queue(*device_);
  }
  CycleInQuestion(const CycleInQuestion&) = delete;
  CycleInQuestion& operator=(const CycleInQuestion&) = delete;
  void GoesOn() { device_ = nullptr; }

 private:
  GData* device_;
};

void disconnect(GData& device, Records records) {
  answer_no_data(records);
  device.read_device_state = false;
  device.write_device_state = false;
  device.device_connect_state = false;
  device.GsymbolsParser.loader_state = SymbolsLoader::Error;
  drop_queue(device);
  device.LOADER_PROJECT = 0;
  device.GsymbolsParser.RemoveSymbolsFile();  // the next connection loads the symbols from the PLC
}

// Converts the current step's commands and unlinks them. False when the connection is found lost.
bool convert_step(GData& device) {
  const UINT count = device.GPackSize[device.GCurrentStep];
  for (UINT i = 0; i < count && device.pGCmdQueue != nullptr; ++i) {
    if (device.GsymbolsParser.bDisconnect) return false;
    stCmdDesc& command = *device.pGCmdQueue;
    convert(command, device.read_batch.value(command.Place), device.GTagTable.version_);
    device.pGCmdQueue = command.pNext;
    --device.GCmdCounts;
  }
  return true;
}

void deliver(stCmdDesc& command, std::uint32_t table_version, INPUT_DATA& record) {
  if (!command.Cmd_Status) {
    record.byErrCode = kNoData;
  } else if (command.BitIndex == -1) {
    deliver_words(command, table_version, record);
  } else if (command.BitIndex >= 0) {
    deliver_bits(command.DataBuffer, command.DataType, command.BitIndex, command.ElementCounts, record);
  }
}

void fill_records(GData& device, Records records, const DEVICE_INFO* infos) {
  const std::size_t served = std::min<std::size_t>(records.size(), kCommandPoolSize);
  for (std::size_t i = 0; i < served; ++i) {
    stCmdDesc& command = device.GCmdDesc[i];
    if (command.nCmdIndex >= records.size()) continue;
    INPUT_DATA& record = records[command.nCmdIndex];
    record.byErrCode = kOk;
    record.byCurSysStatus = kInputStatus;
    record.nLength = infos[command.nCmdIndex].nReadWORDSize;
    deliver(command, device.GTagTable.version_, record);
  }
  answer_no_data(records.subspan(served));
}

void answer_read(GData& device, Records records, const DEVICE_INFO* infos) {
  if (device.pGCmdQueue == nullptr) return answer_ask_again(records);
  CycleInQuestion cycle(device);
  read_step(device);
  const bool connected = convert_step(device);
  cycle.GoesOn();
  if (!connected) return disconnect(device, records);
  ++device.GCurrentStep;
  if (device.GCurrentStep < device.GTotalStep) return answer_ask_again(records);
  fill_records(device, records, infos);
  device.GTotalStep = 0;
  device.GCurrentStep = 0;
}

}  // namespace

void KORVALE_DRV_InputFilterEx(INPUT_DATA* pstInput, FRAME_DATA* pstFrameData, DEVICE_INFO* pstDeviceInfo,
                               int nCmdCount) {
  if (nCmdCount <= 0) return;
  GData& device = *device_of(pstDeviceInfo[0].pdwMemAddr);
  if (device.GOffLineSim != FALSE) {
    return KORVALE_DRV_InputFilterExOffLine(pstInput, pstFrameData, pstDeviceInfo, nCmdCount);
  }
  const Records records(pstInput, static_cast<std::size_t>(nCmdCount));
  records[0].byErrCode = kOk;
  records[0].byCurSysStatus = kInputStatus;
  records[0].nLength = 0;
  const SymbolsLoader::loader_status_ state = device.GsymbolsParser.loader_state;
  if (state == SymbolsLoader::Loading) return answer_no_data(records);
  if (state == SymbolsLoader::Idle) return answer_ask_again(records);
  if (pstDeviceInfo[0].bRead == FALSE || state != SymbolsLoader::Success) {
    // The whole answer to a write, also to one that failed, deliberately.
    device.GTotalStep = 0;
    device.GCurrentStep = 0;
    return;
  }
  answer_read(device, records, pstDeviceInfo);
}
