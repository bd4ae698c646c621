// SPDX-License-Identifier: MIT
// Reads what record has written, in either form, as series of numbers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/plot/series.h"

namespace ostravel::host::plot {

// The tags named, in that order; without names all that hold nothing but numbers. true and false are 1 and 0;
// an empty cell is a gap, and so is "inf", "-inf" and "nan". A last row without a line end is left out, since
// a recording that is still being written may have half of it. Throws UserError with file, line and column.
std::vector<Series> read_recording(std::string_view text, const std::string& source,
                                   const std::vector<std::string>& names);

}  // namespace ostravel::host::plot
