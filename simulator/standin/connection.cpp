// SPDX-License-Identifier: MIT
#include "simulator/standin/connection.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <utility>

#include "simulator/program/fingerprint.h"

namespace ostravel::standin {
namespace {

using wire::ItemResult;
using wire::JobResult;

Error job_error(JobResult result) {
  switch (result) {
    case JobResult::PasswordMissing:
      return Error::PasswordMissing;
    case JobResult::PasswordWrong:
      return Error::PasswordWrong;
    case JobResult::ProgramChanged:
      return Error::ProgramChanged;
    case JobResult::TooLarge:
      return Error::JobTooLarge;
    case JobResult::Ok:
      break;
  }
  return Error::Internal;
}

void settle(SymbolicRW_t& item, ItemResult result) {
  item.SError = static_cast<agl_int32_t>(result);
  switch (result) {
    case ItemResult::Ok:
      item.Result = 0;
      return;
    case ItemResult::AddressInvalid:
      item.Result = code_of(Error::ItemAddress);
      return;
    case ItemResult::NotPermitted:
      item.Result = code_of(Error::ItemNotPermitted);
      return;
    case ItemResult::Faulty:
      item.Result = code_of(Error::ItemFaulty);
      return;
  }
  item.Result = code_of(Error::Internal);
}

// The items of a job that can go to the PLC, with their accesses; the others get their Result here.
struct Travelling {
  struct Item {
    SymbolicRW_t* item;
    std::shared_ptr<const Access> access;
  };
  std::vector<Item> items;
  std::uint64_t fingerprint = 0;
};

Travelling prepare(std::span<SymbolicRW_t> items) {
  Travelling job;
  for (auto& item : items) {
    item.SError = 0;
    item.Result = guarded([&] {
      auto access = handles().get<Access>(item.AccessHandle);
      require(item.Buffer != nullptr, Error::InvalidParameter);
      require(item.BufferLen >= access->size(), Error::BufferTooSmall);
      // All addresses of one job come from one tree, or the PLC could not tell whether they still hold.
      if (job.items.empty()) job.fingerprint = access->tree->fingerprint;
      require(access->tree->fingerprint == job.fingerprint, Error::ProgramChanged);
      job.items.push_back({&item, std::move(access)});
    });
  }
  return job;
}

// Runs something on the wire and turns its exceptions into failures.
template <typename Exchange>
auto on_the_wire(Error when_late, Error when_lost, Exchange&& exchange) {
  try {
    return exchange();
  } catch (const wire::TimedOut&) {
    throw Failure(when_late);
  } catch (const wire::ConnectionLost&) {
    throw Failure(when_lost);
  } catch (const std::invalid_argument&) {
    throw Failure(Error::AddressInvalid);
  }
}

}  // namespace

Milliseconds effective_timeout(agl_int32_t timeout, agl_int32_t fallback) {
  constexpr agl_int32_t kFloor = 1000;
  constexpr agl_int32_t kDefault = 5000;
  if (timeout <= 0) timeout = fallback > 0 ? fallback : kDefault;
  return Milliseconds(std::max(timeout, kFloor));
}

Connection::Connection(const std::string& address, std::uint16_t port, Milliseconds limit)
    : client_(on_the_wire(Error::ConnectTimeout, Error::NoConnection,
                          [&] { return wire::Client(address, port, limit); })) {
  traffic().bytes_sent += client_.bytes_sent();
  traffic().bytes_received += client_.bytes_received();
  const auto answer = ask(wire::HelloRequest{}, limit);
  require(std::get<wire::HelloAnswer>(answer.body).version == wire::kProtocolVersion,
          Error::ProtocolMismatch);
  ++traffic().open;
  ++traffic().connections;
}

Connection::~Connection() {
  --traffic().open;
}

wire::Answer Connection::ask(wire::RequestBody body, Milliseconds limit) {
  const std::lock_guard lock(mutex_);
  const auto sent = client_.bytes_sent();
  const auto received = client_.bytes_received();
  struct Counted {
    Traffic& counters;
    wire::Client& client;
    std::uint64_t sent_before;
    std::uint64_t received_before;
    ~Counted() {
      counters.bytes_sent += client.bytes_sent() - sent_before;
      counters.bytes_received += client.bytes_received() - received_before;
    }
  } const counted{traffic(), client_, sent, received};
  auto answer = on_the_wire(Error::JobTimeout, Error::ConnectionLost,
                            [&] { return client_.ask(std::move(body), limit); });
  if (answer.result != JobResult::Ok) throw Failure(job_error(answer.result));
  return answer;
}

std::string Connection::order_number(Milliseconds limit) {
  return std::get<wire::HelloAnswer>(ask(wire::HelloRequest{}, limit).body).order_number;
}

void Connection::give_password(const std::string& password, Milliseconds limit) {
  ask(wire::PasswordRequest{password}, limit);
}

Tree Connection::upload(Milliseconds limit) {
  ++traffic().uploads;
  auto answer = ask(wire::SymbolsRequest{}, limit);
  auto& symbols = std::get<wire::SymbolsAnswer>(answer.body);
  require(plc::fingerprint(symbols.blocks) == symbols.fingerprint, Error::ConnectionLost);
  return {std::move(symbols.blocks), symbols.fingerprint};
}

void Connection::read(std::span<SymbolicRW_t> items, Milliseconds limit) {
  ++traffic().read_jobs;
  const auto job = prepare(items);
  wire::ReadRequest request{job.fingerprint, {}};
  for (const auto& [item, access] : job.items) {
    request.items.push_back({access->address, static_cast<std::uint32_t>(access->size())});
  }
  const auto answer = ask(std::move(request), limit);
  const auto& results = std::get<wire::ReadAnswer>(answer.body).items;
  require(results.size() == job.items.size(), Error::ConnectionLost);
  for (std::size_t i = 0; i < results.size(); ++i) {
    const auto& [item, access] = job.items[i];
    settle(*item, results[i].result);
    if (item->Result != 0) continue;
    require(results[i].data.size() == static_cast<std::size_t>(access->size()), Error::ConnectionLost);
    std::copy(results[i].data.begin(), results[i].data.end(), static_cast<std::uint8_t*>(item->Buffer));
    ++traffic().items_read;
  }
}

void Connection::write(std::span<SymbolicRW_t> items, Milliseconds limit) {
  ++traffic().write_jobs;
  const auto job = prepare(items);
  wire::WriteRequest request{job.fingerprint, {}};
  for (const auto& [item, access] : job.items) {
    const auto* bytes = static_cast<const std::uint8_t*>(item->Buffer);
    request.items.push_back({access->address, wire::Bytes(bytes, bytes + access->size())});
  }
  const auto answer = ask(std::move(request), limit);
  const auto& results = std::get<wire::WriteAnswer>(answer.body).items;
  require(results.size() == job.items.size(), Error::ConnectionLost);
  for (std::size_t i = 0; i < results.size(); ++i) {
    settle(*job.items[i].item, results[i]);
    if (results[i] == ItemResult::Ok) ++traffic().items_written;
  }
}

Traffic& traffic() {
  static Traffic counters;
  return counters;
}

}  // namespace ostravel::standin
