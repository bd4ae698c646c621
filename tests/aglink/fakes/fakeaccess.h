// SPDX-License-Identifier: MIT
#ifndef OSTRAVEL_TESTS_AGLINK_FAKES_FAKEACCESS_H_
#define OSTRAVEL_TESTS_AGLINK_FAKES_FAKEACCESS_H_

#include <string>
#include <vector>

// The calls that the loaded fake library saw since this was made, as logLine writes them. Make it while the
// fake is mapped and again after it was unmapped.
class FakeLog {
 public:
  FakeLog();
  ~FakeLog();
  FakeLog(const FakeLog&) = delete;
  FakeLog& operator=(const FakeLog&) = delete;

  const std::vector<std::string>& lines() const;

 private:
  void* library_;  // keeps the fake mapped
};

#endif  // OSTRAVEL_TESTS_AGLINK_FAKES_FAKEACCESS_H_
