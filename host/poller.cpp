// SPDX-License-Identifier: MIT
#include "host/poller.h"

#include <algorithm>

#include "host/reference/statuscatalogue.h"

namespace ostravel::host {
namespace {

constexpr std::chrono::milliseconds kFirstPause{100};
constexpr std::chrono::milliseconds kLongestPause{5000};
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
  return input_status_name(error).data();  // a literal, so it ends in a NUL
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
  keep_texts_off_first_place();
}

// The texts of an array stay together where they can, so that they come from one snapshot.
void Poller::add_to_batches(std::size_t selection) {
  const auto accesses = read_accesses(selections_[selection], char_paired_);
  records_[selection].resize(accesses.size());
  const auto& tag = selections_[selection].tag;
  const bool can_be_wide = tag.type->is_text() && tag.count == kWideDeclaredLength;
  const std::size_t together = std::min(accesses.size(), kBatchLimit - (stamp_ ? 1 : 0));
  for (std::size_t i = 0; i < accesses.size(); ++i) {
    if (can_be_wide) {
      add_alone(accesses[i], {selection, i});
    } else {
      auto& batch = batch_with_room(i == 0 ? together : 1);
      batch.accesses.push_back(accesses[i]);
      batch.parts.emplace_back(Part{selection, i});
    }
  }
}

Poller::Batch& Poller::batch_with_room(std::size_t places) {
  if (open_batch_ && batches_[*open_batch_].accesses.size() + places <= kBatchLimit) {
    return batches_[*open_batch_];
  }
  open_batch_ = batches_.size();
  auto& batch = batches_.emplace_back();
  if (stamp_) {
    batch.accesses = read_accesses(*stamp_, char_paired_);
    batch.parts.emplace_back();
  }
  return batch;
}

void Poller::add_alone(const Access& access, Part part) {
  Batch batch{{access}, {part}};
  if (stamp_) {
    const auto stamp = read_accesses(*stamp_, char_paired_);
    batch.accesses.push_back(stamp.front());
    batch.parts.emplace_back();
  }
  batches_.push_back(std::move(batch));
}

void Poller::keep_texts_off_first_place() {
  std::vector<Batch> kept;
  for (auto& batch : batches_) {
    const auto is_text = [](const Access& access) { return access.type == DT_STRING; };
    const auto other = std::find_if_not(batch.accesses.begin(), batch.accesses.end(), is_text);
    const bool alone = batch.accesses.size() == 1 || batch.parts.back() == std::nullopt;
    if (!is_text(batch.accesses.front()) || alone) {
      kept.push_back(std::move(batch));
    } else if (other != batch.accesses.end()) {
      const auto place = other - batch.accesses.begin();
      std::swap(batch.accesses.front(), *other);
      std::swap(batch.parts.front(), batch.parts[static_cast<std::size_t>(place)]);
      kept.push_back(std::move(batch));
    } else {
      for (std::size_t i = 0; i < batch.accesses.size(); ++i) {
        kept.push_back({{batch.accesses[i]}, {batch.parts[i]}});
      }
    }
  }
  batches_ = std::move(kept);
}

LinkState Poller::poll() {
  for (; next_batch_ < batches_.size(); ++next_batch_) {
    const auto& batch = batches_[next_batch_];
    const auto answer = session_.read(batch.accesses);
    if (answer.outcome != Outcome::Served) {
      return link_ = not_served(answer);
    }
    take(batch, answer);
    link_ = LinkState::Online;
    if (after_batch_) {
      after_batch_(next_batch_ + 1);
    }
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
  nlohmann::json stamp;
  std::vector<std::size_t> complete;
  for (std::size_t i = 0; i < batch.parts.size(); ++i) {
    const auto& record = answer.records[i];
    if (!batch.parts[i]) {
      stamp = record.error == 0 ? read_value(*stamp_, char_paired_, std::vector<Words>{record.words}) : stamp;
      continue;
    }
    const auto [selection, number] = *batch.parts[i];
    records_[selection][number] = record;
    if (number + 1 == records_[selection].size()) {
      complete.push_back(selection);
    }
  }
  for (const auto selection : complete) {
    const auto here = std::count_if(batch.parts.begin(), batch.parts.end(), [selection](const auto& part) {
      return part && part->selection == selection;
    });
    deliver(selection, stamp, static_cast<std::size_t>(here) == records_[selection].size());
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
