// SPDX-License-Identifier: MIT
#include "tests/host/fakedriver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

FakeDriver from_environment() {
  FakeDriver told;
  const auto text = [](const char* name) {
    const char* value = std::getenv(name);
    return std::string(value == nullptr ? "" : value);
  };
  std::istringstream rows(text("FAKE_DRIVER_WORDS"));
  for (std::string row; std::getline(rows, row, ';');) {
    std::istringstream words(row.substr(row.find(':') + 1));
    auto& kept = told.words[static_cast<std::uint32_t>(std::stoul(row))];
    for (std::string word; std::getline(words, word, ',');) {
      kept.push_back(static_cast<WORD>(std::stoul(word)));
    }
  }
  std::istringstream lost(text("FAKE_DRIVER_LOST"));
  char comma = 0;
  lost >> told.lost_at_read >> comma >> told.failed_starts;
  std::istringstream(text("FAKE_DRIVER_NOT_READY")) >> told.not_ready;
  return told;
}

FakeDriver fake = from_environment();
bool broken = false;
DWORD device_memory = 0;
bool reads = false;

void call(const std::string& text) {
  fake.calls.push_back(text);
}

std::uint32_t row_of(const GUI_REQUEST& request) {
  std::uint32_t row = 0;
  std::memcpy(&row, request.byDriverData, sizeof(row));
  return row;
}

template <std::size_t Cells, std::size_t Width>
void put_row(char (*table)[Cells][Width], int row, std::initializer_list<const char*> cells) {
  std::memset(table[row], 0, sizeof(table[row]));
  std::size_t i = 0;
  for (const char* cell : cells) {
    std::strncpy(table[row][i++], cell, Width - 1);
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) FakeDriver* fake_driver() {
  return &fake;
}

EXPORTED void KORVALE_DRV_LinkSetHMIDataInterface(KORVALE_DRV_SET_HMIDATA function) {
  call(function != nullptr ? "LinkSet" : "LinkSet null");
}
EXPORTED void KORVALE_DRV_LinkGetHMIDataInterface(KORVALE_DRV_GET_HMIDATA function) {
  call(function != nullptr ? "LinkGet" : "LinkGet null");
}
EXPORTED void KORVALE_DRV_GetAttributeEx(DRIVER_ATTRIBUTE* attribute) {
  std::strcpy(attribute->cName, "Fake");
  attribute->wVersion = 107;
  attribute->wDriverID = 42;
  call("GetAttribute");
}
EXPORTED void KORVALE_DRV_GetDeviceTableEx(char (*table)[15][30], int* rows) {
  put_row(table, 0, {"W", "INT", "195", "D", "W"});
  *rows = 1;
}
EXPORTED void KORVALE_DRV_GetCommandSizeLimitInfo(char (*table)[9][10], int* rows) {
  put_row(table, 0, {"195", "256", "1"});
  *rows = 1;
}
EXPORTED BOOL KORVALE_DRV_GetDataType(const BYTE* tag_data, const BYTE*, int& data_type) {
  if (tag_data[4] == DT_INT) {
    data_type = 9;
  }
  return TRUE;
}
EXPORTED void KORVALE_DRV_StartDeviceEx(BYTE simulate, DWORD** device, char* file, DWORD position) {
  *device = &device_memory;
  call("StartDevice " + std::to_string(simulate) + " " + file + " " + std::to_string(position));
}
EXPORTED void KORVALE_DRV_InitEx(WORD, WORD* parameters) {
  fake.parameters.assign(parameters, parameters + 11);
  call("Init");
}
EXPORTED FRAME_DATA KORVALE_DRV_GetInitCmdEx2(int* length, int command, BYTE station, BYTE, DWORD** device) {
  *length = 0;
  broken = broken && fake.failed_starts-- > 0;
  call("GetInitCmd " + std::to_string(command) + " " + std::to_string(station) +
       (*device == &device_memory ? "" : " wrong device"));
  return {};
}
EXPORTED BOOL KORVALE_DRV_CheckInitCmdResponseEx2(FRAME_DATA*, int, DWORD**) {
  call("CheckInitCmd");
  return FALSE;
}
EXPORTED void KORVALE_DRV_Timeout(BYTE, DWORD*) {
  call("Timeout");
}
EXPORTED FRAME_DATA KORVALE_DRV_GetCloseCmd(int*, int) {
  call("GetCloseCmd");
  return {};
}
EXPORTED void KORVALE_DRV_CloseDevice(BYTE simulate, DWORD*) {
  call("CloseDevice " + std::to_string(simulate));
}

EXPORTED FRAME_DATA KORVALE_DRV_OutputFilterEx(GUI_REQUEST* requests, int count) {
  std::puts("a line of the driver");
  call("Output " + std::to_string(count));
  fake.requests.assign(requests, requests + count);
  const BYTE function = requests[0].stCmdType.byFunCode;
  reads = function != kFunctionWordWrite && function != kFunctionBitWrite;
  if (!reads) {
    fake.writes.push_back(requests[0]);
    const auto kept = fake.words.find(row_of(requests[0]));
    if (function == kFunctionWordWrite && kept != fake.words.end()) {
      const auto& write = requests[0].stCommand.stWORDWrite;
      std::copy_n(write.wData, std::min<std::size_t>(write.wDataNo, kept->second.size()),
                  kept->second.begin());
    }
  }
  const bool failed = broken || fake.failed_loader > 0;
  fake.failed_loader = std::max(0, fake.failed_loader - 1);
  requests[0].byWaitResponse = failed ? 1 : 0;
  requests[0].nResponseLength = failed ? 8 : 0;
  FRAME_DATA frame{};
  frame.byCurSysStatus = 8;
  return frame;
}

EXPORTED void KORVALE_DRV_InputFilterEx(INPUT_DATA* input, FRAME_DATA*, DEVICE_INFO* info, int count) {
  call("Input " + std::to_string(count));
  const auto all = [input, count](BYTE error) {
    for (int i = 0; i < count; ++i) {
      input[i].byErrCode = error;
      input[i].byCurSysStatus = 5;
    }
  };
  if (fake.not_ready > 0) {
    --fake.not_ready;
    return all(13);
  }
  if (reads && fake.lost_at_read > 0 && --fake.lost_at_read == 0) {
    fake.lost = true;
  }
  if (fake.loading > 0 || fake.lost) {
    fake.loading = std::max(0, fake.loading - 1);
    broken = fake.lost;
    fake.lost = false;
    return all(2);
  }
  all(0);
  for (int i = 0; i < count && reads; ++i) {
    input[i].nLength = info[i].nReadWORDSize;
    const auto found = fake.words.find(row_of(fake.requests[static_cast<std::size_t>(i)]));
    if (found == fake.words.end()) {
      input[i].byErrCode = 2;
    } else {
      std::copy(found->second.begin(), found->second.end(), input[i].wData);
    }
  }
}

EXPORTED FRAME_DATA KORVALE_DRV_OutputFilterExOffLine(GUI_REQUEST*, int) {
  return {};
}
EXPORTED void KORVALE_DRV_InputFilterExOffLine(INPUT_DATA*, FRAME_DATA*, DEVICE_INFO*, int) {}
