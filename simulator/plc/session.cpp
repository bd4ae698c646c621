// SPDX-License-Identifier: MIT
#include "simulator/plc/session.h"

#include <algorithm>
#include <utility>

namespace ostravel::plc {
namespace {

constexpr std::uint16_t kOwnReference = 1;

// A late answer leaves so long after the client's time is up.
constexpr std::chrono::milliseconds kTooLate{200};
constexpr std::chrono::milliseconds kLongestDelay{600'000};

}  // namespace

Session::Session(Core& core, asio::ip::tcp::socket socket)
    : core_(core),
      socket_(std::move(socket)),
      handshake_(core.io),
      reader_(wire::kMaxRequest),
      rights_(core.plc.admit()) {}

void Session::start() {
  asio::error_code ignored;
  socket_.set_option(asio::ip::tcp::no_delay(true), ignored);
  expect_handshake();
  receive();
}

void Session::close() {
  if (!socket_.is_open()) return;
  asio::error_code ignored;
  socket_.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
  socket_.close(ignored);
  handshake_.cancel();
  for (const auto& timer : delayed_) timer->cancel();
  core_.waiting -= std::exchange(waiting_, 0);
  core_.remove(shared_from_this());
}

void Session::expect_handshake() {
  handshake_.expires_after(core_.limits.handshake);
  handshake_.async_wait([self = shared_from_this()](asio::error_code cancelled) {
    if (cancelled || self->connected_) return;
    // The client may have asked, and is kept waiting on purpose.
    if (self->core_.faults.frozen) return self->expect_handshake();
    self->close();
  });
}

void Session::serve() {
  while (socket_.is_open() && waiting_ < core_.limits.waiting_each) {
    const auto event = reader_.next();
    if (!event) return receive();
    take(*event);
  }
}

void Session::receive() {
  if (std::exchange(receiving_, true)) return;
  socket_.async_read_some(asio::buffer(input_),
                          [self = shared_from_this()](asio::error_code error, std::size_t length) {
                            self->receiving_ = false;
                            if (error) return self->close();
                            try {
                              self->reader_.feed(std::span(self->input_).first(length));
                            } catch (const wire::BadFrame&) {
                              return self->close();
                            }
                            self->serve();
                          });
}

void Session::take(const wire::TransportEvent& event) {
  switch (event.kind) {
    case wire::TransportEvent::Kind::ConnectRequest:
      if (connected_) return close();
      if (core_.faults.frozen) return;
      connected_ = true;
      handshake_.cancel();
      unit_ = event.unit;
      return send_after({}, wire::connect_confirm(event.reference, kOwnReference, unit_));
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
  waiting_ += frames.size();
  core_.add_waiting(frames.size());
  if (!socket_.is_open()) return;  // it was too much
  if (delay.count() == 0) return send(std::move(frames));
  auto timer = std::make_shared<Timer>(core_.io, delay);
  delayed_.insert(timer);
  timer->async_wait([self = shared_from_this(), timer, frames = std::move(frames)](asio::error_code) mutable {
    self->delayed_.erase(timer);
    if (self->socket_.is_open()) self->send(std::move(frames));
  });
}

void Session::send(wire::Bytes frames) {
  output_.push_back(std::move(frames));
  if (output_.size() == 1) send_first();
}

void Session::send_first() {
  asio::async_write(socket_, asio::buffer(output_.front()),
                    [self = shared_from_this()](asio::error_code error, std::size_t) {
                      // Also when it was closed right after the last byte: nothing waits any more.
                      if (error || !self->socket_.is_open()) return self->close();
                      const auto sent = self->output_.front().size();
                      self->waiting_ -= sent;
                      self->core_.waiting -= sent;
                      self->output_.pop_front();
                      if (!self->output_.empty()) self->send_first();
                      self->serve();
                    });
}

}  // namespace ostravel::plc
