// SPDX-License-Identifier: MIT
#include "host/watch/watcher.h"

#include <algorithm>
#include <variant>

namespace ostravel::host::watch {
namespace {

constexpr std::chrono::milliseconds kTick{100};  // the longest that news wait for the screen

template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

void tell(Model& model, News& news) {
  const auto when = news.when;
  std::visit(Overloaded{[&](Reading& reading) { model.take(std::move(reading), when); },
                        [&](const Trouble& trouble) {
                          model.take_trouble(trouble.device, trouble.error, trouble.status);
                        },
                        [&](const StateReport& report) { model.take_state(report.device, report.state); },
                        [&](const PauseReport&) { model.take_pause(); }},
             news.what);
}

class Watcher {
 public:
  Watcher(Model& model, Source& source, Display& display, const WatcherOptions& options)
      : model_(model),
        source_(source),
        display_(display),
        options_(options),
        browser_(model, options.interval) {}

  void run() {
    browser_.resize(display_.size());
    bool going_on = true;
    while (going_on && !options_.is_to_end() && !is_done()) {
      take_news();
      draw_if_changed();
      going_on = answer_keys();
    }
  }

 private:
  bool is_done() const {
    const auto& devices = model_.devices();
    return options_.polls > 0 && std::all_of(devices.begin(), devices.end(), [this](const auto& device) {
             return device.polls >= options_.polls;
           });
  }

  void take_news() {
    for (auto& news : source_.take()) {
      tell(model_, news);
    }
  }

  // With nothing new the screen still is drawn once a second, for the ages.
  void draw_if_changed() {
    const auto now = options_.clock();
    if (!key_pressed_ && drawn_version_ == model_.version() && now - drawn_ < std::chrono::seconds(1)) {
      return;
    }
    browser_.update(now);
    auto visible = browser_.visible();
    if (visible != visible_) {
      source_.set_visible(visible);
      visible_ = std::move(visible);
    }
    display_.show(draw(model_, browser_, now, display_.charset()));
    key_pressed_ = false;
    drawn_version_ = model_.version();
    drawn_ = now;
  }

  // All keys that have come, so that a key held down does not lag behind the screen.
  bool answer_keys() {
    for (auto timeout = kTick;; timeout = std::chrono::milliseconds(0)) {
      const auto pressed = display_.read_key(timeout);
      if (pressed == key::kNone) {
        return true;
      }
      key_pressed_ = true;
      if (pressed == key::kResize) {
        browser_.resize(display_.size());
      } else if (!press(pressed)) {
        return false;
      }
    }
  }

  bool press(Key pressed) {
    const auto interval = browser_.interval();
    const bool paused = browser_.paused();
    const bool going_on = browser_.press(pressed);
    if (interval != browser_.interval()) {
      source_.set_interval(browser_.interval());
    }
    if (paused != browser_.paused()) {
      source_.set_paused(browser_.paused());
    }
    // Where the table stands depends on the listing, which the next key may need.
    browser_.update(options_.clock());
    return going_on;
  }

  Model& model_;
  Source& source_;
  Display& display_;
  const WatcherOptions& options_;
  Browser browser_;
  std::vector<std::size_t> visible_;
  bool key_pressed_ = true;
  std::uint64_t drawn_version_ = 0;
  TimePoint drawn_{};
};

}  // namespace

void run_watcher(Model& model, Source& source, Display& display, const WatcherOptions& options) {
  Watcher(model, source, display, options).run();
}

}  // namespace ostravel::host::watch
