// SPDX-License-Identifier: MIT
#include "tests/plant/comparer.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "simulator/program/data_type.h"
#include "simulator/program/encoding.h"
#include "simulator/program/source.h"

namespace ostravel::plant {
namespace {

using nlohmann::json;

constexpr std::string_view kBitMark = ".%X";

plc::Program load(const std::string& source) {
  const std::vector<std::filesystem::path> files{source};
  return plc::load_program(files);
}

std::string path_of(const host::Selection& selection) {
  return selection.bit ? selection.text.substr(0, selection.text.rfind(kBitMark)) : selection.text;
}

std::uint64_t number_from(const host::Words& words) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(words.size(), 4); ++i) {
    number |= static_cast<std::uint64_t>(words[i]) << (16 * i);
  }
  return number;
}

bool same_bits(std::uint64_t a, std::uint64_t b, unsigned bits) {
  return bits >= 64 ? a == b : ((a ^ b) & ((std::uint64_t{1} << bits) - 1)) == 0;
}

// How many elements a delivered value has room for.
bool longer_than(const json& held, const json& delivered) {
  return held.is_array() && delivered.is_array() && held.size() > delivered.size();
}

}  // namespace

Comparer::Known::Known(const std::string& source, const std::vector<Shown>& shown)
    : plc(load(source)), view({source}) {
  for (const auto& one : shown) targets.push_back(plc::resolve(plc.program().blocks, path_of(one.selection)));
}

Comparer::Comparer(const Record& record, std::vector<Shown> shown, const std::vector<std::string>& sources)
    : record_(record), shown_(std::move(shown)) {
  for (const auto& source : sources) {
    auto known = std::make_unique<Known>(source, shown_);
    if (told_types_.empty()) {
      for (const auto& target : known->targets) told_types_.push_back(target.value().symbol->type);
    }
    programs_.emplace(known->plc.program().fingerprint, std::move(known));
  }
}

bool Comparer::is_value(const Known& known, std::size_t position, const json& delivered,
                        plc::Bytes memory) const {
  auto held = plc::to_json(*known.targets[position], memory);
  // Of an array that has grown the runtime asks for as many elements as it was told of.
  if (longer_than(held, delivered))
    held.erase(held.begin() + static_cast<json::difference_type>(delivered.size()), held.end());
  return held == known.view.of(shown_[position].selection, delivered);
}

Verdict Comparer::judge_at(std::size_t position, const host::Words& words, std::uint64_t moment) const {
  const auto image = record_.image(moment);
  const auto found = programs_.find(image.program);
  if (found == programs_.end()) throw std::logic_error("the PLC runs a program that nobody knows");
  const auto& known = *found->second;
  const auto& target = known.targets[position];
  if (!target) return Verdict::Wrong;
  const auto& selection = shown_[position].selection;
  const bool as_told = target->symbol->type == told_types_[position];
  if (!selection.bit && as_told) {
    const auto delivered = host::read_value(selection, false, std::span(&words, 1));
    return is_value(known, position, delivered, image.memory) ? Verdict::Right : Verdict::Wrong;
  }
  const auto held = plc::load_number(plc::bytes_of(*target, image.memory));
  if (selection.bit) {
    const bool delivered = !words.empty() && words.front() != 0;
    return delivered == ((held >> *selection.bit & 1U) != 0) ? (as_told ? Verdict::Right : Verdict::RightBits)
                                                             : Verdict::Wrong;
  }
  const auto bits = static_cast<unsigned>(selection.tag.type->bits);
  return same_bits(held, number_from(words), bits) ? Verdict::RightBits : Verdict::Wrong;
}

Verdict Comparer::judge(std::size_t position, const host::Words& words, std::uint64_t first,
                        std::uint64_t last) const {
  for (auto moment = first; moment <= last; ++moment) {
    const auto verdict = judge_at(position, words, moment);
    if (!record_.still_holds(moment)) throw RecordTooShort("the record ran on while it was looked at");
    if (verdict != Verdict::Wrong) return verdict;
  }
  return Verdict::Wrong;
}

std::string Comparer::explain(std::size_t position, const host::Words& words, std::uint64_t first,
                              std::uint64_t last) const {
  auto text = fmt::format("{}: words [{:x}] are not what the PLC held in the moments {} to {}",
                          shown_[position].selection.text, fmt::join(words, " "), first, last);
  constexpr std::uint64_t kBack = 200;
  for (auto moment = last; moment > 0 && moment + kBack > first; --moment) {
    if (judge_at(position, words, moment) != Verdict::Wrong)
      return text + fmt::format("; it held them at {}", moment);
  }
  for (std::size_t other = 0; other < shown_.size(); ++other) {
    if (shown_[other].access.type == shown_[position].access.type &&
        shown_[other].access.words == words.size() && judge(other, words, first, last) != Verdict::Wrong) {
      return text + "; they are those of " + shown_[other].selection.text;
    }
  }
  return text + "; nor did another variable of the type";
}

}  // namespace ostravel::plant
