// SPDX-License-Identifier: MIT
// The memory of access jobs.
#include "symbolic/accessbuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>

namespace {

bool all_zero(const SymbolicRW_t& rw) {
  const auto* bytes = static_cast<const unsigned char*>(rw.Buffer);
  return std::all_of(bytes, bytes + rw.BufferLen, [](unsigned char byte) { return byte == 0; });
}

void fill(const SymbolicRW_t& rw) {
  std::fill_n(static_cast<unsigned char*>(rw.Buffer), rw.BufferLen, static_cast<unsigned char>(0x77));
}

TEST(AccessMemory, GivesEachAccessItsOwnAlignedZeros) {
  std::array<SymbolicRW_t, 4> accesses{};
  accesses[0].BufferLen = 16;
  accesses[1].BufferLen = 0;
  accesses[2].BufferLen = -5;
  accesses[3].BufferLen = 3;
  AccessMemory memory;
  memory.Attach(accesses);
  const auto* first = static_cast<unsigned char*>(accesses[0].Buffer);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first) % 16, 0U);
  EXPECT_EQ(accesses[1].Buffer, first + 32) << "room for 16 bytes and one more, in steps of 16";
  EXPECT_EQ(accesses[2].Buffer, nullptr);
  EXPECT_EQ(accesses[2].BufferLen, -5);
  EXPECT_EQ(accesses[3].Buffer, first + 48);
  EXPECT_TRUE(all_zero(accesses[0]) && all_zero(accesses[3]));
}

TEST(AccessMemory, IsClearedForTheNextJob) {
  std::array<SymbolicRW_t, 2> accesses{};
  accesses[0].BufferLen = 100;
  accesses[1].BufferLen = 50;
  AccessMemory memory;
  memory.Attach(accesses);
  void* const kept = accesses[0].Buffer;
  fill(accesses[0]);
  fill(accesses[1]);
  memory.Clear();
  std::swap(accesses[0].BufferLen, accesses[1].BufferLen);
  memory.Attach(accesses);
  EXPECT_EQ(accesses[0].Buffer, kept) << "the memory of a usual job is kept";
  EXPECT_TRUE(all_zero(accesses[0]) && all_zero(accesses[1]));
}

TEST(AccessMemory, OfALargeJobIsGivenBack) {
  std::array<SymbolicRW_t, 1> large{};
  large[0].BufferLen = (1 << 20) + 1;
  AccessMemory memory;
  memory.Attach(large);
  fill(large[0]);
  memory.Clear();
  std::array<SymbolicRW_t, 1> small{};
  small[0].BufferLen = 8;
  memory.Attach(small);
  ASSERT_NE(small[0].Buffer, nullptr);
  EXPECT_TRUE(all_zero(small[0]));
  fill(small[0]);
  memory.Attach(large);
  EXPECT_TRUE(all_zero(large[0])) << "taken anew, since it was given back";
}

TEST(AccessMemory, OfNoAccessIsNothing) {
  AccessMemory memory;
  memory.Attach({});
  std::array<SymbolicRW_t, 1> one{};
  one[0].BufferLen = -1;
  memory.Attach(one);
  EXPECT_EQ(one[0].Buffer, nullptr);
}

TEST(ZeroedMemory, OfNoBytesOrFewerThanNoneIsThereAllTheSame) {
  for (const std::int64_t bytes : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) {
    EXPECT_NE(zeroed_memory(bytes), nullptr) << bytes;
  }
}

TEST(AttachBuffer, TakesTheSizeAsItIs) {
  SymbolicRW_t rw{};
  rw.Buffer = &rw;
  EXPECT_EQ(attach_buffer(rw, -3), nullptr);
  EXPECT_EQ(rw.Buffer, nullptr);
  EXPECT_EQ(rw.BufferLen, -3);
  const ZeroedMemory buffer = attach_buffer(rw, 5);
  EXPECT_EQ(rw.Buffer, buffer.get());
  EXPECT_EQ(rw.BufferLen, 5);
  EXPECT_TRUE(all_zero(rw));
  EXPECT_NE(attach_buffer(rw, 0), nullptr);
}

}  // namespace
