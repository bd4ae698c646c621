// SPDX-License-Identifier: MIT
// The stand-in library against a PLC that answers anything. The library's connections do not leave the
// program: what comes over them is the input's to say.
#pragma once

#include "fuzzing/support/input.h"
#include "simulator/program/program.h"

namespace fuzz {

// A small program with variables of several kinds.
const ostravel::plc::Program& plant();

// One run of calls to the library, each of which may ask the PLC.
void ask_hostile_plc(Input& input);

// Uses a tree that the library has loaded: looks up paths, asks for sizes, gets and sets elements. Frees the
// tree's handle.
void use_tree(Input& input, std::int64_t root);

}  // namespace fuzz
