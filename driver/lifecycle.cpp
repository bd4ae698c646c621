// SPDX-License-Identifier: MIT
// A device from its start to its close, and the body of its connection thread.
#include <new>
#include <string>
#include <utility>

#include "driver/driver.h"

void KORVALE_DRV_LinkSetHMIDataInterface(KORVALE_DRV_SET_HMIDATA fn) {
  gfnSetHMIData = fn;
}

void KORVALE_DRV_LinkGetHMIDataInterface(KORVALE_DRV_GET_HMIDATA fn) {
  gfnGetHMIData = fn;
}

void KORVALE_DRV_StartDeviceEx(BYTE bySimulate, DWORD** addr, char* xob_file_name, DWORD dwTablePos) {
  ip_table.clear();
  auto* device = new GData;
  device->GOffLineSim = bySimulate;
  *addr = reinterpret_cast<DWORD*>(device);
  device->GTagTable.Read(xob_file_name, dwTablePos);
}

void KORVALE_DRV_InitEx(WORD, WORD* pwParam) {
  ip_table.clear();
  const WORD first_octets = pwParam[6];
  DeviceIP = std::to_string(first_octets & 0xFF) + "." + std::to_string(first_octets >> 8) + "." +
             std::to_string(pwParam[5]) + "." + std::to_string(pwParam[4]);
  const auto station = static_cast<BYTE>(pwParam[10]);
  ip_table.emplace(station, DeviceIP);
}

FRAME_DATA KORVALE_DRV_GetInitCmdEx2(int* nResponseLength, int nCmdIndex, BYTE byPLCStationNo, BYTE,
                                     DWORD** mem_addr) {
  if (nCmdIndex == 0) {
    GData& device = *device_of(*mem_addr);
    // Copied first: without memory for them the device stays as it was.
    device_descriptor descriptor = device.GTagTable.get_device_descriptor();
    const auto entry = ip_table.find(byPLCStationNo);
    std::string address = entry != ip_table.end() ? entry->second : std::string();
    device.GsymbolsParser.Reinitialise(byPLCStationNo, std::move(descriptor.device_password),
                                       descriptor.enable_password);
    device.read_device_state = false;
    device.write_device_state = false;
    device.bIsInitDevice = false;
    device.DeviceIP = std::move(address);
  }
  // Nothing is sent: the connection thread brings the connection up.
  *nResponseLength = 0;
  return {};
}

BOOL KORVALE_DRV_CheckInitCmdResponseEx2(FRAME_DATA*, int, DWORD** mem_addr) {
  return device_of(*mem_addr)->device_connect_state ? TRUE : FALSE;
}

void KORVALE_DRV_Timeout(BYTE, DWORD* addr) {
  GData& device = *device_of(addr);
  device.TagCount = 0;
  device.TagIndex = 0;
  device.TagcountMod = 0;
  device.TagcountDif = 0;
  device.pGCmdQueue = nullptr;
  device.GCmdCounts = 0;
  device.GTotalStep = 0;
  device.GCurrentStep = 0;
  device.device_connect_state = false;
  device.read_device_state = false;
  device.write_device_state = false;
  device.GCacheBitArray = FALSE;
  device.LOADER_PROJECT = 0;
  device.bIsInitDevice = false;
}

FRAME_DATA KORVALE_DRV_GetCloseCmd(int*, int) {
  return {};
}

void KORVALE_DRV_CloseDevice(BYTE, DWORD* addr) {
  GData* device = device_of(addr);
  // The device's own mark decides, not the argument. Its members are deliberately not destroyed: what they
  // hold is kept.
  if (device->GOffLineSim != FALSE) ::operator delete(device);
}

void* server_listen_thread(void* device) {
  pthread_detach(pthread_self());
  static_cast<GData*>(device)->GsymbolsParser.RunOrderedSetup();
  return nullptr;
}
