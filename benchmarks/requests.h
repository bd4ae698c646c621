// SPDX-License-Identifier: MIT
// Accesses as requests of the runtime, and the words that they are answered with.
#pragma once

#include <string>
#include <vector>

#include "benchmarks/work.h"
#include "tests/driver/requestbuilder.h"

namespace bench {

// Words that the runtime gets for an access.
int words_of(const Access& access);

// The i-th is for row i.
std::vector<RequestBuilder> read_requests(const std::vector<Access>& accesses);

// The words that a write of the access carries: none of them zero, for the sake of texts.
std::vector<WORD> write_words(const Access& access);
RequestBuilder write_request(const Access& access, const std::vector<WORD>& words, int row = 0);

// One line on the first record that is no good answer or whose words differ from those expected.
std::string difference(const std::vector<Access>& accesses, const std::vector<std::string>& names,
                       const std::vector<INPUT_DATA>& records, const std::vector<INPUT_DATA>& expected);

}  // namespace bench
