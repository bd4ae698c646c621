// SPDX-License-Identifier: MIT
// A symbol tree in a file.
//   0  magic "AGLSYMB" 1A      8  version (4)     12 fingerprint of the tree (8)
//   20 length of the tree (8)  28 checksum (8)    36 the tree, in the form of wire/symboltree.h
// Numbers are big-endian; the checksum is FNV-1a over everything but itself.
#pragma once

#include <string>

#include "simulator/standin/handles.h"

namespace ostravel::standin {

// Replaces the file as a whole or, on failure, not at all. Throws Failure(FileUnwritable).
void save_symbols(const Tree& tree, const std::string& path);

// Throws Failure with one of the File errors.
Tree load_symbols(const std::string& path);

}  // namespace ostravel::standin
