// SPDX-License-Identifier: MIT
// When an entry point may end other than by returning: asked after it has, of the device as it is then and of
// what the library said meanwhile.
#pragma once

#include "driver/driver.h"
#include "fuzzing/support/outcome.h"

namespace fuzz {

// The name has an index placeholder without a "[" in front of it.
bool name_raises(std::string_view name);

// The name of the request's row.
std::string_view row_name(const GData& device, const GUI_REQUEST& request);

void expect_after_output(const GData& device, const GUI_REQUEST* requests, int count, Ending ending);
void expect_after_input(const GData& device, Ending ending);
// Of everything that only asks the library, such as a connection thread or a single read. path: what was
// read.
void expect_after_read(std::string_view path, Ending ending);

}  // namespace fuzz
