// SPDX-License-Identifier: MIT
#include "tests/threads/quietlibrary.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <list>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/fake/elements.h"

namespace {

constexpr auto kRelaxed = std::memory_order_relaxed;
constexpr agl_int32_t kFailed = -1000;
constexpr HandleType kAccess = 1;  // marks an access; the rest of the handle is its tree

// Plain memory, written by the connection thread before the driver gets the handle.
struct alignas(16) Tree {
  agl_int16_t value;
};

struct Device {
  std::atomic<pid_t> owner = 0;  // whose SetupDevice is under way; 0 for nobody's
  agl_int16_t value_of_plc = 0;  // plain: only one SetupDevice at a time has it
  std::list<Tree> trees;         // the same; a freed one stays, since a filter may be reading it
};

struct State {
  std::array<Device, 256> devices;
  std::array<std::atomic<bool>, QuietLibrary::PlaceCount> held{};
  std::array<std::atomic<pid_t>, QuietLibrary::PlaceCount> arrived{};
  std::atomic<bool> cache_file = false;
  std::atomic<bool> plc_fails = false;
  std::atomic<int> slowness = 0;
  std::atomic<int> polls = 0;
  std::atomic<int> setups = 0;
  std::atomic<int> overlaps = 0;
  std::atomic<int> writes = 0;
};

// One a library object: what a thread of one test left must not meet those of the next, since nothing orders
// them. All are kept.
std::list<State>& states() {
  static auto& all = *new std::list<State>;
  return all;
}
std::atomic<State*> current = nullptr;

State& state() {
  return *current.load(kRelaxed);
}

// The device that this thread sets up.
thread_local Device* set_up = nullptr;

void stop_at(QuietLibrary::Place place) {
  State& all = state();
  all.arrived.at(place).store(gettid(), kRelaxed);
  while (all.held.at(place).load(kRelaxed)) std::this_thread::yield();
}

void check_owner() {
  if (set_up == nullptr) return;
  if (set_up->owner.load(kRelaxed) != gettid()) state().overlaps.fetch_add(1, kRelaxed);
}

void end_setup() {
  check_owner();
  pid_t self = gettid();
  if (set_up != nullptr) set_up->owner.compare_exchange_strong(self, 0, kRelaxed);
}

// Connecting.
agl_int32_t GetParas(agl_int32_t device, agl_int32_t, void*, agl_int32_t) {
  set_up = &state().devices.at(static_cast<std::size_t>(device));
  state().setups.fetch_add(1, kRelaxed);
  if (set_up->owner.exchange(gettid(), kRelaxed) != 0) state().overlaps.fetch_add(1, kRelaxed);
  stop_at(QuietLibrary::Parameters);
  return AGL40_SUCCESS;
}

agl_int32_t SetParas(agl_int32_t, agl_int32_t, void* parameters, agl_int32_t) {
  check_owner();
  const std::string address = static_cast<const S7_TCPIP_TIA*>(parameters)->Conn[0].Address;
  set_up->value_of_plc = static_cast<agl_int16_t>(std::atoi(address.substr(address.rfind('.') + 1).c_str()));
  return AGL40_SUCCESS;
}

agl_int32_t owner_only(agl_int32_t, agl_int32_t) {
  check_owner();
  return AGL40_SUCCESS;
}
agl_int32_t owner_only_device(agl_int32_t) {
  check_owner();
  return AGL40_SUCCESS;
}
agl_int32_t owner_only_timed(agl_int32_t, agl_int32_t, agl_ptrdiff_t) {
  check_owner();
  return AGL40_SUCCESS;
}
agl_int32_t PLCDisconnect(agl_int32_t, agl_int32_t, agl_ptrdiff_t) {
  check_owner();
  stop_at(QuietLibrary::Disconnect);
  return AGL40_SUCCESS;
}
agl_int32_t PLCConnectEx(agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t, agl_int32_t* connection,
                         agl_int32_t, agl_ptrdiff_t) {
  check_owner();
  stop_at(QuietLibrary::Connect);
  *connection = 0;
  return AGL40_SUCCESS;
}
agl_int32_t SetPassword(agl_int32_t, const agl_char8_t*, agl_int32_t, agl_ptrdiff_t) {
  check_owner();
  stop_at(QuietLibrary::Password);
  return AGL40_SUCCESS;
}
agl_int32_t ReadMLFBNr(agl_int32_t, void*, agl_int32_t, agl_ptrdiff_t) {
  check_owner();
  return AGL40_SUCCESS;
}
agl_int32_t GetErrorMsg(agl_int32_t, agl_char8_t* text, agl_int32_t length) {
  if (length > 0) *text = '\0';
  return AGL40_SUCCESS;
}

// The symbol tree.
void hand_over_tree(HandleType* root) {
  Tree& tree = set_up->trees.emplace_back();
  tree.value = set_up->value_of_plc;
  *root = reinterpret_cast<HandleType>(&tree);
}
agl_int32_t LoadFromFile(const agl_char8_t*, HandleType* root) {
  check_owner();
  stop_at(QuietLibrary::LoadFile);
  if (!state().cache_file.load(kRelaxed)) return kFailed;
  hand_over_tree(root);
  end_setup();
  return AGL40_SUCCESS;
}
agl_int32_t LoadFromPLC(agl_int32_t, HandleType* root) {
  check_owner();
  stop_at(QuietLibrary::LoadPlc);
  const int begin = state().polls.load(kRelaxed);
  while (state().polls.load(kRelaxed) - begin < state().slowness.load(kRelaxed)) std::this_thread::yield();
  if (state().plc_fails.load(kRelaxed)) {
    end_setup();
    return kFailed;
  }
  hand_over_tree(root);
  return AGL40_SUCCESS;
}
agl_int32_t SaveToFile(HandleType, const agl_char8_t*) {
  check_owner();
  stop_at(QuietLibrary::SaveFile);
  end_setup();
  return AGL40_SUCCESS;
}
agl_int32_t FreeHandle(HandleType handle) {
  if ((handle & kAccess) == 0) check_owner();
  return AGL40_SUCCESS;
}

// Reads and writes.
const Tree* tree_of(HandleType handle) {
  return reinterpret_cast<const Tree*>(handle & ~kAccess);
}
agl_int32_t CreateAccessByPath(HandleType root, const agl_char8_t*, HandleType* access, agl_int32_t*) {
  if (root == 0) return kFailed;
  *access = root | kAccess;
  return AGL40_SUCCESS;
}
agl_int32_t GetNodeByPath(HandleType, const agl_char8_t*, HandleType*, agl_int32_t*) {
  return kFailed;
}
agl_int32_t GetDimensionCount(HandleType, agl_int32_t* count) {
  *count = 0;
  return AGL40_SUCCESS;
}
agl_int32_t answer(HandleType access, agl_int32_t* value, agl_int32_t what) {
  if (access == 0) return kFailed;
  *value = what;
  return AGL40_SUCCESS;
}
agl_int32_t GetSize(HandleType access, agl_int32_t* value) {
  return answer(access, value, sizeof(agl_int16_t));
}
agl_int32_t GetCount(HandleType access, agl_int32_t* value) {
  return answer(access, value, 1);
}
agl_int32_t GetValueType(HandleType, ValueType_t::enum_t* type) {
  *type = ValueType_t::vt_INT16;
  return AGL40_SUCCESS;
}
agl_int32_t GetSystemType(HandleType, SystemType_t::enum_t* type) {
  *type = SystemType_t::st_S7_UNKNOWN;
  return AGL40_SUCCESS;
}
agl_int32_t GetInt16(HandleType access, const void*, agl_int32_t, agl_int32_t, agl_int16_t* value) {
  *value = tree_of(access)->value;
  return AGL40_SUCCESS;
}
agl_int32_t SetInt16(HandleType, void*, agl_int32_t, agl_int32_t, agl_int16_t) {
  return AGL40_SUCCESS;
}
agl_int32_t run_job(SymbolicRW_t* accesses, agl_int32_t count, agl_int32_t* serror) {
  for (SymbolicRW_t* access = accesses; access != accesses + count; ++access) {
    access->Result = access->AccessHandle == 0 ? kFailed : AGL40_SUCCESS;
  }
  *serror = 0;
  return AGL40_SUCCESS;
}
agl_int32_t ReadMixEx(agl_int32_t, SymbolicRW_t* accesses, agl_int32_t count, agl_int32_t* serror,
                      agl_int32_t, agl_ptrdiff_t) {
  return run_job(accesses, count, serror);
}
agl_int32_t WriteMixEx(agl_int32_t, SymbolicRW_t* accesses, agl_int32_t count, agl_int32_t* serror,
                       agl_int32_t, agl_ptrdiff_t) {
  state().writes.fetch_add(1, kRelaxed);
  return run_job(accesses, count, serror);
}

void install_functions() {
  using fake::install;
  install(pAGL_GetParas, GetParas);
  install(pAGL_SetParas, SetParas);
  install(pAGL_SetDevType, owner_only);
  install(pAGL_GetErrorMsg, GetErrorMsg);
  install(pAGL_OpenDevice, owner_only_device);
  install(pAGL_CloseDevice, owner_only_device);
  install(pAGL_DialUp, owner_only_timed);
  install(pAGL_HangUp, owner_only_timed);
  install(pAGL_InitAdapter, owner_only_timed);
  install(pAGL_ExitAdapter, owner_only_timed);
  install(pAGL_PLCConnectEx, PLCConnectEx);
  install(pAGL_PLCDisconnect, PLCDisconnect);
  install(pAGL_ReadMLFBNr, ReadMLFBNr);
  install(pAGL_SetPassword, SetPassword);
  install(pAGL_Symbolic_LoadAGLinkSymbolsFromFile, LoadFromFile);
  install(pAGL_Symbolic_LoadAGLinkSymbolsFromPLC, LoadFromPLC);
  install(pAGL_Symbolic_SaveAGLinkSymbolsToFile, SaveToFile);
  install(pAGL_Symbolic_FreeHandle, FreeHandle);
  install(pAGL_Symbolic_CreateAccessByPath, CreateAccessByPath);
  install(pAGL_Symbolic_GetNodeByPath, GetNodeByPath);
  install(pAGL_Symbolic_GetArrayDimensionCount, GetDimensionCount);
  install(pAGL_Symbolic_GetAccessBufferSize, GetSize);
  install(pAGL_Symbolic_GetAccessBufferElementSize, GetSize);
  install(pAGL_Symbolic_GetAccessBufferElementCount, GetCount);
  install(pAGL_Symbolic_GetAccessElementValueType, GetValueType);
  install(pAGL_Symbolic_GetAccessElementSystemType, GetSystemType);
  install(pAGL_Symbolic_GetAccessBufferInt16, GetInt16);
  install(pAGL_Symbolic_SetAccessBufferInt16, SetInt16);
  install(pAGL_Symbolic_ReadMixEx, ReadMixEx);
  install(pAGL_Symbolic_WriteMixEx, WriteMixEx);
}

}  // namespace

QuietLibrary::QuietLibrary() {
  // The forwarding functions want an open library; one without any of their names leaves every pointer null.
  if (LoadDllByPath("libm.so.6") != 1) throw std::runtime_error("the library for tests needs libm.so.6");
  current.store(&states().emplace_back(), kRelaxed);
  install_functions();
}

QuietLibrary::~QuietLibrary() {
  for (auto& held : state().held) held.store(false, kRelaxed);
  set_slowness(0);
}

void QuietLibrary::hold(Place place) {
  state().arrived.at(place).store(0, kRelaxed);
  state().held.at(place).store(true, kRelaxed);
}
void QuietLibrary::release(Place place) {
  state().held.at(place).store(false, kRelaxed);
}
void QuietLibrary::await_arrival(Place place) const {
  while (thread_at(place) == 0) std::this_thread::yield();
}
pid_t QuietLibrary::thread_at(Place place) const {
  return state().arrived.at(place).load(kRelaxed);
}
void QuietLibrary::set_cache_file(bool loads) {
  state().cache_file.store(loads, kRelaxed);
}
void QuietLibrary::set_plc_fails(bool fails) {
  state().plc_fails.store(fails, kRelaxed);
}
void QuietLibrary::set_slowness(int polls) {
  state().slowness.store(polls, kRelaxed);
}
void QuietLibrary::note_poll() {
  state().polls.fetch_add(1, kRelaxed);
}
int QuietLibrary::setups() const {
  return state().setups.load(kRelaxed);
}
int QuietLibrary::overlaps() const {
  return state().overlaps.load(kRelaxed);
}
int QuietLibrary::writes() const {
  return state().writes.load(kRelaxed);
}

int value_of_tree(HandleType root) {
  return root == 0 ? -1 : tree_of(root)->value;
}
