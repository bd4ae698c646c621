// SPDX-License-Identifier: MIT
// The simulated PLC without its connections: memory, cyclic program, jobs, faults. Not thread safe; whoever
// owns it runs cycles and jobs one after the other, so that a job sees the memory between two cycles.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/plc/history.h"
#include "simulator/program/generators.h"
#include "simulator/program/program.h"
#include "simulator/wire/messages.h"

namespace ostravel::plc {

struct PlcOptions {
  std::string password;                              // empty: none needed
  std::string order_number = "OST 1500-0SIM0-0AA0";  // at most 20 characters
  std::vector<std::string> generator_rules;          // in the form that Generators::attach takes
};

// What one client needs and has reached so far. Protection that is set or cleared later concerns later
// clients.
struct ClientRights {
  std::string password;  // that this client has to give; empty: none
  bool password_given = false;
};

struct JobCounts {
  std::uint64_t reads = 0;  // jobs, not items
  std::uint64_t writes = 0;
  std::uint64_t others = 0;  // greetings, passwords, uploads
};

class Plc {
 public:
  // Every program gets a read-only block Simulation with the member Cycle : UDInt, the number of the cycle,
  // unless it has a block of that name. Throws GeneratorError.
  explicit Plc(Program program, const PlcOptions& options = {});
  Plc(const Plc&) = delete;
  Plc& operator=(const Plc&) = delete;

  const Program& program() const { return program_; }
  std::uint64_t cycle() const { return cycle_; }
  const JobCounts& jobs() const { return jobs_; }
  std::uint64_t generators_left_out() const { return left_out_; }

  // Runs the program once. Cycle 0 has run when the object exists.
  void step();

  // A warm restart: the memory gets its start values back, generators and faults stay. The count of cycles
  // goes on, so that a value of before the restart can be told from one of after it by its cycle.
  void restart();

  // Runs another program from its start values on, in a cycle of its own. What belongs to places of the old
  // memory goes: its past cycles and the variables that fail. Returns the generator rules that do not fit the
  // new program and are forgotten.
  std::vector<std::string> download(Program program);

  // From the next cycle on a generator drives the variable; rule as in Generators::attach behind the '='.
  // Throws GeneratorError.
  void generate(std::string_view path, std::string_view rule);

  // Clients that come from now on have to give it; empty: none.
  void set_password(std::string password) { options_.password = std::move(password); }

  // The rights with which a new client starts.
  ClientRights admit() const { return {options_.password, false}; }

  // One job of a client.
  wire::Answer serve(const wire::Request& request, ClientRights& rights);

  // The whole memory as it is now.
  const std::vector<std::uint8_t>& memory() const { return memory_; }
  std::vector<std::uint8_t>& memory() { return memory_; }

  // What the target held at the end of a past cycle (writes between cycles included), or holds in the present
  // one.
  std::optional<std::vector<std::uint8_t>> image(const Target& target, std::uint64_t cycle) const;

  // From now on items that touch the target are answered with an error; heal takes that back for targets that
  // touch it.
  void fail(const Target& target);
  void heal(const Target& target);
  void heal_all() { failing_.clear(); }

  // True for the built-in block, which belongs to the simulation itself.
  bool is_built_in(const Target& target) const;

 private:
  struct Range {
    std::uint64_t address;
    std::uint64_t length;
    bool touches(std::uint64_t other, std::uint64_t other_length) const {
      return address < other + other_length && other < address + length;
    }
  };
  void load(Program program);
  void run_program();
  wire::ItemResult check(std::uint64_t address, std::uint64_t length, bool write) const;
  wire::JobResult check_job(std::uint64_t fingerprint, bool any_items, const ClientRights& rights) const;

  wire::JobResult run(const wire::HelloRequest& request, ClientRights& rights, wire::AnswerBody& body);
  wire::JobResult run(const wire::PasswordRequest& request, ClientRights& rights, wire::AnswerBody& body);
  wire::JobResult run(const wire::SymbolsRequest& request, ClientRights& rights, wire::AnswerBody& body);
  wire::JobResult run(const wire::ReadRequest& request, ClientRights& rights, wire::AnswerBody& body);
  wire::JobResult run(const wire::WriteRequest& request, ClientRights& rights, wire::AnswerBody& body);

  Program program_;
  PlcOptions options_;
  std::vector<std::uint8_t> memory_;
  std::optional<std::uint64_t> cycle_address_;
  Generators generators_;
  std::uint64_t left_out_ = 0;
  std::uint64_t cycle_ = 0;
  History history_;
  std::vector<Range> failing_;
  JobCounts jobs_;
};

}  // namespace ostravel::plc
