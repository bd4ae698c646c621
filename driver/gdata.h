// SPDX-License-Identifier: MIT
// The state of one device, and what all devices share. The runtime keeps a pointer to a device's GData and
// hands it back in every record (pdwMemAddr) and call.
#pragma once

#include <pthread.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "driver/cmddesc.h"
#include "driver/hostrecords.h"
#include "driver/tagtable.h"
#include "symbolic/readbatch.h"
#include "symbolic/symbolsloader.h"

struct GData {
  // Each command answers for its own place until a batch sets it up.
  GData() {
    for (UINT i = 0; i < kCommandPoolSize; ++i) GCmdDesc[i].nCmdIndex = i;
  }

  SymbolsLoader GsymbolsParser;  // first, so that a pointer to the GData is one to the loader as well
  CTagTable GTagTable;
  stCmdDesc GCmdDesc[kCommandPoolSize];
  stCmdDesc* pGCmdQueue = nullptr;  // null: no read cycle is under way
  UINT GCmdCounts = 0;              // commands in the queue
  UINT GTotalStep = 0;              // packed steps of the cycle
  UINT GCurrentStep = 0;
  UINT GPackSize[kCommandPoolSize] = {};  // commands in each step
  UINT GCmdIndex = 0;
  UINT GRegisCount = 0;
  BOOL GCacheBitArray = FALSE;
  DWORD GSessionHandle = 0;
  DWORD GConnectionID = 0;
  DWORD GBitArrayCache = 0;
  DWORD GTagConnectionID = 0;
  DWORD GTagConnectionID2 = 0;
  USHORT GUnitDataSequence = 0;
  WORD ConnectionSerialNo = 0;
  // A batched read came back or a write was accepted since the last loss or time-out.
  bool device_connect_state = false;
  std::string DeviceIP;
  bool read_device_state = false;
  bool write_device_state = false;  // the library accepted the last write; reported nowhere
  INT TagCount = 0;
  INT TagIndex = 0;
  INT TagcountMod = 0;
  INT TagcountDif = 0;
  BOOL GOffLineSim = FALSE;
  std::map<stTag, std::uint64_t> GMap;  // offline simulation: the value of each tag element
  DWORD LOADER_PROJECT = 0;             // millisecond tick of the lazy start
  bool bIsInitDevice = false;           // the lazy start is done
  pthread_t thread = {};

  int last_batch = 0;  // commands of the read batch that was set up last
  // Offline: the commands hold the values of the last batch. False after one that an exception ended.
  bool batch_is_whole = true;

  // Scratch memory of the filters, kept so that a steady poll of numbers allocates nothing.
  ReadBatch read_batch;
  TagName write_name;
  std::vector<unsigned char> write_bytes;

  // What the offline filters made of a string element's name, by row and array index; the keys of GMap borrow
  // the names.
  struct RebuiltName {
    std::string name;
    INT row;
  };
  std::map<std::pair<INT, WORD>, RebuiltName> rebuilt_names;
};

// The GData that a state handle stands for.
inline GData* device_of(DWORD* handle) {
  return reinterpret_cast<GData*>(handle);
}

struct DriverPrivate {
  BOOL GOffLineSim;
};

// Touched by the runtime's thread only.
extern std::map<BYTE, std::string> ip_table;          // address text per PLC station
extern std::string DeviceIP;                          // the address text built last
extern std::vector<unsigned char> write_string_data;  // bytes of the string written last
extern KORVALE_DRV_GET_HMIDATA gfnGetHMIData;         // kept, never called
extern KORVALE_DRV_SET_HMIDATA gfnSetHMIData;         // kept, never called
extern DriverPrivate driver_globle;  // used by nothing: each device has a GOffLineSim of its own
