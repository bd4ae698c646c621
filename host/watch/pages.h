// SPDX-License-Identifier: MIT
// The pages that take the table's place: help, and one tag in full.
#pragma once

#include <string>
#include <vector>

#include "host/watch/cells.h"
#include "host/watch/model.h"
#include "host/watch/view.h"

namespace ostravel::host::watch {

// Not yet cut to the screen.
std::vector<StyledLine> help_page();
std::vector<StyledLine> details_page(const Model& model, std::size_t row, TimePoint now, std::size_t columns,
                                     Charset charset);

}  // namespace ostravel::host::watch
