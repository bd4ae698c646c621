// SPDX-License-Identifier: MIT
// Frames into the simulated PLC, and into the stand-in library from a PLC that answers anything.
//   input = way:byte bytes
// The ways: bytes as they are, in pieces; messages that a length announces, in sound frames; requests with
// the program's own fingerprint; and the same to the library as a client.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fuzzing/support/answers.h"
#include "fuzzing/support/demand.h"
#include "fuzzing/support/entry.h"
#include "fuzzing/support/input.h"
#include "simulator/plc/plc.h"
#include "simulator/wire/frames.h"
#include "simulator/wire/messages.h"

using namespace ostravel;

namespace {

// A PLC with a password, and what one client of it has reached.
struct Server {
  plc::Plc plc{fuzz::plant(), plc::PlcOptions{"open", "OST", {}}};
  plc::ClientRights rights = plc.admit();

  // Answers as a connection does: false when the client is to be dropped.
  bool answer(const wire::Bytes& message, std::uint8_t unit) {
    const auto request = wire::decode_request(message);
    if (!request) return false;
    const wire::Answer answer = plc.serve(*request, rights);
    FUZZ_DEMAND(answer.sequence == request->sequence && answer.body.index() == request->body.index());
    // The client understands what it is sent.
    wire::FrameReader client(wire::kMaxAnswer);
    client.feed(wire::message_frames(wire::encode(answer), unit));
    const auto event = client.next();
    FUZZ_DEMAND(event && event->kind == wire::TransportEvent::Kind::Message && !client.next());
    const auto decoded = wire::decode_answer(event->message);
    FUZZ_DEMAND(decoded && decoded->sequence == answer.sequence && decoded->result == answer.result);
    FUZZ_DEMAND(wire::encode(*decoded) == wire::encode(answer));
    // Said again in its own form a request means the same.
    const auto again = wire::decode_request(wire::encode(*request));
    FUZZ_DEMAND(again && wire::encode(*again) == wire::encode(*request));
    return true;
  }
};

// Bytes in pieces of any size.
void feed_pieces(fuzz::Input& input, Server& server) {
  wire::FrameReader reader(1 << 16);
  std::uint8_t unit = wire::kPreferredUnit;
  while (!input.empty()) {
    const auto piece = input.take(std::size_t{input.byte()} + 1);
    try {
      reader.feed(piece);
    } catch (const wire::BadFrame&) {
      return;
    }
    while (const auto event = reader.next()) {
      if (event->kind == wire::TransportEvent::Kind::ConnectRequest) {
        FUZZ_DEMAND(event->unit >= wire::kSmallestUnit && event->unit <= wire::kPreferredUnit);
        unit = event->unit;
      } else if (event->kind != wire::TransportEvent::Kind::Message || !server.answer(event->message, unit)) {
        return;
      }
    }
  }
}

// Messages in sound frames come out as they went in, whatever they hold.
void send_messages(fuzz::Input& input, Server& server) {
  const std::uint8_t unit = input.byte();
  wire::FrameReader reader(1 << 16);
  while (!input.empty()) {
    const auto message = input.take(input.number<std::uint16_t>() % 600);
    reader.feed(wire::message_frames(message, unit));
    const auto event = reader.next();
    FUZZ_DEMAND(event && std::ranges::equal(event->message, message));
    if (!server.answer(event->message, unit)) return;
  }
}

wire::RequestBody request_body(fuzz::Input& input, const plc::Plc& plc) {
  const std::uint8_t kind = input.byte();
  const std::uint64_t fingerprint = kind < 0xE0 ? plc.program().fingerprint : input.number<std::uint64_t>();
  switch (kind % 5) {
    case 0:
      return wire::HelloRequest{input.byte()};
    case 1:
      return wire::PasswordRequest{kind < 0x80 ? "open" : std::string(input.text())};
    case 2:
      return wire::SymbolsRequest{};
    case 3: {
      wire::ReadRequest request{fingerprint, {}};
      for (int items = input.byte() % 8; items > 0; --items) {
        const std::uint8_t address = input.byte();
        request.items.push_back({address == 0xFF ? input.number<std::uint32_t>() : address,
                                 address >= 0xFE ? input.number<std::uint32_t>() : input.byte()});
      }
      return request;
    }
    default: {
      wire::WriteRequest request{fingerprint, {}};
      for (int items = input.byte() % 8; items > 0; --items) {
        const std::uint8_t address = input.byte();
        const auto data = input.take(input.byte() % 32);
        request.items.push_back({address == 0xFF ? input.number<std::uint32_t>() : address,
                                 wire::Bytes(data.begin(), data.end())});
      }
      return request;
    }
  }
}

void send_requests(fuzz::Input& input, Server& server) {
  for (std::uint32_t sequence = 0; !input.empty(); ++sequence) {
    const wire::Request request{sequence, input.byte(), request_body(input, server.plc)};
    FUZZ_DEMAND(server.answer(wire::encode(request), input.byte()));
    if (input.byte() % 4 == 0) server.plc.step();
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::uint8_t way = input.byte();
  if (way % 4 == 3) {
    fuzz::ask_hostile_plc(input);
    return 0;
  }
  Server server;
  switch (way % 4) {
    case 0:
      feed_pieces(input, server);
      break;
    case 1:
      send_messages(input, server);
      break;
    default:
      send_requests(input, server);
      break;
  }
  return 0;
}
