// SPDX-License-Identifier: MIT
// What the stand-in library and the simulated PLC say to each other inside a transport connection. One
// request, one answer with the same sequence number; both are a MessagePack array
//   request  [kind, sequence, time limit in ms, body]
//   answer   [kind, sequence, job result, body]
// where kind is the position of the body's type in the variants below.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "simulator/program/program.h"
#include "simulator/wire/frames.h"

namespace ostravel::wire {

inline constexpr std::uint32_t kProtocolVersion = 1;
inline constexpr std::size_t kMaxRequest = std::size_t{80} << 20;  // a write of a whole program's memory fits
inline constexpr std::size_t kMaxAnswer = std::size_t{256} << 20;  // a symbol tree may outgrow the memory
inline constexpr std::size_t kMaxItems = 100'000;                  // of one job

// Of a whole job. Anything but Ok comes without items.
enum class JobResult : std::uint8_t { Ok, PasswordMissing, PasswordWrong, ProgramChanged, TooLarge };

// Of one item of a job.
enum class ItemResult : std::uint8_t { Ok, AddressInvalid, NotPermitted, Faulty };

struct HelloRequest {
  std::uint32_t version = kProtocolVersion;
};
struct PasswordRequest {
  std::string password;
};
struct SymbolsRequest {};
struct ReadItem {
  std::uint32_t address = 0;  // in the program's memory
  std::uint32_t length = 0;   // bytes
};
// The fingerprint is that of the tree that the addresses come from; a job without items need not know it.
struct ReadRequest {
  std::uint64_t fingerprint = 0;
  std::vector<ReadItem> items;
};
struct WriteItem {
  std::uint32_t address = 0;
  Bytes data;
};
struct WriteRequest {
  std::uint64_t fingerprint = 0;
  std::vector<WriteItem> items;
};
using RequestBody = std::variant<HelloRequest, PasswordRequest, SymbolsRequest, ReadRequest, WriteRequest>;

struct Request {
  std::uint32_t sequence = 0;
  std::uint32_t time_limit = 0;  // ms that the sender waits for the answer
  RequestBody body;
};

struct HelloAnswer {
  std::uint32_t version = kProtocolVersion;
  std::string order_number;
  std::uint64_t fingerprint = 0;
  bool password_needed = false;
};
struct PasswordAnswer {};
struct SymbolsAnswer {
  std::uint64_t fingerprint = 0;
  std::vector<plc::Symbol> blocks;
};
struct ReadAnswerItem {
  ItemResult result = ItemResult::Ok;
  Bytes data;  // as many bytes as asked for when Ok, else none
};
struct ReadAnswer {
  std::uint32_t cycle = 0;  // of the snapshot that all items come from
  std::vector<ReadAnswerItem> items;
};
struct WriteAnswer {
  std::vector<ItemResult> items;
};
using AnswerBody = std::variant<HelloAnswer, PasswordAnswer, SymbolsAnswer, ReadAnswer, WriteAnswer>;

struct Answer {
  std::uint32_t sequence = 0;
  JobResult result = JobResult::Ok;
  AnswerBody body;
};

Bytes encode(const Request& request);
Bytes encode(const Answer& answer);

// Nothing when the bytes are no message: cut short, followed by more, nested too deeply, of a wrong type, out
// of bounds. Allocates no more than a small multiple of the input's size.
std::optional<Request> decode_request(std::span<const std::uint8_t> bytes);
std::optional<Answer> decode_answer(std::span<const std::uint8_t> bytes);

}  // namespace ostravel::wire
