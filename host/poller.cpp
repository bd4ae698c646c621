// SPDX-License-Identifier: MIT
#include "host/poller.h"

#include <algorithm>

namespace ostravel::host {
namespace {

constexpr std::chrono::milliseconds kFirstPause{100};
constexpr std::chrono::milliseconds kLongestPause{3000};
constexpr std::chrono::milliseconds kLoadingPause{50};

}  // namespace

const char* to_text(LinkState state) {
  switch (state) {
    case LinkState::Connecting:
      return "connecting";
    case LinkState::Loading:
      return "loading symbols";
    case LinkState::Online:
      return "online";
    case LinkState::Lost:
      return "connection lost";
    case LinkState::Failed:
      return "failed, initialising again";
  }
  return "";
}

const char* to_text_of_error(BYTE error) {
  switch (error) {
    case 0:
      return "ok";
    case 2:
      return "no data";
    case 13:
      return "not ready";
    default:
      return "unknown";
  }
}

Poller::Poller(Session& session, std::vector<Selection> selections, bool char_paired,
               std::optional<Selection> stamp)
    : session_(session),
      selections_(std::move(selections)),
      char_paired_(char_paired),
      stamp_(std::move(stamp)),
      states_(selections_.size()),
      records_(selections_.size()) {
  for (std::size_t i = 0; i < selections_.size(); ++i) {
    add_to_batches(i);
  }
}

// The texts of an array stay together where they can, so that they come from one snapshot.
void Poller::add_to_batches(std::size_t selection) {
  const auto accesses = read_accesses(selections_[selection], char_paired_);
  records_[selection].resize(accesses.size());
  const std::size_t stamps = stamp_ ? 1 : 0;
  const std::size_t room = kBatchLimit - stamps;
  const bool fits =
      !batches_.empty() && batches_.back().parts.size() + std::min(accesses.size(), room) <= room;
  for (std::size_t i = 0; i < accesses.size(); ++i) {
    const bool full = batches_.empty() || batches_.back().parts.size() == room;
    if (full || (i == 0 && !fits)) {
      batches_.push_back({stamp_ ? read_accesses(*stamp_, char_paired_) : std::vector<Access>{}, {}});
    }
    batches_.back().accesses.push_back(accesses[i]);
    batches_.back().parts.push_back({selection, i});
  }
}

LinkState Poller::poll() {
  for (; next_batch_ < batches_.size(); ++next_batch_) {
    const auto& batch = batches_[next_batch_];
    const auto answer = session_.read(batch.accesses);
    if (answer.outcome != Outcome::Served) {
      return link_ = not_served(answer);
    }
    take(batch, answer);
  }
  next_batch_ = 0;
  pause_ = std::chrono::milliseconds(0);
  return link_ = LinkState::Online;
}

LinkState Poller::not_served(const BatchAnswer& answer) {
  const BYTE error = answer.records.empty() ? BYTE{2} : answer.records.front().error;
  for (auto& state : states_) {
    state.error = error;
    state.status = answer.records.empty() ? BYTE{0} : answer.records.front().status;
  }
  if (answer.outcome == Outcome::Failed) {
    session_.reinitialise();
    ++reinitialisations_;
    next_batch_ = 0;
    pause_ = std::clamp(pause_ * 2, kFirstPause, kLongestPause);
    return LinkState::Failed;
  }
  if (answer.outcome == Outcome::NotReady) {
    return LinkState::Connecting;
  }
  pause_ = std::max(pause_, kLoadingPause);
  return link_ == LinkState::Online || link_ == LinkState::Lost ? LinkState::Lost : LinkState::Loading;
}

void Poller::take(const Batch& batch, const BatchAnswer& answer) {
  const std::size_t stamps = batch.accesses.size() - batch.parts.size();
  nlohmann::json stamp;
  if (stamps == 1 && answer.records.front().error == 0) {
    stamp = read_value(*stamp_, char_paired_, std::vector<Words>{answer.records.front().words});
  }
  for (std::size_t i = 0; i < batch.parts.size(); ++i) {
    const auto& part = batch.parts[i];
    records_[part.selection][part.record] = answer.records[i + stamps];
    const auto size = records_[part.selection].size();
    if (part.record + 1 == size) {
      deliver(part.selection, stamp, i + 1 >= size);
    }
  }
}

void Poller::deliver(std::size_t selection, const nlohmann::json& stamp, bool one_batch) {
  auto& state = states_[selection];
  std::vector<Words> words;
  state.error = 0;
  for (const auto& record : records_[selection]) {
    state.error = std::max(state.error, record.error);
    state.status = record.status;
    words.push_back(record.words);
  }
  if (state.error == 0) {
    state.value = read_value(selections_[selection], char_paired_, words);
    state.stamp = one_batch ? stamp : nlohmann::json();
    ++state.deliveries;
  }
}

}  // namespace ostravel::host
