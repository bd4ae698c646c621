// SPDX-License-Identifier: MIT
// A simulated PLC and a device of the stand-in that can connect to it. Devices are the library's, one for the
// whole process, so a world closes its own when it ends.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "simulator/plc/server.h"
#include "simulator/standin/aglink.h"
#include "simulator/standin/errors.h"
#include "simulator/standin/statistics.h"
#include "tests/simulator/plc_program.h"

namespace ostravel::standin {

using Data = std::vector<std::uint8_t>;

inline constexpr agl_int32_t kTimeout = 10'000;

// The 512 bytes of connection parameters with what a caller fills for one PLC, at their offsets.
inline Data parameters(const std::string& address, std::uint16_t port) {
  Data bytes(512);
  const std::int32_t timeout = kTimeout;
  std::memcpy(&bytes[0], &timeout, 4);
  bytes[8] = 40;  // the library finds out the PLC's class
  std::memcpy(&bytes[32], address.data(), std::min<std::size_t>(address.size(), 64));
  bytes[96] = 4;
  std::memcpy(&bytes[100], &port, 2);
  return bytes;
}

inline agl_standin_statistics_t statistics() {
  agl_standin_statistics_t now{};
  agl_standin_statistics(&now);
  return now;
}

inline agl_int32_t code(Error error) {
  return code_of(error);
}

class World {
 public:
  explicit World(agl_int32_t device = 1, const plc::ServerOptions& options = plc::test_options(),
                 plc::Program program = plc::test_program())
      : server(std::move(program), options), device_(device) {}
  ~World() {
    if (root != 0) AGL_Symbolic_FreeHandle(root);
    AGL_CloseDevice(device_);
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  // The way to a connection, without the last step.
  void prepare() {
    auto bytes = parameters("127.0.0.1", server.port());
    EXPECT_EQ(AGL_SetParas(device_, 21, bytes.data(), 512), 0);
    EXPECT_EQ(AGL_SetDevType(device_, 21), 0);
    EXPECT_EQ(AGL_OpenDevice(device_), 0);
    EXPECT_EQ(AGL_DialUp(device_, kTimeout, 0), 0);
    EXPECT_EQ(AGL_InitAdapter(device_, kTimeout, 0), 0);
  }
  agl_int32_t connect() { return AGL_PLCConnectEx(device_, 0, 0, 0, &connection, kTimeout, 0); }
  agl_int32_t upload() { return AGL_Symbolic_LoadAGLinkSymbolsFromPLC(connection, &root); }

  nlohmann::json command(const std::string& line) { return nlohmann::json::parse(server.command(line)); }

  plc::Server server;
  agl_int32_t connection = -1;
  HandleType root = 0;

 private:
  agl_int32_t device_;
};

// A connected world with its symbols.
class ConnectedWorld : public World {
 public:
  explicit ConnectedWorld(agl_int32_t device = 1, const plc::ServerOptions& options = plc::test_options(),
                          plc::Program program = plc::test_program())
      : World(device, options, std::move(program)) {
    prepare();
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(upload(), 0);
  }
};

// One access with its buffer.
class PathAccess {
 public:
  PathAccess(HandleType root, const char* path) {
    result = AGL_Symbolic_CreateAccessByPath(root, path, &handle, nullptr);
    agl_int32_t size = 0;
    if (result == 0) {
      EXPECT_EQ(AGL_Symbolic_GetAccessBufferSize(handle, &size), 0);
    }
    buffer.resize(static_cast<std::size_t>(size));
  }
  ~PathAccess() {
    if (handle != 0) AGL_Symbolic_FreeHandle(handle);
  }
  PathAccess(const PathAccess&) = delete;
  PathAccess& operator=(const PathAccess&) = delete;

  agl_int32_t length() const { return static_cast<agl_int32_t>(buffer.size()); }
  SymbolicRW_t item() { return {handle, buffer.data(), length(), -1, -1}; }
  // The item's own result, or that of the whole job when that failed.
  agl_int32_t read(agl_int32_t connection) { return run(AGL_Symbolic_ReadMixEx, connection); }
  agl_int32_t write(agl_int32_t connection) { return run(AGL_Symbolic_WriteMixEx, connection); }

  HandleType handle = 0;
  agl_int32_t result = -1;
  Data buffer;

 private:
  agl_int32_t run(decltype(AGL_Symbolic_ReadMixEx)* job, agl_int32_t connection) {
    auto rw = item();
    agl_int32_t plc_error = -1;
    const auto job_result = job(connection, &rw, 1, &plc_error, kTimeout, 0);
    return job_result != 0 ? job_result : rw.Result;
  }
};

}  // namespace ostravel::standin
