// SPDX-License-Identifier: MIT
// Value bytes, in the layout that bufferreader.h describes, to access buffers of the library.
// Bytes of a wide value that lie past the end of the data count as zero; a value that starts there raises
// std::out_of_range, as an empty string or Bool does, and one zero byte alone for an 8-bit string.
#pragma once

#include <cstddef>
#include <vector>

#include "aglink/AGLink40.h"

class BufferWriter {
 public:
  // Writes data, trunk_size_for_byte bytes an element, to the elements from source_index on; a string takes
  // all of data. Nothing is written when the access carries a Result or SError, and of anything but a string
  // when trunk_size_for_byte is 0.
  static void WriteBufferValues(SymbolicRW_t& rws, const std::vector<unsigned char>& data,
                                unsigned short source_index, unsigned char trunk_size_for_byte);
  // Writes the value at byte writeIndex of data to one element. A value type that cannot be written aborts
  // the process.
  static void WriteBufferValue(SymbolicRW_t& rw, const size_t& elementIndex,
                               const std::vector<unsigned char>& data, size_t writeIndex);

  static void WriteUint8(SymbolicRW_t& rw, const size_t& elementIndex, const std::vector<unsigned char>& data,
                         size_t writeIndex);
  static void WriteUint16(SymbolicRW_t& rw, const size_t& elementIndex,
                          const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteUint32(SymbolicRW_t& rw, const size_t& elementIndex,
                          const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteUint64(SymbolicRW_t& rw, const size_t& elementIndex,
                          const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteInt8(SymbolicRW_t& rw, const size_t& elementIndex, const std::vector<unsigned char>& data,
                        size_t writeIndex);
  static void WriteInt16(SymbolicRW_t& rw, const size_t& elementIndex, const std::vector<unsigned char>& data,
                         size_t writeIndex);
  static void WriteInt32(SymbolicRW_t& rw, const size_t& elementIndex, const std::vector<unsigned char>& data,
                         size_t writeIndex);
  static void WriteInt64(SymbolicRW_t& rw, const size_t& elementIndex, const std::vector<unsigned char>& data,
                         size_t writeIndex);
  static void WriteFloat32(SymbolicRW_t& rw, const size_t& elementIndex,
                           const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteFloat64(SymbolicRW_t& rw, const size_t& elementIndex,
                           const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteChar8(SymbolicRW_t& rw, const size_t& elementIndex, const std::vector<unsigned char>& data,
                         size_t writeIndex);
  static void WriteChar16(SymbolicRW_t& rw, const size_t& elementIndex,
                          const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteString8(SymbolicRW_t& rw, const size_t& elementIndex,
                           const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteString16(SymbolicRW_t& rw, const size_t& elementIndex,
                            const std::vector<unsigned char>& data, size_t writeIndex);
  static void WriteSystemSpecific(SymbolicRW_t& rw, const size_t& elementIndex,
                                  const std::vector<unsigned char>& data, size_t writeIndex);
};
