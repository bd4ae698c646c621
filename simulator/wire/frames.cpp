// SPDX-License-Identifier: MIT
#include "simulator/wire/frames.h"

#include <algorithm>
#include <utility>

namespace ostravel::wire {
namespace {

constexpr std::size_t kTpktHeader = 4;
constexpr std::size_t kDataHeader = 3;
constexpr std::uint8_t kVersion = 3;
constexpr std::uint8_t kConnectRequest = 0xE0;
constexpr std::uint8_t kConnectConfirm = 0xD0;
constexpr std::uint8_t kDisconnectRequest = 0x80;
constexpr std::uint8_t kData = 0xF0;
constexpr std::uint8_t kEndOfMessage = 0x80;
constexpr std::uint8_t kUnitSizeParameter = 0xC0;

std::uint8_t high(std::size_t value) {
  return static_cast<std::uint8_t>(value >> 8 & 0xFF);
}
std::uint8_t low(std::size_t value) {
  return static_cast<std::uint8_t>(value & 0xFF);
}

void append_tpkt(Bytes& out, std::size_t payload) {
  const std::size_t length = kTpktHeader + payload;
  for (const std::uint8_t byte : {kVersion, std::uint8_t{0}, high(length), low(length)}) out.push_back(byte);
}

Bytes connect_frame(std::uint8_t code, std::uint16_t destination, std::uint16_t source, std::uint8_t unit) {
  const Bytes body{
      code, high(destination), low(destination), high(source), low(source), 0, kUnitSizeParameter, 1, unit};
  Bytes out;
  append_tpkt(out, body.size() + 1);
  out.push_back(static_cast<std::uint8_t>(body.size()));
  out.insert(out.end(), body.begin(), body.end());
  return out;
}

}  // namespace

Bytes connect_request(std::uint16_t own_reference, std::uint8_t unit) {
  return connect_frame(kConnectRequest, 0, own_reference, unit);
}

Bytes connect_confirm(std::uint16_t their_reference, std::uint16_t own_reference, std::uint8_t unit) {
  return connect_frame(kConnectConfirm, their_reference, own_reference, unit);
}

Bytes message_frames(std::span<const std::uint8_t> message, std::uint8_t unit) {
  const std::size_t chunk = (std::size_t{1} << std::clamp(unit, kSmallestUnit, kPreferredUnit)) - kDataHeader;
  Bytes out;
  out.reserve(message.size() + (message.size() / chunk + 1) * (kTpktHeader + kDataHeader));
  do {
    const auto piece = message.first(std::min(chunk, message.size()));
    message = message.subspan(piece.size());
    append_tpkt(out, kDataHeader + piece.size());
    out.insert(out.end(), {2, kData, message.empty() ? kEndOfMessage : std::uint8_t{0}});
    out.insert(out.end(), piece.begin(), piece.end());
  } while (!message.empty());
  return out;
}

void FrameReader::feed(std::span<const std::uint8_t> bytes) {
  pending_.insert(pending_.end(), bytes.begin(), bytes.end());
  std::size_t start = 0;
  while (pending_.size() - start >= kTpktHeader) {
    const std::uint8_t* header = pending_.data() + start;
    const std::size_t length = static_cast<std::size_t>(header[2]) << 8 | header[3];
    if (header[0] != kVersion || length < kTpktHeader + 2) throw BadFrame("no TPKT frame");
    if (pending_.size() - start < length) break;
    take_frame({header + kTpktHeader, length - kTpktHeader});
    start += length;
  }
  pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(start));
}

std::optional<TransportEvent> FrameReader::next() {
  if (events_.empty()) return std::nullopt;
  TransportEvent event = std::move(events_.front());
  events_.pop_front();
  return event;
}

void FrameReader::take_frame(std::span<const std::uint8_t> unit) {
  const std::size_t header_length = unit[0];
  if (header_length < 2 || header_length + 1 > unit.size()) throw BadFrame("bad transport header length");
  const auto header = unit.subspan(1, header_length);
  const auto payload = unit.subspan(1 + header_length);
  switch (header[0]) {
    case kConnectRequest:
      take_connect(header, TransportEvent::Kind::ConnectRequest);
      return;
    case kConnectConfirm:
      take_connect(header, TransportEvent::Kind::ConnectConfirm);
      return;
    case kDisconnectRequest:
      events_.push_back({});
      return;
    case kData:
      break;
    default:
      throw BadFrame("unknown transport unit");
  }
  if (header_length != 2) throw BadFrame("bad data header length");
  if (payload.size() > max_message_ - message_.size()) throw BadFrame("message too long");
  message_.insert(message_.end(), payload.begin(), payload.end());
  if ((header[1] & kEndOfMessage) == 0) return;
  TransportEvent event;
  event.kind = TransportEvent::Kind::Message;
  event.message = std::exchange(message_, {});
  events_.push_back(std::move(event));
}

void FrameReader::take_connect(std::span<const std::uint8_t> header, TransportEvent::Kind kind) {
  constexpr std::size_t kFixed = 6;  // code, two references, class
  if (header.size() < kFixed) throw BadFrame("connect unit too short");
  TransportEvent event;
  event.kind = kind;
  event.reference = static_cast<std::uint16_t>(header[3] << 8 | header[4]);
  auto parameters = header.subspan(kFixed);
  while (!parameters.empty()) {
    if (parameters.size() < 2 || parameters.size() < 2U + parameters[1]) throw BadFrame("bad parameter");
    if (parameters[0] == kUnitSizeParameter && parameters[1] == 1) {
      event.unit = std::clamp(parameters[2], kSmallestUnit, kPreferredUnit);
    }
    parameters = parameters.subspan(2U + parameters[1]);
  }
  events_.push_back(std::move(event));
}

}  // namespace ostravel::wire
