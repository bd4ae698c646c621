// SPDX-License-Identifier: MIT
// The screen of a terminal as an SVG picture: monospace text in a light frame. The same screen gives the same
// picture, byte for byte; fonts of the one who looks at it do not change where anything stands.
#pragma once

#include <string>

#include "host/watch/picture/terminal.h"

namespace ostravel::host::picture {

// The title stands in the frame and is what a screen reader says.
std::string svg_of(const Terminal& terminal, const std::string& title);

}  // namespace ostravel::host::picture
