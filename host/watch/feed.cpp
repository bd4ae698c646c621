// SPDX-License-Identifier: MIT
#include "host/watch/feed.h"

#include <algorithm>
#include <csignal>
#include <iterator>
#include <utility>

namespace ostravel::host::watch {
namespace {

// Polling waits for a screen that takes nothing, a terminal stopped with Ctrl+S for instance.
constexpr std::size_t kMostNews = 200'000;

// Signals are for the thread that has the terminal, except for those of a mistake in this one.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    for (const int own : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
      sigdelset(&all, own);
    }
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

Feed::Feed(std::vector<PolledDevice> devices, std::chrono::milliseconds interval) {
  for (auto& device : devices) {
    devices_.emplace_back(std::move(device), interval);
  }
  const SignalsBlocked inherited;
  thread_ = std::thread([this] { run(); });
}

Feed::~Feed() {
  stop();
  thread_.join();
}

void Feed::stop() {
  const std::scoped_lock lock(mutex_);
  stopped_ = true;
  changed_.notify_all();
}

std::vector<News> Feed::take() {
  const std::scoped_lock lock(mutex_);
  if (failure_) {
    std::rethrow_exception(failure_);
  }
  changed_.notify_all();
  return std::exchange(news_, {});
}

void Feed::set_visible(std::vector<std::size_t> rows) {
  const std::scoped_lock lock(mutex_);
  visible_ = std::move(rows);
  changed_.notify_all();
}

void Feed::set_interval(std::chrono::milliseconds interval) {
  const std::scoped_lock lock(mutex_);
  interval_ = interval;
  changed_.notify_all();
}

void Feed::set_paused(bool paused) {
  const std::scoped_lock lock(mutex_);
  if (paused_ && !paused) {
    news_.push_back({PauseReport{}, std::chrono::steady_clock::now()});
  }
  paused_ = paused;
  changed_.notify_all();
}

void Feed::run() {
  try {
    poll_until_stopped();
  } catch (...) {
    const std::scoped_lock lock(mutex_);
    failure_ = std::current_exception();
  }
}

void Feed::take_orders(std::unique_lock<std::mutex>& lock) {
  changed_.wait(lock, [this] { return stopped_ || (!paused_ && news_.size() < kMostNews); });
  for (auto& device : devices_) {
    if (visible_) {
      device.set_visible(*visible_);
    }
    if (interval_) {
      device.set_interval(*interval_);
    }
  }
  visible_.reset();
  interval_.reset();
}

void Feed::poll_until_stopped() {
  std::vector<News> news;
  std::unique_lock lock(mutex_);
  for (;;) {
    take_orders(lock);
    if (stopped_) {
      return;
    }
    lock.unlock();
    bool worked = false;
    auto due = TimePoint::max();
    for (auto& device : devices_) {
      worked = device.step(std::chrono::steady_clock::now(), news) || worked;
      due = std::min(due, device.due());
    }
    lock.lock();
    std::move(news.begin(), news.end(), std::back_inserter(news_));
    news.clear();
    if (!worked) {
      changed_.wait_until(
          lock, due, [this] { return stopped_ || paused_ || visible_.has_value() || interval_.has_value(); });
    }
  }
}

}  // namespace ostravel::host::watch
