// SPDX-License-Identifier: MIT
#include "simulator/plc/plc.h"

#include <algorithm>
#include <span>
#include <utility>

#include "simulator/plc/protection.h"
#include "simulator/program/encoding.h"
#include "simulator/program/fingerprint.h"

namespace ostravel::plc {
namespace {

using wire::ItemResult;
using wire::JobResult;

constexpr std::uint32_t kCycleSize = 4;  // UDInt
constexpr std::uint64_t kMaxJobBytes = std::uint64_t{128} << 20;

// Adds the built-in block behind the program's memory; returns where the cycle's number lies.
std::optional<std::uint64_t> add_simulation_block(Program& program) {
  if (resolve(program.blocks, "Simulation")) return std::nullopt;
  Symbol cycle;
  cycle.name = "Cycle";
  cycle.type = DataType::UDInt;
  cycle.element_size = kCycleSize;
  cycle.writable = false;
  Symbol block;
  block.name = "Simulation";
  block.offset = static_cast<std::uint32_t>(program.initial.size());
  block.element_size = kCycleSize;
  block.writable = false;
  block.members.push_back(std::move(cycle));
  program.blocks.push_back(std::move(block));
  const std::uint64_t address = program.initial.size();
  program.initial.resize(program.initial.size() + kCycleSize);
  program.fingerprint = fingerprint(program.blocks);
  return address;
}

JobResult check_password(const ClientRights& rights) {
  return rights.password.empty() || rights.password_given ? JobResult::Ok : JobResult::PasswordMissing;
}

}  // namespace

Plc::Plc(Program program, const PlcOptions& options) : options_(options) {
  load(std::move(program));
  for (const auto& rule : options_.generator_rules) generators_.attach(program_.blocks, rule);
  run_program();
}

void Plc::load(Program program) {
  program_ = std::move(program);
  cycle_address_ = add_simulation_block(program_);
  memory_ = program_.initial;
  generators_ = {};
  left_out_ = generators_.attach_live(program_.blocks);
}

void Plc::run_program() {
  generators_.step(memory_, cycle_);
  if (cycle_address_) store_number(std::span(memory_).subspan(*cycle_address_, kCycleSize), cycle_);
}

void Plc::step() {
  history_.keep(cycle_, memory_);
  ++cycle_;
  run_program();
}

void Plc::restart() {
  history_.keep(cycle_, memory_);
  ++cycle_;
  memory_ = program_.initial;
  run_program();
}

std::vector<std::string> Plc::download(Program program) {
  load(std::move(program));
  std::vector<std::string> forgotten;
  std::erase_if(options_.generator_rules, [&](const std::string& rule) {
    try {
      generators_.attach(program_.blocks, rule);
      return false;
    } catch (const GeneratorError&) {
      forgotten.push_back(rule);
      return true;
    }
  });
  history_ = History();
  failing_.clear();
  ++cycle_;
  run_program();
  return forgotten;
}

void Plc::generate(std::string_view path, std::string_view rule) {
  const auto start = std::string(path) + "=";
  generators_.attach(program_.blocks, start + std::string(rule));
  auto& rules = options_.generator_rules;  // for the program that comes after this one
  std::erase_if(rules, [&](const std::string& other) { return other.starts_with(start); });
  rules.push_back(start + std::string(rule));
}

std::optional<std::vector<std::uint8_t>> Plc::image(const Target& target, std::uint64_t cycle) const {
  if (cycle != cycle_) return history_.image(cycle, target.address, byte_count(target));
  const auto now = bytes_of(target, Bytes(memory_));
  return std::vector<std::uint8_t>(now.begin(), now.end());
}

void Plc::fail(const Target& target) {
  failing_.push_back({target.address, byte_count(target)});
}

void Plc::heal(const Target& target) {
  std::erase_if(failing_,
                [&](const Range& range) { return range.touches(target.address, byte_count(target)); });
}

bool Plc::is_built_in(const Target& target) const {
  return cycle_address_ && target.address >= *cycle_address_;
}

ItemResult Plc::check(std::uint64_t address, std::uint64_t length, bool write) const {
  if (address > memory_.size() || length > memory_.size() - address) return ItemResult::AddressInvalid;
  const bool failing = std::any_of(failing_.begin(), failing_.end(),
                                   [&](const Range& range) { return range.touches(address, length); });
  if (failing) return ItemResult::Faulty;
  const bool permitted = permits(program_.blocks, address, length, write ? Reach::Write : Reach::Read);
  return permitted ? ItemResult::Ok : ItemResult::NotPermitted;
}

JobResult Plc::check_job(std::uint64_t fingerprint, bool any_items, const ClientRights& rights) const {
  if (const auto result = check_password(rights); result != JobResult::Ok) return result;
  return any_items && fingerprint != program_.fingerprint ? JobResult::ProgramChanged : JobResult::Ok;
}

wire::Answer Plc::serve(const wire::Request& request, ClientRights& rights) {
  wire::Answer answer;
  answer.sequence = request.sequence;
  answer.result = std::visit([&](const auto& body) { return run(body, rights, answer.body); }, request.body);
  return answer;
}

JobResult Plc::run(const wire::HelloRequest&, ClientRights& rights, wire::AnswerBody& body) {
  ++jobs_.others;
  body = wire::HelloAnswer{wire::kProtocolVersion, options_.order_number, program_.fingerprint,
                           !rights.password.empty()};
  return JobResult::Ok;
}

JobResult Plc::run(const wire::PasswordRequest& request, ClientRights& rights, wire::AnswerBody& body) {
  ++jobs_.others;
  body = wire::PasswordAnswer{};
  rights.password_given = request.password == rights.password;
  return rights.password_given || rights.password.empty() ? JobResult::Ok : JobResult::PasswordWrong;
}

JobResult Plc::run(const wire::SymbolsRequest&, ClientRights& rights, wire::AnswerBody& body) {
  ++jobs_.others;
  auto& answer = body.emplace<wire::SymbolsAnswer>();
  const auto result = check_password(rights);
  if (result == JobResult::Ok) answer = {program_.fingerprint, program_.blocks};
  return result;
}

JobResult Plc::run(const wire::ReadRequest& request, ClientRights& rights, wire::AnswerBody& body) {
  ++jobs_.reads;
  auto& answer = body.emplace<wire::ReadAnswer>();
  answer.cycle = static_cast<std::uint32_t>(cycle_);
  const auto result = check_job(request.fingerprint, !request.items.empty(), rights);
  if (result != JobResult::Ok) return result;
  std::uint64_t total = 0;
  for (const auto& item : request.items) total += item.length;
  if (total > kMaxJobBytes) return JobResult::TooLarge;
  for (const auto& item : request.items) {
    auto& out = answer.items.emplace_back();
    out.result = check(item.address, item.length, false);
    if (out.result != ItemResult::Ok) continue;
    const auto bytes = std::span(memory_).subspan(item.address, item.length);
    out.data.assign(bytes.begin(), bytes.end());
  }
  return result;
}

JobResult Plc::run(const wire::WriteRequest& request, ClientRights& rights, wire::AnswerBody& body) {
  ++jobs_.writes;
  auto& answer = body.emplace<wire::WriteAnswer>();
  const auto result = check_job(request.fingerprint, !request.items.empty(), rights);
  if (result != JobResult::Ok) return result;
  for (const auto& item : request.items) {
    answer.items.push_back(check(item.address, item.data.size(), true));
    if (answer.items.back() != ItemResult::Ok) continue;
    std::copy(item.data.begin(), item.data.end(),
              memory_.begin() + static_cast<std::ptrdiff_t>(item.address));
  }
  return result;
}

}  // namespace ostravel::plc
