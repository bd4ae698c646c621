// SPDX-License-Identifier: MIT
// Readers of the values that are more than one number: BufferReader's own, onto its bytes.
#pragma once

#include <cstddef>

#include "aglink/AGLink40.h"
#include "symbolic/valuebytes.h"

void read_string8(const SymbolicRW_t& rw, std::size_t elementIndex, ValueBytes& data);
void read_string16(const SymbolicRW_t& rw, std::size_t elementIndex, ValueBytes& data);
void read_date_and_time(const SymbolicRW_t& rw, std::size_t elementIndex, ValueBytes& data);
void read_dtl(const SymbolicRW_t& rw, std::size_t elementIndex, ValueBytes& data);
