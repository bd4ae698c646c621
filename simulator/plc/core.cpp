// SPDX-License-Identifier: MIT
#include "simulator/plc/core.h"

#include <algorithm>

#include "simulator/plc/session.h"

namespace ostravel::plc {

void Core::add(const std::shared_ptr<Session>& session) {
  sessions.push_back(session);
  ++connections.accepted;
  connections.open = sessions.size();
  connections.most_at_once = std::max(connections.most_at_once, connections.open);
}

void Core::remove(const std::shared_ptr<Session>& session) {
  std::erase(sessions, session);
  connections.open = sessions.size();
}

std::size_t Core::close_all() {
  const auto all = sessions;
  for (const auto& session : all) session->close();
  return all.size();
}

void Core::add_waiting(std::size_t bytes) {
  waiting += bytes;
  if (waiting <= limits.waiting_all || sessions.empty()) return;
  const auto greediest = std::max_element(sessions.begin(), sessions.end(), [](const auto& a, const auto& b) {
    return a->waiting() < b->waiting();
  });
  const auto session = *greediest;
  session->close();
}

}  // namespace ostravel::plc
