// SPDX-License-Identifier: MIT
#include "simulator/standin/device.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace ostravel::standin {
namespace {

constexpr agl_int32_t kTypeDefault = 1;  // what a caller may ask for before it has set anything
constexpr std::uint16_t kIsoPort = 102;

// One connection's part of the parameters, 128 bytes. Only what the stand-in looks at:
//   0 lTimeOut (4) | 6 wPlcNr (2) | 8 bPLCClassEx (1) | 16 bConnTypeEx (1) | 32 Address (64) | 96 Flags (4) |
//   100 wPortNr (2)
class ConnectionParameters {
 public:
  static constexpr std::size_t kSize = 128;
  explicit ConnectionParameters(const std::uint8_t* bytes) : bytes_(bytes) {}

  agl_int32_t timeout() const { return at<agl_int32_t>(0); }
  std::uint16_t plc_number() const { return at<std::uint16_t>(6); }
  std::uint8_t plc_class() const { return bytes_[8]; }
  std::uint8_t connection_type() const { return bytes_[16]; }
  std::string address() const {
    constexpr std::size_t kAddress = 32;
    constexpr std::size_t kAddressSize = 64;
    const auto* text = reinterpret_cast<const char*>(bytes_ + kAddress);
    return {text, strnlen(text, kAddressSize)};
  }
  std::uint16_t port() const { return at<std::uint16_t>(100); }

 private:
  template <typename T>
  T at(std::size_t offset) const {
    T value;
    std::memcpy(&value, bytes_ + offset, sizeof value);
    return value;
  }
  const std::uint8_t* bytes_;
};

// Nobody but root may listen on port 102; tests and demo name the port they use instead.
std::uint16_t effective_port(std::uint16_t port) {
  const char* setting = std::getenv("OSTRAVEL_STANDIN_PORT");
  if (port != kIsoPort || setting == nullptr) return port;
  const std::string_view text(setting);
  std::uint16_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  require(error == std::errc() && end == text.data() + text.size() && value != 0, Error::PortSettingInvalid);
  return value;
}

bool is_supported(std::uint8_t plc_class) {
  constexpr std::array<std::uint8_t, 6> kTiaClasses{20, 21, 22, 30, 31, 40};
  return std::find(kTiaClasses.begin(), kTiaClasses.end(), plc_class) != kTiaClasses.end();
}

}  // namespace

void Device::set_parameters(agl_int32_t type, const std::uint8_t* bytes, agl_int32_t length) {
  require(type == kTypeTia || type == kTypeDefault, Error::DeviceTypeUnsupported);
  require(bytes != nullptr && length > 0 && length <= kParameterBytes, Error::InvalidParameter);
  const std::lock_guard lock(mutex_);
  auto& stored = parameters_[type];
  stored.fill(0);
  std::copy_n(bytes, length, stored.begin());
}

void Device::get_parameters(agl_int32_t type, std::uint8_t* bytes, agl_int32_t length) {
  require(type == kTypeTia || type == kTypeDefault, Error::DeviceTypeUnsupported);
  require(bytes != nullptr && length > 0 && length <= kParameterBytes, Error::InvalidParameter);
  const std::lock_guard lock(mutex_);
  std::copy_n(parameters_[type].begin(), length, bytes);
}

void Device::set_type(agl_int32_t type) {
  require(type == kTypeTia, Error::DeviceTypeUnsupported);
}

void Device::open() {
  const std::lock_guard lock(mutex_);
  require(state_ == State::Closed, Error::DeviceOpen);
  state_ = State::Open;
}

void Device::dial_up() {
  const std::lock_guard lock(mutex_);
  require(state_ >= State::Open, Error::DeviceClosed);
  state_ = std::max(state_, State::DialledUp);
}

void Device::initialise_adapter() {
  const std::lock_guard lock(mutex_);
  require(state_ >= State::Open, Error::DeviceClosed);
  require(state_ >= State::DialledUp, Error::NotDialledUp);
  state_ = State::Ready;
}

std::size_t Device::connect(agl_int32_t plc_number, agl_int32_t timeout) {
  const std::lock_guard lock(mutex_);
  require(state_ >= State::Open, Error::DeviceClosed);
  require(state_ == State::Ready, Error::NoAdapter);
  const auto& stored = parameters_[kTypeTia];
  std::optional<ConnectionParameters> parameters;
  for (std::size_t i = 0; i < stored.size() && !parameters; i += ConnectionParameters::kSize) {
    const ConnectionParameters candidate(stored.data() + i);
    if (!candidate.address().empty() && candidate.plc_number() == plc_number) parameters = candidate;
  }
  require(parameters.has_value(), Error::ParametersMissing);
  require(is_supported(parameters->plc_class()) && parameters->connection_type() <= 3,
          Error::ParametersUnsupported);
  const auto free = std::find(connections_.begin(), connections_.end(), nullptr);
  require(free != connections_.end(), Error::ConnectionsExhausted);
  *free = std::make_shared<Connection>(parameters->address(), effective_port(parameters->port()),
                                       effective_timeout(timeout, parameters->timeout()));
  return static_cast<std::size_t>(free - connections_.begin());
}

void Device::disconnect(std::size_t position) {
  const std::lock_guard lock(mutex_);
  require(connections_[position] != nullptr, Error::InvalidConnection);
  connections_[position] = nullptr;
}

void Device::exit_adapter() {
  const std::lock_guard lock(mutex_);
  require(state_ == State::Ready, Error::NoAdapter);
  end_connections();
  state_ = State::DialledUp;
}

void Device::hang_up() {
  const std::lock_guard lock(mutex_);
  require(state_ >= State::DialledUp, Error::NotDialledUp);
  end_connections();
  state_ = State::Open;
}

void Device::close() {
  const std::lock_guard lock(mutex_);
  require(state_ != State::Closed, Error::DeviceClosed);
  end_connections();
  state_ = State::Closed;
}

std::shared_ptr<Connection> Device::connection(std::size_t position) {
  const std::lock_guard lock(mutex_);
  require(connections_[position] != nullptr, Error::InvalidConnection);
  return connections_[position];
}

agl_int32_t Device::parameter_timeout() {
  const std::lock_guard lock(mutex_);
  return ConnectionParameters(parameters_[kTypeTia].data()).timeout();
}

// A job that is under way keeps its connection until it is done.
void Device::end_connections() {
  connections_.fill(nullptr);
}

Device& device(agl_int32_t number) {
  static std::array<Device, kDevices> devices;
  require(number >= 0 && number < kDevices, Error::InvalidDevice);
  return devices[static_cast<std::size_t>(number)];
}

ConnectionPlace place_of(agl_int32_t connection) {
  require(connection >= 0 && connection < kDevices * static_cast<agl_int32_t>(kConnectionsPerDevice),
          Error::InvalidConnection);
  return {device(connection % kDevices), static_cast<std::size_t>(connection / kDevices)};
}

}  // namespace ostravel::standin
