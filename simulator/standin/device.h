// SPDX-License-Identifier: MIT
// The library's devices. A device goes closed -> open -> dialled up -> ready, and has connections while it is
// ready. The first connection of device n has number n, the next ones n + 256, n + 512, n + 768.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "simulator/standin/agltypes.h"
#include "simulator/standin/connection.h"

namespace ostravel::standin {

inline constexpr agl_int32_t kDevices = 256;
inline constexpr std::size_t kConnectionsPerDevice = 4;
inline constexpr agl_int32_t kParameterBytes = 512;  // of S7_TCPIP_TIA
inline constexpr agl_int32_t kTypeTia = 21;          // S7 over TCP/IP with symbols

class Device {
 public:
  void set_parameters(agl_int32_t type, const std::uint8_t* bytes, agl_int32_t length);
  // Zeros where nothing was set.
  void get_parameters(agl_int32_t type, std::uint8_t* bytes, agl_int32_t length);
  void set_type(agl_int32_t type);

  void open();
  void dial_up();
  void initialise_adapter();
  // Returns the position of the new connection, 0 for the first.
  std::size_t connect(agl_int32_t plc_number, agl_int32_t timeout);
  void disconnect(std::size_t position);
  void exit_adapter();  // ends all connections
  void hang_up();
  void close();  // from any state but closed

  std::shared_ptr<Connection> connection(std::size_t position);
  agl_int32_t parameter_timeout();

 private:
  enum class State { Closed, Open, DialledUp, Ready };
  void end_connections();

  std::mutex mutex_;
  State state_ = State::Closed;
  std::map<agl_int32_t, std::array<std::uint8_t, kParameterBytes>> parameters_;
  std::array<std::shared_ptr<Connection>, kConnectionsPerDevice> connections_;
};

// Throws Failure(InvalidDevice).
Device& device(agl_int32_t number);

// The device and position of a connection number. Throws Failure(InvalidConnection).
struct ConnectionPlace {
  Device& device;
  std::size_t position;
};
ConnectionPlace place_of(agl_int32_t connection);

}  // namespace ostravel::standin
