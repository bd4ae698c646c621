// SPDX-License-Identifier: MIT
// Access buffers of the library to value bytes. Value bytes are little-endian and unpadded:
//
//   integer, real, Bool, Char   1, 2, 4 or 8 bytes
//   WChar                       4 zero bytes
//   counter                     u16
//   S5TIME                      u32 milliseconds
//   DATE_AND_TIME, 10 bytes     u16 year, u8 month, day, weekday, hour, minute, second, u16 milliseconds
//   DTL, 12 bytes               u16 year, u8 month, day, weekday, hour, minute, second, u32 nanoseconds
//   String                      declared length + 1 bytes
//   WString                     2 x (declared length + 1) bytes
//
// The readers append, but a string takes the whole vector: it is read one element a vector.
#pragma once

#include <cstddef>
#include <vector>

#include "aglink/AGLink40.h"
#include "symbolic/valuebytes.h"

class BufferReader {
 public:
  // Appends all elements of an access; nothing when its job failed (Result or SError not 0). A value that
  // cannot be fetched contributes no byte. A value or system type that has no layout aborts the process.
  static void GetBufferValues(const SymbolicRW_t& rw, std::vector<unsigned char>& data);
  static void GetBufferValues(const SymbolicRW_t& rw, ValueBytes& data);
  static void GetBufferValue(const SymbolicRW_t& rw, const size_t& elementIndex,
                             std::vector<unsigned char>& data);
  static void GetSystemSpecificBufferValue(const SymbolicRW_t& rw, const size_t& elementIndex,
                                           std::vector<unsigned char>& data);

  static void ReadUInt8(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);
  static void ReadUInt16(const SymbolicRW_t& rw, const size_t& elementIndex,
                         std::vector<unsigned char>& data);
  static void ReadUInt32(const SymbolicRW_t& rw, const size_t& elementIndex,
                         std::vector<unsigned char>& data);
  static void ReadUInt64(const SymbolicRW_t& rw, const size_t& elementIndex,
                         std::vector<unsigned char>& data);
  static void ReadInt8(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);
  static void ReadInt16(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);
  static void ReadInt32(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);
  static void ReadInt64(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);
  static void ReadFloat32(const SymbolicRW_t& rw, const size_t& elementIndex,
                          std::vector<unsigned char>& data);
  static void ReadFloat64(const SymbolicRW_t& rw, const size_t& elementIndex,
                          std::vector<unsigned char>& data);
  static void ReadChar8(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);
  static void ReadChar16(const SymbolicRW_t& rw, const size_t& elementIndex,
                         std::vector<unsigned char>& data);
  static void ReadString8(const SymbolicRW_t& rw, const size_t& elementIndex,
                          std::vector<unsigned char>& data);
  static void ReadString16(const SymbolicRW_t& rw, const size_t& elementIndex,
                           std::vector<unsigned char>& data);
  static void ReadS7Counter(const SymbolicRW_t& rw, const size_t& elementIndex,
                            std::vector<unsigned char>& data);
  static void ReadS5Time(const SymbolicRW_t& rw, const size_t& elementIndex,
                         std::vector<unsigned char>& data);
  static void ReadS7DateAndtime(const SymbolicRW_t& rw, const size_t& elementIndex,
                                std::vector<unsigned char>& data);
  static void ReadDTL(const SymbolicRW_t& rw, const size_t& elementIndex, std::vector<unsigned char>& data);

  // Appends the bytes of one value.
  template <class T>
  static void SetupDataVector(T value, std::vector<unsigned char>& data);
};

template <class T>
void BufferReader::SetupDataVector(T value, std::vector<unsigned char>& data) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
  data.insert(data.end(), bytes, bytes + sizeof value);
}
