// SPDX-License-Identifier: MIT
// Calls of all shapes whose function cannot be reached: they fail in the register that the caller looks in,
// and leave the caller's arguments and the rest of its stack as they were. Run once where no library is
// found, and once where the one that is found lacks every name.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "aglink/AGLink40.h"
#include "tests/aglink/fakes/shapes.h"
#include "tests/aglink/world.h"

namespace {

constexpr std::int32_t kNotLoaded = -1048554;

template <typename Shape, typename Function>
Shape* as(Function* function) {
  return reinterpret_cast<Shape*>(reinterpret_cast<void (*)()>(function));
}

// A stack that the call did not clean up, or cleaned up twice, shows in what stands on both sides of it.
template <typename Call>
void expectUntouchedBy(const Call& call) {
  volatile std::uint64_t before[8];
  for (std::size_t i = 0; i < 8; ++i) before[i] = 0x5a00 + i;
  linesPrintedBy([&] {
    volatile std::uint64_t inside[8];
    for (std::size_t i = 0; i < 8; ++i) inside[i] = 0xa500 + i;
    call();
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(inside[i], 0xa500 + i);
  });
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(before[i], 0x5a00 + i);
}

class ShapeFailure : public BindingTest {
 protected:
  void SetUp() override {
    BindingTest::SetUp();
    const char* const path = std::getenv("LD_LIBRARY_PATH");
    const bool expected = path != nullptr && *path != 0;
    void* const library = dlopen(kLibraryName.c_str(), RTLD_NOW);
    if (library != nullptr) dlclose(library);
    ASSERT_EQ(library != nullptr, expected) << "run this test through ctest, which sets LD_LIBRARY_PATH";
  }
};

}  // namespace

TEST_F(ShapeFailure, TwelveIntegers) {
  using Shape =
      std::int32_t(std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                   std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t);
  expectUntouchedBy(
      [] { EXPECT_EQ(as<Shape>(&AGL_Config)(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12), kNotLoaded); });
}

TEST_F(ShapeFailure, TenRealsAmongIntegers) {
  using Shape = std::int32_t(double, int, double, int, double, int, double, int, double, int, double, int,
                             double, int, double, int, double, double);
  expectUntouchedBy([] {
    EXPECT_EQ(
        as<Shape>(&AGL_ConfigEx)(0.5, 1, 1.5, 2, 2.5, 3, 3.5, 4, 4.5, 5, 5.5, 6, 6.5, 7, 7.5, 8, 8.5, 9.5),
        kNotLoaded);
  });
}

TEST_F(ShapeFailure, StructuresByValueStayAsTheyWere) {
  using Shape = std::int32_t(std::int32_t, Large, Large, double);
  const Large first{{1, -20, 300, -4000, 50000, -600000}};
  const Large second{{-7, 80, -900, 10000, -110000, 1200000}};
  Large a = first;
  Large b = second;
  expectUntouchedBy([&] { EXPECT_EQ(as<Shape>(&AGL_WriteParas)(8, a, b, 0.5), kNotLoaded); });
  EXPECT_EQ(std::memcmp(&a, &first, sizeof a), 0);
  EXPECT_EQ(std::memcmp(&b, &second, sizeof b), 0);
}

// What such a result holds nobody can say; what lies around it must not change.
TEST_F(ShapeFailure, HiddenResultAddressHarmsNothing) {
  expectUntouchedBy([] {
    volatile bool returned = false;
    as<ReturnsLarge> (&AGL_ReadDevice)(70, 2.25);
    returned = true;
    EXPECT_TRUE(returned);
  });
}

TEST_F(ShapeFailure, FloatResults) {
  expectUntouchedBy([] {
    EXPECT_EQ(as<TakesFloats>(&AGL_ReadReal)(0.5F, 0.25F, 0.125), 0.0F);
    EXPECT_EQ(as<float(double)>(&AGL_LongAsFloat)(1.0), -1048554.0F);
  });
}

TEST_F(ShapeFailure, PointerResultIsNull) {
  expectUntouchedBy([] { EXPECT_EQ(as<ReturnsPointer>(&AGL_malloc)("ab"), nullptr); });
}

TEST_F(ShapeFailure, PointerResultHandsTheFirstArgumentBackWhole) {
  char text[] = "ab";
  expectUntouchedBy(
      [&] { EXPECT_EQ(as<void*(void*, double, const void*)>(&AGL_memcpy)(text, 0.5, "cd"), text); });
  EXPECT_STREQ(text, "ab");
}

TEST_F(ShapeFailure, SixtyFourBitResultIsNegativeInAllItsBits) {
  expectUntouchedBy([] { EXPECT_EQ(as<Returns64Bits>(&AGL_AllocRWBuffs)(5), std::int64_t{kNotLoaded}); });
}

TEST_F(ShapeFailure, NarrowResults) {
  expectUntouchedBy([] {
    EXPECT_EQ(as<ReturnsShort>(&AGL_ReadInt16)(-32767), 0);
    EXPECT_EQ(as<TakesSmall>(&AGL_GetTickCount)(255, -128, 65535, -32768, true, 'A'), 0xFFF00016U);
  });
}

TEST_F(ShapeFailure, VariadicArguments) {
  using Shape = std::int32_t(int, ...);
  expectUntouchedBy(
      [] { EXPECT_EQ(as<Shape>(&AGL_DataRW2Text)(5, 1, 0.5, 2, 1.5, 3, 2.5, 4, 3.5, 5, 4.5), kNotLoaded); });
}

TEST_F(ShapeFailure, SeveralThreadsAtOnceAllFail) {
  constexpr std::size_t kThreads = 8;
  using Shape = std::int32_t(std::int32_t, Large, Large, double);
  for (int round = 0; round < 20; ++round) {
    std::atomic<std::size_t> ready = 0;
    std::atomic<std::size_t> failed = 0;
    linesPrintedBy([&] {
      std::vector<std::thread> threads;
      threads.reserve(kThreads);
      for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
          ++ready;
          while (ready < kThreads) std::this_thread::yield();
          const bool integer = as<Shape>(&AGL_WriteParas)(8, Large{}, Large{}, 0.5) == kNotLoaded;
          const bool real = as<TakesFloats>(&AGL_ReadReal)(0.5F, 0.25F, 0.125) == 0.0F;
          if (integer && real) ++failed;
        });
      }
      for (std::thread& thread : threads) thread.join();
    });
    EXPECT_EQ(failed, kThreads);
  }
}
