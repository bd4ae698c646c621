// SPDX-License-Identifier: MIT
// From a batch of requests to queued read commands, or to a write that is done at once.
#include <algorithm>
#include <vector>

#include "driver/datatypes.h"
#include "driver/driver.h"
#include "driver/statuscodes.h"

namespace {

constexpr INT kFailedResponseLength = 8;
constexpr int kCommandsPerStep = 99;

FRAME_DATA answer(GUI_REQUEST& request, BYTE wait_response, INT response_length) {
  request.byWaitResponse = wait_response;
  request.nResponseLength = response_length;
  return empty_frame();
}

// False when it has to wait for a later cycle.
bool start_connection_thread(GData& device) {
  SymbolsLoader& loader = device.GsymbolsParser;
  if (!loader.OrderSetup(device.DeviceIP)) return false;
  if (pthread_create(&device.thread, nullptr, server_listen_thread, &device) == 0) return true;
  loader.CancelOrder();
  return false;
}

void start_device(GData& device) {
  if (device.GsymbolsParser.loader_state == SymbolsLoader::Idle && !start_connection_thread(device)) return;
  device.LOADER_PROJECT = GetCurSystemMS_Tick();
  device.pGCmdQueue = nullptr;
  device.GCmdCounts = 0;
  device.GTotalStep = 0;
  device.GCurrentStep = 0;
  device.GCacheBitArray = FALSE;
  device.bIsInitDevice = true;
}

// One command a request. A name that cannot be substituted raises before anything is queued.
void set_up_commands(GData& device, GUI_REQUEST* requests, int count) {
  for (int i = 0; i < count; ++i) {
    stCmdDesc& command = device.GCmdDesc[i];
    command.Cmd_Status = false;
    SetupReadCmdDesc(requests[i].byDriverData, &command, static_cast<UINT>(i), &device.GTagTable);
    command.pGData = &device;
  }
  // Those of a longer batch before this one hold no value of this cycle.
  for (int i = count; i < device.last_batch; ++i) device.GCmdDesc[i].Cmd_Status = false;
  device.last_batch = count;
}

// Queues the commands, arrays at the head and scalars at the tail; the first request stays behind all arrays.
// All are packed into one step: a device has fewer than a step may hold.
void build_queue(GData& device, int count) {
  static_assert(kCommandPoolSize < kCommandsPerStep);
  stCmdRestrictInfo step;
  InitCmdRestrictInfo(&step);
  SetCmdQueueHead(&device.GCmdDesc[0]);
  CanPackCmd(&device.GCmdDesc[0], &step);
  for (int i = 1; i < count; ++i) {
    stCmdDesc& command = device.GCmdDesc[i];
    if (command.ElementCounts < 2) {
      AddCmdQueueTail(&command);
    } else {
      AddCmdQueueHead(&command);
    }
    CanPackCmd(&command, &step);
  }
  device.GPackSize[device.GTotalStep++] = step.CmdCounts;
}

FRAME_DATA read(GData& device, GUI_REQUEST* requests, int count, const stTag& tag) {
  if (device.pGCmdQueue == nullptr) {
    set_up_commands(device, requests, count);
    build_queue(device, count);
  }
  // The head's mark goes whatever tag it holds, and also while a cycle is under way, deliberately.
  if (tag.DataType == DT_STRING) device.pGCmdQueue->is_wstring = false;
  return answer(requests[0], 0, 0);
}

// What a write is addressed to.
struct WriteTarget {
  TagName& name;
  WORD index;  // kNoArrayIndex when the name is the whole address
  bool multi;  // the name is an element of a multi-dimensional array
  // The index that goes along with a path that does not name the element.
  WORD source_index() const { return multi || index == kNoArrayIndex ? WORD{0} : index; }
};

WriteTarget write_target(GData& device, const stTag& tag) {
  TagName& name = device.write_name;
  WORD index = tag.ArrayIndex;
  const NameTraits& traits = device.GTagTable.name_traits(static_cast<DWORD>(tag.TagIndex));
  const std::string_view row_name(tag.pTagName, traits.length);
  if (traits.has_placeholder) {
    name.SubstituteIndex(row_name, tag.ArrayIndex);
    index = kNoArrayIndex;
  } else {
    name.Borrow(row_name, traits.hash);
  }
  return {name, index, IsMultiDimensionArray(name.view())};
}

// Puts the value's bytes into data: the words' bytes in order; of a string those that are not zero.
void take_value_bytes(const GUI_REQUEST& request, BYTE data_type, std::vector<unsigned char>& data) {
  if (data_type == DT_BITARY) {
    data.assign(1, request.stCommand.stBitWrite.byData != 0 ? BYTE{1} : BYTE{0});
    return;
  }
  const WORD_WRITE_COMMAND& command = request.stCommand.stWORDWrite;
  const auto* bytes = reinterpret_cast<const unsigned char*>(command.wData);
  data.assign(bytes, bytes + std::min<std::size_t>(command.wDataNo, kRecordWords) * sizeof(WORD));
  if (data_type == DT_STRING) std::erase(data, 0);
}

bool write_string(SymbolsLoader& loader, const WriteTarget& target) {
  constexpr std::size_t kEmptyString = 2;  // zero bytes
  constexpr unsigned char kStringUnit = 2;
  if (write_string_data.empty()) write_string_data.resize(kEmptyString);
  if (target.index == kNoArrayIndex || target.multi) {
    return loader.WriteDataFromPlcByPath(target.name.view(), write_string_data, 0, kStringUnit);
  }
  // The index goes along a second time although the path names the element, deliberately; numbers do not do
  // so.
  target.name.NameElement(target.index);
  return loader.WriteDataFromPlcByPath(target.name.view(), write_string_data, target.index, kStringUnit);
}

bool write_words(SymbolsLoader& loader, const WriteTarget& target, BYTE data_type,
                 const std::vector<unsigned char>& data) {
  const BYTE element_size = data_type_info(data_type).write_bytes;
  const bool single_element =
      !target.multi && target.index != kNoArrayIndex && element_size != 0 && data.size() / element_size == 1;
  if (single_element) {
    target.name.AppendIndex(target.index);
    return loader.WriteDataFromPlcByPath(target.name.view(), data, 0, element_size);
  }
  return loader.WriteDataFromPlcByPath(target.name.view(), data, target.source_index(), element_size);
}

FRAME_DATA write(GData& device, GUI_REQUEST& request, const stTag& tag) {
  SymbolsLoader& loader = device.GsymbolsParser;
  const WriteTarget target = write_target(device, tag);
  void* written = request.stCommand.stWORDWrite.wData;
  std::vector<unsigned char>& data = tag.DataType == DT_STRING ? write_string_data : device.write_bytes;
  bool accepted = false;
  if (request.stCmdType.byFunCode == kFunctionBitWrite && tag.DataType == DT_BOOL) {
    data = {request.stCommand.stBitWrite.byData != 0 ? BYTE{1} : BYTE{0}, 0};
    accepted = loader.WriteDataFromPlcByPath(target.name.view(), data, 0, 1);
    written = &request.stCommand.stBitWrite.byData;
  } else {
    take_value_bytes(request, tag.DataType, data);
    accepted = tag.DataType == DT_STRING ? write_string(loader, target)
                                         : write_words(loader, target, tag.DataType, data);
  }
  device.write_device_state = accepted;
  if (accepted) device.device_connect_state = true;
  SetupWriteCmdDesc(request.byDriverData, &device.GCmdDesc[0], 0, &device.GTagTable, written, 0);
  return answer(request, 0, 0);
}

bool is_write(const GUI_REQUEST& request) {
  return request.stCmdType.byFunCode == kFunctionWordWrite ||
         request.stCmdType.byFunCode == kFunctionBitWrite;
}

}  // namespace

FRAME_DATA KORVALE_DRV_OutputFilterEx(GUI_REQUEST* pstCurQueueData, int nCmdCount) {
  if (nCmdCount <= 0) return empty_frame();
  GUI_REQUEST& request = pstCurQueueData[0];
  GData& device = *device_of(request.pdwMemAddr);
  if (device.GOffLineSim != FALSE) return KORVALE_DRV_OutputFilterExOffLine(pstCurQueueData, nCmdCount);
  if (device.GsymbolsParser.loader_state == SymbolsLoader::Error)
    return answer(request, 1, kFailedResponseLength);
  if (!device.bIsInitDevice) start_device(device);

  stTag tag;
  FillTagStruct(&device.GTagTable, &tag, request.byDriverData);
  if (is_write(request)) return write(device, request, tag);
  return read(device, pstCurQueueData, std::min(nCmdCount, kCommandPoolSize), tag);
}
