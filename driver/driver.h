// SPDX-License-Identifier: MIT
// The driver's entry points. The runtime finds them by name, calls them from one thread, and passes records
// by pointer. None reports a failure except inside the records. std::bad_alloc may leave StartDeviceEx,
// InitEx, GetInitCmdEx2 and the filters, std::out_of_range the filters. Nothing is broken then: the call can
// be made again, and a cycle that an exception ends is over.
//
// Per device: StartDeviceEx, InitEx, GetInitCmdEx2 with index 0, CheckInitCmdResponseEx2, then cycles of
// output and input filter, Timeout when the runtime's time-out expires, GetCloseCmd, CloseDevice. A new
// connection after a loss needs Timeout and GetInitCmdEx2, which makes the loader Idle. Devices are brought
// up one after the other: StartDeviceEx and InitEx both empty ip_table.
#pragma once

#include "driver/gdata.h"
#include "driver/hostrecords.h"
#include "symbolic/arrayhelper.h"

#define KORVALE_DRV_EXPORT __attribute__((visibility("default")))

extern "C" {

KORVALE_DRV_EXPORT void KORVALE_DRV_LinkSetHMIDataInterface(KORVALE_DRV_SET_HMIDATA fn);
KORVALE_DRV_EXPORT void KORVALE_DRV_LinkGetHMIDataInterface(KORVALE_DRV_GET_HMIDATA fn);

// Writes the fields that the driver has a value for and leaves every other byte as it was.
KORVALE_DRV_EXPORT void KORVALE_DRV_GetAttributeEx(DRIVER_ATTRIBUTE* pAttribute);

// Always TRUE; DataType stays as it was for a code that has no runtime type number. pDriveData is not read.
KORVALE_DRV_EXPORT BOOL KORVALE_DRV_GetDataType(const BYTE* pTagData, const BYTE* pDriveData, int& DataType);

// 17 rows of 9 cells of 10 characters, all of them written: type code, limit, words per element.
KORVALE_DRV_EXPORT void KORVALE_DRV_GetCommandSizeLimitInfo(char (*pTable)[9][10], int* pnItem);

// 17 rows of 15 cells of 30 characters, all of them written.
KORVALE_DRV_EXPORT void KORVALE_DRV_GetDeviceTableEx(char (*pTable)[15][30], int* nItem);

// Stores a new device's state handle in *addr. A tag file that cannot be read leaves the device without tags.
KORVALE_DRV_EXPORT void KORVALE_DRV_StartDeviceEx(BYTE bySimulate, DWORD** addr, char* xob_file_name,
                                                  DWORD dwTablePos);

// The device's IPv4 address: pwParam[6] holds the first octet (low byte) and the second (high byte),
// pwParam[5] the third, pwParam[4] the fourth. The low byte of pwParam[10] is the PLC station number.
// wSerialID is not used.
KORVALE_DRV_EXPORT void KORVALE_DRV_InitEx(WORD wSerialID, WORD* pwParam);

KORVALE_DRV_EXPORT FRAME_DATA KORVALE_DRV_GetInitCmdEx2(int* nResponseLength, int nCmdIndex,
                                                        BYTE byPLCStationNo, BYTE byHMIStationNo,
                                                        DWORD** mem_addr);
KORVALE_DRV_EXPORT BOOL KORVALE_DRV_CheckInitCmdResponseEx2(FRAME_DATA* pstFrameData, int nCmdIndex,
                                                            DWORD** mem_addr);

// The next output cycle does the lazy start again; it starts a connection thread only when the loader is
// Idle. Does not wait for a running thread.
KORVALE_DRV_EXPORT void KORVALE_DRV_Timeout(BYTE bySimulate, DWORD* addr);

KORVALE_DRV_EXPORT FRAME_DATA KORVALE_DRV_GetCloseCmd(int* nResponseLength, int nCmdIndex);

// Releases the GData of a simulated device, and that block alone. An online device's stays: its connection
// thread may be at work on it.
KORVALE_DRV_EXPORT void KORVALE_DRV_CloseDevice(BYTE bySimulate, DWORD* addr);

// A batch is at most 31 requests; of a longer one the first 31 are served. A count of 0 or less does nothing.
KORVALE_DRV_EXPORT FRAME_DATA KORVALE_DRV_OutputFilterEx(GUI_REQUEST* pstCurQueueData, int nCmdCount);
KORVALE_DRV_EXPORT void KORVALE_DRV_InputFilterEx(INPUT_DATA* pstInput, FRAME_DATA* pstFrameData,
                                                  DEVICE_INFO* pstDeviceInfo, int nCmdCount);
KORVALE_DRV_EXPORT FRAME_DATA KORVALE_DRV_OutputFilterExOffLine(GUI_REQUEST* pstCurQueueData, int nCmdCount);
KORVALE_DRV_EXPORT void KORVALE_DRV_InputFilterExOffLine(INPUT_DATA* pstInput, FRAME_DATA* pstFrameData,
                                                         DEVICE_INFO* pstDeviceInfo, int nCmdCount);
}

// Body of a device's connection thread; the argument is the device's GData.
void* server_listen_thread(void* device);

// Monotonic raw clock; the milliseconds wrap after about 49.7 days.
std::int64_t GetCurSystemUS_Tick();
std::uint32_t GetCurSystemMS_Tick();
