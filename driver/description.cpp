// SPDX-License-Identifier: MIT
// What the driver tells of itself: attributes, type numbers, size limits, device types.
#include <array>
#include <cstring>
#include <string_view>

#include "driver/datatypes.h"
#include "driver/driver.h"

namespace {

constexpr char kName[] = "Ostravel";

struct SizeLimitRow {
  std::string_view type, limit, words;
};

// clang-format off
constexpr std::array kSizeLimits = {
    SizeLimitRow{"196", "256", "2"},   SizeLimitRow{"194", "256", "1"}, SizeLimitRow{"195", "256", "1"},
    SizeLimitRow{"202", "256", "2"},   SizeLimitRow{"2", "256", "1"},   SizeLimitRow{"3", "256", "1"},
    SizeLimitRow{"4", "256", "2"},     SizeLimitRow{"6", "256", "2"},   SizeLimitRow{"7", "256", "4"},
    SizeLimitRow{"8", "256", "4"},     SizeLimitRow{"9", "256", "4"},   SizeLimitRow{"10", "256", "4"},
    SizeLimitRow{"11", "256", "1"},    SizeLimitRow{"12", "256", "1"},  SizeLimitRow{"211", "256", "1"},
    SizeLimitRow{"212", "256", "256"}, SizeLimitRow{"193", "256", "1"},
};
// clang-format on

struct DeviceTypeRow {
  std::string_view kind;  // "B" bit device, "W" word device
  std::string_view name;
  std::string_view type;
  std::string_view width;  // "W" up to one word, "D" two or four
};

// DT_LTIME has no row: the runtime cannot address it through this table.
constexpr std::array kDeviceTypes = {
    DeviceTypeRow{"B", "BOOL", "193", "W"},  DeviceTypeRow{"B", "BitArray", "211", "W"},
    DeviceTypeRow{"W", "SINT", "194", "W"},  DeviceTypeRow{"W", "INT", "195", "W"},
    DeviceTypeRow{"W", "DINT", "196", "D"},  DeviceTypeRow{"W", "REAL", "202", "D"},
    DeviceTypeRow{"W", "BYTE", "2", "W"},    DeviceTypeRow{"W", "WORD", "3", "W"},
    DeviceTypeRow{"W", "DWORD", "4", "D"},   DeviceTypeRow{"W", "UDINT", "6", "D"},
    DeviceTypeRow{"W", "LWORD", "7", "D"},   DeviceTypeRow{"W", "LINT", "8", "D"},
    DeviceTypeRow{"W", "ULINT", "9", "D"},   DeviceTypeRow{"W", "LREAL", "10", "D"},
    DeviceTypeRow{"W", "UINT", "11", "W"},   DeviceTypeRow{"W", "USINT", "12", "W"},
    DeviceTypeRow{"W", "STRING", "212", "W"}};

template <std::size_t N>
void put(char (&cell)[N], std::string_view text) {
  std::memcpy(cell, text.data(), text.size());
}

}  // namespace

void KORVALE_DRV_GetAttributeEx(DRIVER_ATTRIBUTE* pAttribute) {
  std::memcpy(pAttribute->cName, kName, sizeof kName);
  pAttribute->wVersion = 330;
  pAttribute->wDriverID = 535;
  pAttribute->byDataFormat = 0;
  pAttribute->wMinTimeout = 200;
  pAttribute->wMinSendCmdDelay = 0;
  pAttribute->wMinSendAckDelay = 0;
  pAttribute->wBaudRateCmdCount = 0;
  pAttribute->wInitCmdCount = 1;
  pAttribute->wCloseCmdCount = 1;
  // The runtime expects exactly these.
  pAttribute->wReserved[0] = 287;
  pAttribute->wReserved[1] = 0;
  pAttribute->wReserved[2] = 165;
  pAttribute->wIsServer = 0;
}

BOOL KORVALE_DRV_GetDataType(const BYTE* pTagData, const BYTE*, int& DataType) {
  const BYTE number = data_type_info(pTagData[kTagDataTypeOffset]).runtime_type;
  if (number != 0) DataType = number;
  return TRUE;
}

void KORVALE_DRV_GetCommandSizeLimitInfo(char (*pTable)[9][10], int* pnItem) {
  char rows[kSizeLimits.size()][9][10] = {};
  for (std::size_t i = 0; i < kSizeLimits.size(); ++i) {
    put(rows[i][0], kSizeLimits[i].type);
    put(rows[i][1], kSizeLimits[i].limit);
    put(rows[i][2], kSizeLimits[i].words);
  }
  std::memcpy(pTable, rows, sizeof rows);
  *pnItem = static_cast<int>(kSizeLimits.size());
}

void KORVALE_DRV_GetDeviceTableEx(char (*pTable)[15][30], int* nItem) {
  char rows[kDeviceTypes.size()][15][30] = {};
  for (std::size_t i = 0; i < kDeviceTypes.size(); ++i) {
    put(rows[i][0], kDeviceTypes[i].kind);
    put(rows[i][1], kDeviceTypes[i].name);
    put(rows[i][2], kDeviceTypes[i].type);
    put(rows[i][3], "D");
    put(rows[i][4], kDeviceTypes[i].width);
    put(rows[i][5], "0");
    put(rows[i][6], "W");
    put(rows[i][7], "0");
    put(rows[i][8], "0");
  }
  std::memcpy(pTable, rows, sizeof rows);
  *nItem = static_cast<int>(kDeviceTypes.size());
}
