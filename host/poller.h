// SPDX-License-Identifier: MIT
// Polls the tags of one device as a runtime does: in batches, repeating a batch that is not answered yet, and
// bringing the device back after a failure with pauses that grow.
//
// A place in a batch at which the driver once found a wide text delivers every later text as if it were wide;
// only a text at the head of the driver's queue is looked at afresh. Texts that can be wide are therefore
// read at the head of batches of their own, and no other text is ever at that place.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "host/access.h"
#include "host/session.h"

namespace ostravel::host {

enum class LinkState : std::uint8_t {
  Connecting,  // 13: the driver has not connected yet
  Loading,     // 2 for all: symbols are being loaded
  Online,      // batches are served
  Lost,        // 2 for all, after the device had been served
  Failed,      // the failed-loader answer; the device is being brought up again
};
const char* to_text(LinkState state);

// NOLINTNEXTLINE(bugprone-exception-escape): moving a JSON value checks itself and could throw in theory
struct TagState {
  nlohmann::json value;    // the last one delivered; null before the first
  BYTE error = kNotAsked;  // of the last answer
  BYTE status = 0;
  nlohmann::json stamp;          // value of the stamp tag in the same snapshot; null when there is none
  std::uint64_t deliveries = 0;  // values delivered so far

  static constexpr BYTE kNotAsked = 13;
};

// 0 ok, 2 no data, 13 not ready, in words.
const char* to_text_of_error(BYTE error);

class Poller {
 public:
  // A stamp is read with every batch, from the same snapshot of the PLC's memory. The session must outlive
  // the poller.
  Poller(Session& session, std::vector<Selection> selections, bool char_paired,
         std::optional<Selection> stamp = std::nullopt);

  // Goes through all batches once, or up to the first that is not served. Returns how the device stands.
  LinkState poll();

  // How long to wait before the next poll: 0 while the device serves, growing from failure to failure.
  std::chrono::milliseconds pause() const { return pause_; }

  LinkState link() const { return link_; }
  std::size_t size() const { return selections_.size(); }
  const Selection& selection(std::size_t i) const { return selections_[i]; }
  const TagState& state(std::size_t i) const { return states_[i]; }
  std::size_t batches() const { return batches_.size(); }
  // Is called after each batch that was served with how many of this round are done.
  void after_batch(std::function<void(std::size_t)> function) { after_batch_ = std::move(function); }
  std::uint64_t reinitialisations() const { return reinitialisations_; }

 private:
  struct Part {
    std::size_t selection;
    std::size_t record;  // which of the selection's records
  };
  struct Batch {
    std::vector<Access> accesses;
    std::vector<std::optional<Part>> parts;  // of each access; none: the stamp
  };
  void add_to_batches(std::size_t selection);
  Batch& batch_with_room(std::size_t places);
  void add_alone(const Access& access, Part part);
  void keep_texts_off_first_place();
  void take(const Batch& batch, const BatchAnswer& answer);
  LinkState not_served(const BatchAnswer& answer);
  void deliver(std::size_t selection, const nlohmann::json& stamp, bool one_batch);

  Session& session_;
  std::vector<Selection> selections_;
  bool char_paired_;
  std::optional<Selection> stamp_;
  std::vector<Batch> batches_;
  std::optional<std::size_t> open_batch_;  // the one that takes more; only while batches are made
  std::vector<TagState> states_;
  std::vector<std::vector<Record>> records_;  // of each selection, collected over the batches
  std::size_t next_batch_ = 0;
  std::function<void(std::size_t)> after_batch_;
  LinkState link_ = LinkState::Connecting;
  std::chrono::milliseconds pause_{0};
  std::uint64_t reinitialisations_ = 0;
};

}  // namespace ostravel::host
