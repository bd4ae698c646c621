// SPDX-License-Identifier: MIT
#include "simulator/plc/session.h"

#include <utility>

namespace ostravel::plc {
namespace {

constexpr std::uint16_t kOwnReference = 1;

// A late answer leaves so long after the client's time is up.
constexpr std::chrono::milliseconds kTooLate{200};
constexpr std::chrono::milliseconds kLongestDelay{600'000};

// A client that asks and never listens is cut off when so much waits for it.
constexpr std::size_t kMaxWaiting = std::size_t{512} << 20;

}  // namespace

Session::Session(Core& core, asio::ip::tcp::socket socket)
    : core_(core), socket_(std::move(socket)), reader_(wire::kMaxRequest) {}

void Session::start() {
  asio::error_code ignored;
  socket_.set_option(asio::ip::tcp::no_delay(true), ignored);
  receive();
}

void Session::close() {
  if (!socket_.is_open()) return;
  asio::error_code ignored;
  socket_.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
  socket_.close(ignored);
  core_.remove(shared_from_this());
}

void Session::receive() {
  socket_.async_read_some(asio::buffer(input_),
                          [self = shared_from_this()](asio::error_code error, std::size_t length) {
                            if (error) return self->close();
                            try {
                              self->reader_.feed(std::span(self->input_).first(length));
                              while (auto event = self->reader_.next()) self->take(*event);
                            } catch (const wire::BadFrame&) {
                              self->close();
                            }
                            if (self->socket_.is_open()) self->receive();
                          });
}

void Session::take(const wire::TransportEvent& event) {
  if (!socket_.is_open()) return;
  switch (event.kind) {
    case wire::TransportEvent::Kind::ConnectRequest:
      if (connected_) return close();
      if (core_.faults.frozen) return;
      connected_ = true;
      unit_ = event.unit;
      return send(wire::connect_confirm(event.reference, kOwnReference, unit_));
    case wire::TransportEvent::Kind::Message:
      if (!connected_) return close();
      return answer(event.message);
    case wire::TransportEvent::Kind::ConnectConfirm:
    case wire::TransportEvent::Kind::Disconnect:
      return close();
  }
}

void Session::answer(const wire::Bytes& message) {
  const auto request = wire::decode_request(message);
  if (!request) return close();
  if (core_.faults.frozen) return;
  auto delay = core_.faults.delay;
  if (std::exchange(core_.faults.late, false))
    delay += std::chrono::milliseconds(request->time_limit) + kTooLate;
  auto frames = wire::message_frames(wire::encode(core_.plc.serve(*request, rights_)), unit_);
  send_after(std::min(delay, kLongestDelay), std::move(frames));
}

void Session::send_after(std::chrono::milliseconds delay, wire::Bytes frames) {
  output_bytes_ += frames.size();
  if (output_bytes_ > kMaxWaiting) return close();
  if (delay.count() == 0) return send(std::move(frames));
  auto timer = std::make_shared<asio::steady_timer>(core_.io, delay);
  timer->async_wait(
      [self = shared_from_this(), timer, waiting = std::move(frames)](asio::error_code) mutable {
        if (self->socket_.is_open()) self->send(std::move(waiting));
      });
}

void Session::send(wire::Bytes frames) {
  output_.push_back(std::move(frames));
  if (output_.size() == 1) send_first();
}

void Session::send_first() {
  asio::async_write(socket_, asio::buffer(output_.front()),
                    [self = shared_from_this()](asio::error_code error, std::size_t) {
                      if (error) return self->close();
                      self->output_bytes_ -= std::min(self->output_bytes_, self->output_.front().size());
                      self->output_.pop_front();
                      if (!self->output_.empty()) self->send_first();
                    });
}

void Core::add(const std::shared_ptr<Session>& session) {
  sessions.insert(session);
  ++connections.accepted;
  connections.open = sessions.size();
  connections.most_at_once = std::max(connections.most_at_once, connections.open);
}

void Core::remove(const std::shared_ptr<Session>& session) {
  sessions.erase(session);
  connections.open = sessions.size();
}

}  // namespace ostravel::plc
