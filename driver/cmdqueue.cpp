// SPDX-License-Identifier: MIT
// The queue of a device's commands, linked through its pool.
#include "driver/cmddesc.h"
#include "driver/gdata.h"

void SetCmdQueueHead(stCmdDesc* pDesc) {
  pDesc->pNext = nullptr;
  pDesc->pPrev = nullptr;
  pDesc->pGData->pGCmdQueue = pDesc;
  pDesc->pGData->GCmdCounts = 1;
}

void AddCmdQueueHead(stCmdDesc* pDesc) {
  stCmdDesc* head = pDesc->pGData->pGCmdQueue;
  stCmdDesc* tail = head->pPrev != nullptr ? head->pPrev : head;
  head->pPrev = pDesc;
  pDesc->pNext = head;
  pDesc->pPrev = tail;  // the head's pPrev points at the tail
  pDesc->pGData->pGCmdQueue = pDesc;
  ++pDesc->pGData->GCmdCounts;
}

void AddCmdQueueTail(stCmdDesc* pDesc) {
  stCmdDesc* head = pDesc->pGData->pGCmdQueue;
  stCmdDesc* tail = head->pPrev != nullptr ? head->pPrev : head;
  pDesc->pNext = nullptr;
  pDesc->pPrev = tail;
  tail->pNext = pDesc;
  head->pPrev = pDesc;
  ++pDesc->pGData->GCmdCounts;
}

void InitCmdRestrictInfo(stCmdRestrictInfo* pInfo) {
  *pInfo = {};
}

BOOL CanPackCmd(stCmdDesc* pDesc, stCmdRestrictInfo* pRInfo) {
  pDesc->bPack = TRUE;
  ++pRInfo->CmdCounts;
  pRInfo->ResponseLength += pDesc->ResponseLength;
  pRInfo->CmdLength += pDesc->ServiceDataLength;
  return TRUE;
}
