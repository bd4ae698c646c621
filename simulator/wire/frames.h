// SPDX-License-Identifier: MIT
// ISO transport class 0 over TCP (RFC 1006), as an S7 controller speaks it on port 102. No input or output
// of its own: bytes go in, transport units come out, and the other way round.
//
//   TPKT  03 00 LL LL                        LLLL = length of the whole frame, these four bytes included
//   CR    LI E0 00 00 SS SS 00 C0 01 TT      connection request, SSSS = own reference, 2^TT = unit size
//   CC    LI D0 DD DD SS SS 00 C0 01 TT      confirm, DDDD = reference of the request
//   DT    02 F0 EE payload                   EE = 80 in the last frame of a message, 00 before
//   DR    LI 80 DD DD SS SS RR               disconnect
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace ostravel::wire {

using Bytes = std::vector<std::uint8_t>;

// The other side does not keep to the format; the connection is to be closed.
struct BadFrame : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Sizes of a transport unit (header included) are powers of two; this is the exponent that we ask for.
inline constexpr std::uint8_t kPreferredUnit = 13;
inline constexpr std::uint8_t kSmallestUnit = 7;

struct TransportEvent {
  enum class Kind { ConnectRequest, ConnectConfirm, Message, Disconnect };
  Kind kind = Kind::Disconnect;
  std::uint16_t reference = 0;         // of the sender, with a request or a confirm
  std::uint8_t unit = kPreferredUnit;  // exponent that the sender asked for, at most kPreferredUnit
  Bytes message;                       // put together from its frames
};

Bytes connect_request(std::uint16_t own_reference, std::uint8_t unit = kPreferredUnit);
Bytes connect_confirm(std::uint16_t their_reference, std::uint16_t own_reference, std::uint8_t unit);

// The frames of one message, back to back. An empty message is one empty frame.
Bytes message_frames(std::span<const std::uint8_t> message, std::uint8_t unit);

class FrameReader {
 public:
  // A message longer than max_message is refused while it comes in, so memory use is bounded.
  explicit FrameReader(std::size_t max_message) : max_message_(max_message) {}

  // Takes what arrived, in pieces of any size. Throws BadFrame; the reader is of no use afterwards.
  void feed(std::span<const std::uint8_t> bytes);

  // The next complete event, in order of arrival; nothing while more bytes are needed.
  std::optional<TransportEvent> next();

 private:
  void take_frame(std::span<const std::uint8_t> unit);
  void take_connect(std::span<const std::uint8_t> header, TransportEvent::Kind kind);

  std::size_t max_message_;
  Bytes pending_;  // an incomplete frame
  Bytes message_;  // frames of an incomplete message
  std::deque<TransportEvent> events_;
};

}  // namespace ostravel::wire
