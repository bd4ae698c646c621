// SPDX-License-Identifier: MIT
// Polls in a thread of its own, so that keys are answered while the PLC is not. All calls of the driver are
// made from that thread, as a runtime makes them from one.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "host/watch/devicepolling.h"
#include "host/watch/watcher.h"

namespace ostravel::host::watch {

class Feed : public Source {
 public:
  Feed(std::vector<PolledDevice> devices, std::chrono::milliseconds interval);
  Feed(const Feed&) = delete;
  Feed& operator=(const Feed&) = delete;
  // Waits for the end of the call of the driver that is under way.
  ~Feed() override;

  // What came in since the last call, in order. Throws what the driver threw; polling is over then.
  std::vector<News> take() override;

  // Model rows that are to be polled first.
  void set_visible(std::vector<std::size_t> rows) override;
  void set_interval(std::chrono::milliseconds interval) override;
  void set_paused(bool paused) override;
  // Polling ends; the destructor waits for it.
  void stop();

 private:
  void run();
  void poll_until_stopped();
  void take_orders(std::unique_lock<std::mutex>& lock);

  std::vector<DevicePolling> devices_;  // of the thread alone, once it runs

  std::mutex mutex_;  // guards what follows
  std::condition_variable changed_;
  std::vector<News> news_;
  std::optional<std::vector<std::size_t>> visible_;
  std::optional<std::chrono::milliseconds> interval_;
  bool paused_ = false;
  bool stopped_ = false;
  std::exception_ptr failure_;

  std::thread thread_;
};

}  // namespace ostravel::host::watch
