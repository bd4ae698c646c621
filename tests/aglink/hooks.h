// SPDX-License-Identifier: MIT
// Watches what the binding asks of the system. The tests are linked with --wrap for dlopen, dlsym, dlclose
// and puts, so that these pass through here before they do what they always do. dlopen also overwrites every
// register in which a caller's argument could survive by chance.
#ifndef OSTRAVEL_TESTS_AGLINK_HOOKS_H_
#define OSTRAVEL_TESTS_AGLINK_HOOKS_H_

#include <functional>
#include <string>
#include <vector>

// While one lives, records "dlopen NAME", "dlsym NAME", "dlclose" and "puts LINE" in the order of the calls,
// of all threads. Only one may live at a time.
class Recording {
 public:
  Recording();
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  std::vector<std::string> events() const;                           // all of them
  std::vector<std::string> eventsOf(const std::string& kind) const;  // those of one kind, without the kind
};

// Called at every dlopen until replaced by nullptr.
void onOpen(std::function<void()> callback);

#endif  // OSTRAVEL_TESTS_AGLINK_HOOKS_H_
