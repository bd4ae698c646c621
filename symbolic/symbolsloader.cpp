// SPDX-License-Identifier: MIT
// The connection sequence of one device and its symbol cache file.
#include "symbolic/symbolsloader.h"

#include <cstdio>

#include "symbolic/errorhelper.h"

namespace {

constexpr agl_int32_t kNoTreeToSave = static_cast<agl_int32_t>(0xFFF00001U);  // -1048575
constexpr int kPort = 102;                                                    // ISO on TCP
constexpr int kConnectTimeout = 60000;                                        // milliseconds, as all below
constexpr int kCleanUpTimeout = 1;
constexpr int kPasswordTimeout = 10000;
constexpr int kOrderNumberTimeout = 1;
constexpr int kCloseTimeout = 1000;

// Fetched for a debugger's sake, shown nowhere.
void fetch_error_text(agl_int32_t code) {
  char errormsg[256];
  AGL_GetErrorMsg(code, errormsg, sizeof errormsg);
}

}  // namespace

int SymbolsLoader::SetupDevice(const std::string& PLCIP) {
  std::unique_lock one_at_a_time(setup_, std::try_to_lock);
  if (!one_at_a_time.owns_lock()) {
    one_at_a_time.lock();
    // Once more would pull the tree from under the filters, which already use it.
    if (loader_state == Success && address_set_ == PLCIP) return 1;
  }
  address_set_ = PLCIP;
  return ConnectAndLoadSymbols(PLCIP);
}

int SymbolsLoader::ConnectAndLoadSymbols(const std::string& PLCIP) {
  const int device = station_id;
  const int ag = 0;
  const int rack = 0;
  const int slot = 0;
  int connection = 0;
  set_aglink_s7_tcp_ip_tia_paras(PLCIP.c_str(), device, 0, ag, kPort, kConnectTimeout);
  agl_disconnect(device, connection, kCleanUpTimeout, 0);  // what an earlier run left open on this number
  agl_connect(device, ag, rack, slot, connection, kConnectTimeout, 0);

  if (m_enable_parameter && !m_password.empty()) {
    const agl_int32_t res = AGL_SetPassword(connection, m_password.c_str(), kPasswordTimeout, 1);
    if (res != AGL40_SUCCESS) fetch_error_text(res);  // not fatal: a PLC may allow reading without
  }
  char mlfb[21] = {};
  AGL_ReadMLFBNr(connection, mlfb, kOrderNumberTimeout, 0);

  doSymbolic_LoadAGLinkSymbolsFromFile();
  if (loader_state == Success) return 1;

  loader_state = Loading;
  const agl_int32_t res = init_symbols_from_plc(connection, root_schema_node);
  if (res != AGL40_SUCCESS) {
    std::puts("error");
    loader_state = Error;
    ErrorHelper::ShowError(res,
                           "AGL_Symbolic_LoadTIAProjectSymbols");  // another function's name, deliberately
    return 0;
  }
  doSymbolic_SaveAGLinkSymbolsToFile();
  loader_state = Success;
  return 1;
}

int SymbolsLoader::init_symbols_from_plc(int ConnNr, HandleType& RootNodeHandle) const {
  return AGL_Symbolic_LoadAGLinkSymbolsFromPLC(ConnNr, &RootNodeHandle);
}

int SymbolsLoader::doSymbolic_LoadAGLinkSymbolsFromFile() {
  const std::string path = GetSymbolsFilePath();
  if (root_schema_node != 0) {
    const agl_int32_t freed = AGL_Symbolic_FreeHandle(root_schema_node);
    root_schema_node = 0;
    if (freed != AGL40_SUCCESS) fetch_error_text(freed);
  }
  const agl_int32_t result = AGL_Symbolic_LoadAGLinkSymbolsFromFile(path.c_str(), &root_schema_node);
  if (result != AGL40_SUCCESS) {
    std::puts("load file error.....");
    fetch_error_text(result);
    return result;
  }
  std::puts("load file success");
  loader_state = Success;
  return result;
}

int SymbolsLoader::doSymbolic_SaveAGLinkSymbolsToFile() {
  const std::string path = GetSymbolsFilePath();
  if (root_schema_node == 0) return kNoTreeToSave;
  const agl_int32_t result = AGL_Symbolic_SaveAGLinkSymbolsToFile(root_schema_node, path.c_str());
  if (result != AGL40_SUCCESS) {
    std::puts("AGL_Symbolic_SaveAGLinkSymbolsToFile error");
    fetch_error_text(result);
  }
  return result;
}

std::string SymbolsLoader::GetSymbolsFilePath() const {
  return "/mnt/project/" + std::to_string(station_id) + "_s71500_symbolic.ap";
}

void SymbolsLoader::RemoveSymbolsFile() const {
  std::remove(GetSymbolsFilePath().c_str());
}

void SymbolsLoader::CloseHandle() const {
  agl_disconnect(0, 0, kCloseTimeout, 0);
}

std::vector<std::string> split(const std::string& strtem, char a) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t end = strtem.find(a); end != std::string::npos; end = strtem.find(a, start)) {
    pieces.push_back(strtem.substr(start, end - start));
    start = end + 1;
  }
  pieces.push_back(strtem.substr(start));
  return pieces;
}
