// SPDX-License-Identifier: MIT
// One device's connection to its PLC: connection parameters, symbol tree, symbol cache file, and the symbolic
// reads and writes that use the tree. Value bytes travel in the layout that bufferreader.h describes.
//
// The connection thread runs SetupDevice while the runtime's thread polls loader_state; reads and writes must
// wait for Success. The tree handle is stored before Success is, and no lock guards either.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "aglink/AGLink40.h"
#include "symbolic/published.h"
#include "symbolic/readbatch.h"

// The value bytes of one path of a batched read; empty when its own access failed.
struct Values {
  std::vector<unsigned char> datas;
};

class SymbolsLoader {
 public:
  enum loader_status_ : unsigned char {
    Idle = 0,
    Loading = 1,
    Success = 2,
    Error = 3,
    Disconnect = 4,
  };

  SymbolsLoader() = default;
  // Frees memory only: connection and symbol tree are left to the library's unloading.
  ~SymbolsLoader() = default;
  SymbolsLoader(const SymbolsLoader&) = delete;
  SymbolsLoader& operator=(const SymbolsLoader&) = delete;

  Published<loader_status_> loader_state = Idle;
  std::string RemoteIP;                 // the PLC's IPv4 address as dotted text
  Published<bool> bDisconnect = false;  // a batched read returned nothing
  Published<bool> read_data_status = false;
  std::vector<std::string> read_data_queue;
  std::map<std::string, std::vector<unsigned char>> cache_data;
  std::map<std::string, std::vector<unsigned char>> read_data_queue_filter;
  std::vector<std::string> Queue;
  // 0: no symbol tree is loaded. A write that does not wait for Success looks at it while it changes.
  Published<HandleType> root_schema_node = 0;
  // Number of the library's device, of its connection in every read and write, and of the cache file. Set it
  // before SetupDevice or the cache file's path is used.
  unsigned char station_id = 0;
  std::string m_password;
  bool m_enable_parameter = false;      // the password is sent after connecting
  std::string tia_project_binary_data;  // stored only

  void set_station_id(unsigned char id) { station_id = id; }
  void set_password(const std::string& password) { m_password = password; }
  void set_tia_project_binary(const std::string& data) { tia_project_binary_data = data; }
  void set_enable_parameter(bool enable) { m_enable_parameter = enable; }

  // Makes the loader ready for a new connection, in state Idle. A connection thread that is still at work for
  // earlier settings goes on, but what comes of it no longer shows in loader_state.
  void Reinitialise(unsigned char station, std::string password, bool enable_password);

  // Hands an address to the connection thread that is about to start. False, with nothing handed over, while
  // an earlier thread has not taken its own yet. Never blocks.
  bool OrderSetup(const std::string& address);
  void CancelOrder() { order_pending_ = false; }  // the thread could not be started
  // What the connection thread does: SetupDevice for the address ordered. Without memory for it the loader
  // fails: an exception that left a thread would end the process.
  int RunOrderedSetup();

  // Connects, logs in and loads the symbol tree, from the cache file if that loads and else from the PLC.
  // Blocks for as long as the library does. Returns 1 with loader_state Success, or 0 with Error when no tree
  // could be loaded; a state that is Success beforehand also gives 1, whatever the file did. A call during
  // another one for the same device waits for it, and has nothing left to do when that one brought the same
  // address to Success.
  int SetupDevice(const std::string& PLCIP);

  // These three return the library's result: 0 on success. Saving without a tree returns -1048575.
  int init_symbols_from_plc(int ConnNr, HandleType& RootNodeHandle) const;
  int doSymbolic_LoadAGLinkSymbolsFromFile();
  int doSymbolic_SaveAGLinkSymbolsToFile();

  // /mnt/project/<station>_s71500_symbolic.ap
  std::string GetSymbolsFilePath() const;
  void RemoveSymbolsFile() const;

  // Always closes device 0, connection 0, deliberately. Nobody calls it when a device closes.
  void CloseHandle() const;

  // Reads all paths in one library job. A path that failed inside a good job is present with empty datas; the
  // map is empty when the whole job failed. ReadErrorcode is only ever set: to 1 when an access could not be
  // prepared, to the library's result when the job failed.
  std::map<std::string, Values> ReadMapMultiDataFromPlcByPath(const std::vector<std::string>& ITEMs,
                                                              int& ReadErrorcode);

  // The same into the batch: false when the whole job failed or there are no paths. What is read stays in the
  // batch's own memory. Once for each filling of the batch.
  bool ReadPaths(ReadBatch& batch, int& ReadErrorcode);

  // One path; empty on any failure.
  std::vector<unsigned char> ReadDataFromPlcByPath(const std::string& ITEM);

  // The whole array behind an element path such as Matrix[1,2], with the element's linear position in it;
  // empty on failure. The position stays untouched unless only the array's own read failed.
  std::vector<unsigned char> ReadDataFromPlcByPathfor_multi_array_transfer(
      const std::string& ITEM, unsigned long* multi_array_linear_index);

  // Writes value bytes from element source_index on, trunk_size_for_byte bytes an element. True when the
  // library accepted the job, whatever became of the single access in it. ITEM is NUL-terminated.
  bool WriteDataFromPlcByPath(std::string_view ITEM, const std::vector<unsigned char>& data,
                              unsigned short source_index, unsigned char trunk_size_for_byte);

 private:
  // What one SetupDevice works with from beginning to end, whatever is set anew meanwhile.
  struct Settings {
    unsigned generation;
    unsigned char station;
    std::string password;
    bool enable_password;
  };

  Settings CurrentSettings() const;
  unsigned CurrentGeneration() const;
  int SetupOrdered(const std::string& address, unsigned generation);
  bool IsUpFor(const std::string& address) const;
  int ConnectAndLoadSymbols(const std::string& PLCIP, const Settings& settings);
  int LoadSymbolsFromFile(const char* path);
  int SaveSymbolsToFile(const char* path) const;
  // Sets loader_state unless the loader has been re-initialised since.
  void Publish(loader_status_ state, unsigned generation);

  AccessMemory write_memory_;  // kept from write to write

  std::mutex setup_;         // one SetupDevice at a time; the filters never take it
  std::string address_set_;  // that the last SetupDevice was for; guarded by setup_

  // Guards the settings against a thread that is taking them, and loader_state against one that is late. Held
  // for moments, by re-initialisation and SetupDevice; the filters never take it.
  mutable std::mutex settings_;
  unsigned generation_ = 0;  // counts re-initialisations

  Published<bool> order_pending_ = false;  // RemoteIP belongs to a thread that has not taken it yet
  unsigned ordered_generation_ = 0;
};

// Fills connection p_connection_index (0 to 3) of the library device's TCP/IP parameters and installs them. A
// p_host of 64 characters or more aborts the process.
void set_aglink_s7_tcp_ip_tia_paras(const char* p_host, int p_device_nr, int p_connection_index, int p_ag_nr,
                                    int p_port, int p_timeout);

// Time-outs in milliseconds. Neither tests a result: what failed shows in the symbol load.
void agl_connect(const int& p_device, const int& p_agnr, const int& p_rack, const int& p_slot,
                 int& p_connection, int p_timeout, int p_userval);
void agl_disconnect(const int& p_device, const int& p_connection, int p_timeout, int p_userval);

// The pieces between occurrences of a, empty ones included; empty text is one empty piece.
std::vector<std::string> split(const std::string& strtem, char a);
