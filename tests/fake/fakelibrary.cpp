// SPDX-License-Identifier: MIT
#include "tests/fake/fakelibrary.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "tests/fake/world.h"

namespace {

std::mutex current_guard;
std::shared_ptr<FakeLibrary::World> current;

// "Table[2]" is element {2} of "Table"; no bracket suffix: false.
bool split_element(const std::string& path, std::string& array, std::vector<agl_int32_t>& indices) {
  const auto open = path.rfind('[');
  if (path.empty() || path.back() != ']' || open == std::string::npos) return false;
  array = path.substr(0, open);
  std::size_t at = open;
  while (at < path.size() - 1) {
    const auto end = path.find_first_of(",]", at + 1);
    indices.push_back(std::atoi(path.substr(at + 1, end - at - 1).c_str()));
    at = end;
  }
  return true;
}

}  // namespace

namespace fake {

std::shared_ptr<FakeLibrary::World> current_world() {
  const std::lock_guard lock(current_guard);
  return current;
}

}  // namespace fake

Item* FakeLibrary::World::find(const std::string& path) {
  if (const auto found = items.find(path); found != items.end()) return &found->second;
  std::string array;
  std::vector<agl_int32_t> indices;
  if (!split_element(path, array, indices)) return nullptr;
  const auto found = items.find(array);
  if (found == items.end()) return nullptr;
  const agl_int32_t linear = found->second.linearIndex(indices);
  if (linear < 0) return nullptr;
  element_ = found->second.element(linear);
  return &element_;
}

Item* FakeLibrary::World::variable(HandleType handle) {
  const auto found = handles.find(handle);
  return found == handles.end() || !found->second.live ? nullptr : find(found->second.path);
}

HandleType FakeLibrary::World::open(const std::string& path, bool is_access) {
  const HandleType handle = next_handle++;
  handles.insert({handle, {is_access, path}});
  return handle;
}

std::string FakeLibrary::World::name(HandleType handle) const {
  if (handle == kRoot) return "root";
  const auto found = handles.find(handle);
  if (found == handles.end()) return std::to_string(handle);
  return (found->second.is_access ? "access:" : "node:") + found->second.path;
}

std::string FakeLibrary::World::path_of(HandleType handle) const {
  const auto found = handles.find(handle);
  return found == handles.end() ? std::string() : found->second.path;
}

int FakeLibrary::World::live(bool accesses) const {
  return static_cast<int>(std::count_if(handles.begin(), handles.end(), [&](const auto& entry) {
    return entry.second.live && entry.second.is_access == accesses;
  }));
}

std::string FakeLibrary::Call::text() const {
  std::string text = function + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) text += (i == 0 ? "" : ", ") + arguments[i];
  return text + ")";
}

FakeLibrary::FakeLibrary() : world_(std::make_shared<World>(*this)) {
  AGL_UnloadDyn();
  // The forwarding functions want an open library; one without any of their names leaves every pointer null.
  if (LoadDllByPath("libm.so.6") != 1) throw std::runtime_error("the fake library needs libm.so.6");
  {
    const std::lock_guard lock(current_guard);
    if (current != nullptr) throw std::logic_error("there is a fake library already");
    current = world_;
  }
  fake::install_functions();
}

FakeLibrary::~FakeLibrary() {
  AGL_UnloadDyn();
  const std::lock_guard lock(current_guard);
  current = nullptr;
}

Item& FakeLibrary::add(const std::string& path, const Item& item) {
  const std::lock_guard lock(world_->mutex);
  return world_->items.insert_or_assign(path, item).first->second;
}

Item& FakeLibrary::item(const std::string& path) {
  const std::lock_guard lock(world_->mutex);
  return world_->items.at(path);
}

void FakeLibrary::remove(const std::string& path) {
  const std::lock_guard lock(world_->mutex);
  world_->items.erase(path);
}

void FakeLibrary::fail(const std::string& function, agl_int32_t code) {
  const std::lock_guard lock(world_->mutex);
  world_->scripts[function].always = code;
}

void FakeLibrary::failCall(const std::string& function, int nth, agl_int32_t code) {
  const std::lock_guard lock(world_->mutex);
  world_->scripts[function].nth[nth] = code;
}

void FakeLibrary::failAfterwards(const std::string& function, agl_int32_t code) {
  const std::lock_guard lock(world_->mutex);
  world_->scripts[function].afterwards = code;
}

void FakeLibrary::succeed(const std::string& function) {
  const std::lock_guard lock(world_->mutex);
  World::Script& script = world_->scripts[function];
  script.always.reset();
  script.afterwards.reset();
  script.nth.clear();
}

void FakeLibrary::onCall(const std::string& function, std::function<void()> hook) {
  const std::lock_guard lock(world_->mutex);
  world_->scripts[function].hook = std::move(hook);
}

std::vector<FakeLibrary::Call> FakeLibrary::calls() const {
  const std::lock_guard lock(world_->mutex);
  return world_->calls;
}

std::vector<std::string> FakeLibrary::log() const {
  return log("*");
}

std::vector<std::string> FakeLibrary::log(const std::string& function) const {
  const bool family = !function.empty() && function.back() == '*';
  std::vector<std::string> texts;
  for (const Call& call : calls()) {
    if (family ? call.function.starts_with(function.substr(0, function.size() - 1))
               : call.function == function) {
      texts.push_back(call.text());
    }
  }
  return texts;
}

int FakeLibrary::count(const std::string& function) const {
  return static_cast<int>(log(function).size());
}

void FakeLibrary::clearLog() {
  const std::lock_guard lock(world_->mutex);
  world_->calls.clear();
  world_->parameters_set.clear();
  world_->parameters_got.clear();
  world_->order_number_buffer.clear();
  world_->reads.clear();
  world_->writes.clear();
  world_->stored.clear();
}

std::vector<FakeLibrary::ParameterRecord> FakeLibrary::parametersSet() const {
  const std::lock_guard lock(world_->mutex);
  return world_->parameters_set;
}

std::vector<FakeLibrary::ParameterRecord> FakeLibrary::parametersGot() const {
  const std::lock_guard lock(world_->mutex);
  return world_->parameters_got;
}

std::vector<unsigned char> FakeLibrary::orderNumberBuffer() const {
  const std::lock_guard lock(world_->mutex);
  return world_->order_number_buffer;
}

std::vector<FakeLibrary::Job> FakeLibrary::reads() const {
  const std::lock_guard lock(world_->mutex);
  return world_->reads;
}

std::vector<FakeLibrary::Job> FakeLibrary::writes() const {
  const std::lock_guard lock(world_->mutex);
  return world_->writes;
}

std::vector<FakeLibrary::Stored> FakeLibrary::stored() const {
  const std::lock_guard lock(world_->mutex);
  return world_->stored;
}

std::vector<FakeLibrary::Stored> FakeLibrary::stored(const std::string& path) const {
  std::vector<Stored> of_path = stored();
  std::erase_if(of_path, [&](const Stored& one) { return one.path != path; });
  return of_path;
}

HandleType FakeLibrary::access(const std::string& path) {
  const std::lock_guard lock(world_->mutex);
  return world_->open(path, true);
}

HandleType FakeLibrary::node(const std::string& path) {
  const std::lock_guard lock(world_->mutex);
  return world_->open(path, false);
}

int FakeLibrary::liveAccesses() const {
  const std::lock_guard lock(world_->mutex);
  return world_->live(true);
}

int FakeLibrary::liveNodes() const {
  const std::lock_guard lock(world_->mutex);
  return world_->live(false);
}

int FakeLibrary::doubleFrees() const {
  const std::lock_guard lock(world_->mutex);
  return world_->double_frees;
}

int FakeLibrary::zeroFrees() const {
  const std::lock_guard lock(world_->mutex);
  return world_->zero_frees;
}

AbsentLibrary::AbsentLibrary() {
  AGL_UnloadDyn();
}
