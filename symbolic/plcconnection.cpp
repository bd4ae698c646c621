// SPDX-License-Identifier: MIT
// How a library device gets its parameters, is opened and connected, and closed again.
#include <cstdlib>
#include <cstring>

#include "symbolic/symbolsloader.h"

namespace {

// The device's parameters are fetched with one type and stored with another, deliberately.
constexpr agl_int32_t kFetchedParameterType = 1;
constexpr agl_int32_t kTcpIpTiaDevice = 21;  // S7 over TCP/IP with symbolic access

}  // namespace

void set_aglink_s7_tcp_ip_tia_paras(const char* p_host, int p_device_nr, int p_connection_index, int p_ag_nr,
                                    int p_port, int p_timeout) {
  S7_TCPIP_TIA S7Paras{};
  AGL_GetParas(p_device_nr, kFetchedParameterType, &S7Paras, sizeof S7Paras);

  S7_TCPIP_TIA_1& connection = S7Paras.Conn[p_connection_index];
  const std::size_t length = std::strlen(p_host);
  // Never cut: half an address is another machine's.
  if (length >= sizeof connection.Address) std::abort();
  std::memcpy(connection.Address, p_host, length + 1);
  connection.Flags = 4;
  connection.wPlcNr = static_cast<agl_uint16_t>(p_ag_nr);
  connection.wPortNr = static_cast<agl_uint16_t>(p_port);
  connection.lTimeOut = p_timeout;
  connection.bConnTypeEx = eCT_HMI;
  connection.bPLCClassEx = ePLCEx_AUTO_TIA;  // the library finds out whether it is a 1200 or a 1500

  AGL_SetParas(p_device_nr, kTcpIpTiaDevice, &S7Paras, sizeof S7Paras);
  AGL_SetDevType(p_device_nr, kTcpIpTiaDevice);
}

void agl_connect(const int& p_device, const int& p_agnr, const int& p_rack, const int& p_slot,
                 int& p_connection, int p_timeout, int p_userval) {
  AGL_OpenDevice(p_device);
  AGL_DialUp(p_device, p_timeout, p_userval);
  AGL_InitAdapter(p_device, p_timeout, p_userval);
  AGL_PLCConnectEx(p_device, p_agnr, p_rack, p_slot, &p_connection, p_timeout, p_userval);
}

void agl_disconnect(const int& p_device, const int& p_connection, int p_timeout, int p_userval) {
  AGL_PLCDisconnect(p_connection, p_timeout, p_userval);
  AGL_ExitAdapter(p_device, p_timeout, p_userval);
  AGL_HangUp(p_device, p_timeout, p_userval);
  AGL_CloseDevice(p_device);
}
