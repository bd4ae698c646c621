// SPDX-License-Identifier: MIT
// The connection sequence of one device and its symbol cache file.
#include "symbolic/symbolsloader.h"

#include <array>
#include <cstdio>
#include <new>
#include <utility>

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

// Takes no memory that could be refused, so that a file which no longer fits can always be removed.
class SymbolsFilePath {
 public:
  explicit SymbolsFilePath(unsigned char station) {
    std::snprintf(text_.data(), text_.size(), "/mnt/project/%d_s71500_symbolic.ap", int{station});
  }
  const char* c_str() const { return text_.data(); }

 private:
  std::array<char, 48> text_{};
};

}  // namespace

void SymbolsLoader::Reinitialise(unsigned char station, std::string password, bool enable_password) {
  const std::lock_guard moment(settings_);
  ++generation_;
  loader_state = Idle;
  read_data_queue_filter.clear();
  set_station_id(station);
  m_password = std::move(password);
  set_enable_parameter(enable_password);
  bDisconnect = false;
}

bool SymbolsLoader::OrderSetup(const std::string& address) {
  if (order_pending_) return false;
  RemoteIP = address;
  ordered_generation_ = generation_;
  order_pending_ = true;
  return true;
}

int SymbolsLoader::RunOrderedSetup() {
  const bool ordered = order_pending_;
  const unsigned generation = ordered ? ordered_generation_ : CurrentGeneration();
  try {
    std::string address;
    try {
      address = RemoteIP;
    } catch (const std::bad_alloc&) {
      order_pending_ = false;
      throw;
    }
    order_pending_ = false;
    return ordered ? SetupOrdered(address, generation) : SetupDevice(address);
  } catch (const std::bad_alloc&) {
    Publish(Error, generation);
    return 0;
  }
}

int SymbolsLoader::SetupOrdered(const std::string& address, unsigned generation) {
  // Settled by another thread, or overtaken by a re-initialisation that orders a thread of its own.
  const std::lock_guard one_at_a_time(setup_);
  if (IsUpFor(address)) return 1;
  const Settings settings = CurrentSettings();
  if (settings.generation != generation) return 0;
  return ConnectAndLoadSymbols(address, settings);
}

int SymbolsLoader::SetupDevice(const std::string& PLCIP) {
  std::unique_lock one_at_a_time(setup_, std::try_to_lock);
  if (!one_at_a_time.owns_lock()) {
    one_at_a_time.lock();
    if (IsUpFor(PLCIP)) return 1;
  }
  return ConnectAndLoadSymbols(PLCIP, CurrentSettings());
}

// To connect once more would pull the tree from under the filters, which already use it.
bool SymbolsLoader::IsUpFor(const std::string& address) const {
  return loader_state == Success && address_set_ == address;
}

SymbolsLoader::Settings SymbolsLoader::CurrentSettings() const {
  const std::lock_guard moment(settings_);
  return {generation_, station_id, m_password, m_enable_parameter};
}

unsigned SymbolsLoader::CurrentGeneration() const {
  const std::lock_guard moment(settings_);
  return generation_;
}

void SymbolsLoader::Publish(loader_status_ state, unsigned generation) {
  const std::lock_guard moment(settings_);
  if (generation == generation_) loader_state = state;
}

int SymbolsLoader::ConnectAndLoadSymbols(const std::string& PLCIP, const Settings& settings) {
  address_set_ = PLCIP;
  const int device = settings.station;
  const int ag = 0;
  const int rack = 0;
  const int slot = 0;
  int connection = 0;
  set_aglink_s7_tcp_ip_tia_paras(PLCIP.c_str(), device, 0, ag, kPort, kConnectTimeout);
  agl_disconnect(device, connection, kCleanUpTimeout, 0);  // what an earlier run left open on this number
  agl_connect(device, ag, rack, slot, connection, kConnectTimeout, 0);

  if (settings.enable_password && !settings.password.empty()) {
    const agl_int32_t res = AGL_SetPassword(connection, settings.password.c_str(), kPasswordTimeout, 1);
    if (res != AGL40_SUCCESS) fetch_error_text(res);  // not fatal: a PLC may allow reading without
  }
  char mlfb[21] = {};
  AGL_ReadMLFBNr(connection, mlfb, kOrderNumberTimeout, 0);

  const SymbolsFilePath path(settings.station);
  const bool loaded = LoadSymbolsFromFile(path.c_str()) == AGL40_SUCCESS;
  if (loaded) Publish(Success, settings.generation);
  if (loaded || loader_state == Success) return 1;

  Publish(Loading, settings.generation);
  HandleType root = root_schema_node;
  const agl_int32_t res = init_symbols_from_plc(connection, root);
  root_schema_node = root;
  if (res != AGL40_SUCCESS) {
    std::puts("error");
    Publish(Error, settings.generation);
    ErrorHelper::ShowError(res,
                           "AGL_Symbolic_LoadTIAProjectSymbols");  // another function's name, deliberately
    return 0;
  }
  SaveSymbolsToFile(path.c_str());
  Publish(Success, settings.generation);
  return 1;
}

int SymbolsLoader::init_symbols_from_plc(int ConnNr, HandleType& RootNodeHandle) const {
  return AGL_Symbolic_LoadAGLinkSymbolsFromPLC(ConnNr, &RootNodeHandle);
}

int SymbolsLoader::doSymbolic_LoadAGLinkSymbolsFromFile() {
  const int result = LoadSymbolsFromFile(SymbolsFilePath(station_id).c_str());
  if (result == AGL40_SUCCESS) loader_state = Success;
  return result;
}

int SymbolsLoader::LoadSymbolsFromFile(const char* path) {
  HandleType root = root_schema_node;
  if (root != 0) {
    root_schema_node = 0;  // before it is freed: the filters shall not find it then
    const agl_int32_t freed = AGL_Symbolic_FreeHandle(root);
    root = 0;
    if (freed != AGL40_SUCCESS) fetch_error_text(freed);
  }
  const agl_int32_t result = AGL_Symbolic_LoadAGLinkSymbolsFromFile(path, &root);
  root_schema_node = root;
  if (result != AGL40_SUCCESS) {
    std::puts("load file error.....");
    fetch_error_text(result);
    return result;
  }
  std::puts("load file success");
  return result;
}

int SymbolsLoader::doSymbolic_SaveAGLinkSymbolsToFile() {
  return SaveSymbolsToFile(SymbolsFilePath(station_id).c_str());
}

int SymbolsLoader::SaveSymbolsToFile(const char* path) const {
  if (root_schema_node == 0) return kNoTreeToSave;
  const agl_int32_t result = AGL_Symbolic_SaveAGLinkSymbolsToFile(root_schema_node, path);
  if (result != AGL40_SUCCESS) {
    std::puts("AGL_Symbolic_SaveAGLinkSymbolsToFile error");
    fetch_error_text(result);
  }
  return result;
}

std::string SymbolsLoader::GetSymbolsFilePath() const {
  return SymbolsFilePath(station_id).c_str();
}

void SymbolsLoader::RemoveSymbolsFile() const {
  std::remove(SymbolsFilePath(station_id).c_str());
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
