// SPDX-License-Identifier: MIT
#include "host/check/plclink.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

namespace ostravel::host::check {
namespace {

constexpr agl_int32_t kFetchedParameterType = 1;
constexpr agl_int32_t kTcpIpTiaDevice = 21;  // S7 over TCP/IP with symbolic access
constexpr agl_uint16_t kPort = 102;
constexpr agl_int32_t kCloseTimeout = 1000;  // ms

S7_TCPIP_TIA parameters(const Library& library, const PlcLinkSettings& settings, agl_int32_t timeout) {
  S7_TCPIP_TIA all{};
  // What a library has as defaults is kept; one that has none leaves zeros.
  library.GetParas(settings.device, kFetchedParameterType, &all, sizeof all);
  auto& connection = all.Conn[0];
  const auto length = std::min(settings.address.size(), sizeof connection.Address - 1);
  std::fill(std::begin(connection.Address), std::end(connection.Address), '\0');
  settings.address.copy(connection.Address, length);
  connection.Flags = 4;
  connection.wPlcNr = 0;
  connection.wPortNr = kPort;
  connection.lTimeOut = timeout;
  connection.bConnTypeEx = eCT_HMI;
  connection.bPLCClassEx = ePLCEx_AUTO_TIA;
  return all;
}

}  // namespace

int free_device(const std::set<int>& stations) {
  int device = 1;
  while (stations.contains(device)) {
    ++device;
  }
  return device;
}

PlcLink::PlcLink(const Library& library, const PlcLinkSettings& settings)
    : library_(library),
      device_(settings.device),
      timeout_(static_cast<agl_int32_t>(std::clamp<long>(settings.timeout.count(), 1, 3'600'000))) {
  try {
    connect(settings);
  } catch (...) {
    close();
    throw;
  }
}

PlcLink::~PlcLink() {
  close();
}

void PlcLink::connect(const PlcLinkSettings& settings) {
  // A library may find fault with a step that it does not need, so only the last two decide; but the first
  // failure says why.
  std::string failures;
  const auto note = [&](const char* function, agl_int32_t code) {
    if (code != AGL40_SUCCESS) {
      failures += fmt::format("{}AGL_{}: {}", failures.empty() ? "" : "; ", function, library_.text_of(code));
    }
    return code;
  };
  auto all = parameters(library_, settings, timeout_);
  note("SetParas", library_.SetParas(device_, kTcpIpTiaDevice, &all, sizeof all));
  note("SetDevType", library_.SetDevType(device_, kTcpIpTiaDevice));
  note("OpenDevice", library_.OpenDevice(device_));
  note("DialUp", library_.DialUp(device_, timeout_, 0));
  note("InitAdapter", library_.InitAdapter(device_, timeout_, 0));
  agl_int32_t connection = -1;
  auto code = note("PLCConnectEx", library_.PLCConnectEx(device_, 0, 0, 0, &connection, timeout_, 0));
  if (code != AGL40_SUCCESS) {
    throw LibraryFailure(failures, code);
  }
  connection_ = connection;
  if (settings.password) {
    note("SetPassword", library_.SetPassword(connection_, settings.password->c_str(), timeout_, 0));
  }
  HandleType root = 0;
  code = note("Symbolic_LoadAGLinkSymbolsFromPLC",
              library_.Symbolic_LoadAGLinkSymbolsFromPLC(connection_, &root));
  if (code != AGL40_SUCCESS) {
    throw LibraryFailure(failures, code);
  }
  symbols_ = LibraryHandle(library_, root);
}

void PlcLink::close() {
  symbols_ = LibraryHandle();
  if (connection_ != -1) {
    library_.PLCDisconnect(connection_, kCloseTimeout, 0);
  }
  library_.ExitAdapter(device_, kCloseTimeout, 0);
  library_.HangUp(device_, kCloseTimeout, 0);
  library_.CloseDevice(device_);
}

}  // namespace ostravel::host::check
