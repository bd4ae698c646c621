// SPDX-License-Identifier: MIT
// One command of a batch, the queue that links commands, and the functions that fill a command from a
// request.
//
// The queue is linked forward by pNext and backward by pPrev; the head's pPrev points at the tail, so that
// the tail is found in one step. A queue of one command has a null pPrev.
#pragma once

#include <cstddef>
#include <cstring>

#include "driver/hostrecords.h"
#include "driver/tagname.h"
#include "driver/tagtable.h"

struct GData;

// Commands that one device works on at a time, and so requests of one batch.
inline constexpr int kCommandPoolSize = 31;

inline constexpr std::size_t kDataBufferSize = 4096;  // bytes
inline constexpr std::size_t kDataBufferWords = kDataBufferSize / sizeof(WORD);

struct stCmdDesc {
  USHORT ServiceDataLength = 0;
  BYTE ServiceData[2048] = {};
  USHORT ResponseLength = 0;  // expected length of the response, in bytes
  TagName tag_name;           // after index substitution
  BYTE DataType = 0;          // DATA_TYPE
  signed char BitIndex = 0;   // -1 for the whole value
  USHORT ElementCounts = 0;
  USHORT ArrayIndex = 0;
  UINT nCmdIndex = 0;
  bool Cmd_Status = false;  // data came back for this command
  BYTE DataBuffer[kDataBufferSize] = {};
  UINT WordCount = 0;  // host words that the command's data takes
  bool is_wstring = false;
  bool use_index_register = false;  // tag_name was built by index substitution
  stCmdDesc* pNext = nullptr;
  stCmdDesc* pPrev = nullptr;
  BOOL bPack = FALSE;  // packed into a step of this cycle
  GData* pGData = nullptr;

  std::size_t DataBytes = 0;  // at the start of DataBuffer that may be other than zero
  std::size_t Place = 0;      // of tag_name among the paths of its step

  // To be called when the first `bytes` bytes of DataBuffer are the command's data: all others become zero.
  void EndData(std::size_t bytes) {
    if (bytes < DataBytes) std::memset(DataBuffer + bytes, 0, DataBytes - bytes);
    DataBytes = bytes;
  }
};

// Running totals of one packed step.
struct stCmdRestrictInfo {
  UINT CmdCounts;
  UINT ResponseLength;
  UINT CmdLength;
};

// The queue functions find the queue through pDesc->pGData. AddCmdQueueHead and AddCmdQueueTail need a queue
// that SetCmdQueueHead has started.
void SetCmdQueueHead(stCmdDesc* pDesc);
void AddCmdQueueHead(stCmdDesc* pDesc);
void AddCmdQueueTail(stCmdDesc* pDesc);

void InitCmdRestrictInfo(stCmdRestrictInfo* pInfo);

// Marks the command packed and adds it to the totals. Deliberately without a limit: always TRUE.
BOOL CanPackCmd(stCmdDesc* pDesc, stCmdRestrictInfo* pRInfo);

void SetupReadCmdDesc(BYTE* pDriverData, stCmdDesc* pDesc, UINT nCmdIndex, const CTagTable* pTagTable);

// pValueArray and BitArrayCache are not used: the output filter copies the values itself.
void SetupWriteCmdDesc(BYTE* pDriverData, stCmdDesc* pDesc, UINT nCmdIndex, const CTagTable* pTagTable,
                       void* pValueArray, DWORD BitArrayCache);

// Replaces the index placeholder of a tag name ("Motor[INDEX].Speed") by "[" array index "]" and writes the
// result with its NUL into pRename, which must have room for the name with its NUL: the result is never
// longer. Returns false, and leaves pRename alone, when the name has no placeholder. Raises
// std::out_of_range when no "[" stands before "INDEX]".
bool use_index_register(const CHAR* pSource_name, CHAR* pRename, const stTag* pTag);

// Puts the alternate data type of a tag data block, when there is one, in place of its data type.
void ChangeBinaryAccessDataTypeForCmtType(BYTE* pData);

// A string of 510 bytes is taken to be a wide one.
bool is_wstring_type(unsigned char data_type, unsigned short string_size);
