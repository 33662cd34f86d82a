// The guarded heap: what it gives can be used to its last byte, and not one further.

#include "support/guarded_heap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "support/allocations.h"

namespace quorvel::test {
namespace {

using guarded_heap::Side;

constexpr std::size_t kSizes[] = {8, 24, 72, 4088, 4096, 4104, 40000, 200000};

class GuardedHeap : public ::testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the address sanitizer has a heap of its own";
#endif
  }

  static volatile char* Block(Side side) {
    return static_cast<volatile char*>(guarded_heap::Allocate(GetParam(), alignof(std::max_align_t), side));
  }
  static void Free(volatile char* block) { guarded_heap::Release(const_cast<char*>(block)); }
};

TEST_P(GuardedHeap, GivesTheWholeBlockAlignedForItsSize) {
  for (const Side side : {Side::kBegin, Side::kEnd}) {
    for (int round = 0; round < 3; ++round) {  // the second and third of small sizes are used again
      volatile char* block = Block(side);
      ASSERT_NE(block, nullptr);
      EXPECT_NE(block[0], 0) << "is filled";
      for (std::size_t k = 0; k < GetParam(); ++k) block[k] = 0;
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0u);
      Free(block);
    }
  }
}

TEST_P(GuardedHeap, EndsAProgramThatGoesOneByteTooFar) {
  KeepsBlocks();
  volatile char* block = Block(Side::kEnd);
  EXPECT_DEATH(static_cast<void>(block[GetParam()]), "");
  EXPECT_DEATH(block[GetParam()] = 1, "");
  Free(block);
  block = Block(Side::kBegin);
  EXPECT_DEATH(static_cast<void>(block[-1]), "");
  EXPECT_DEATH(block[-1] = 1, "");
  Free(block);
}

INSTANTIATE_TEST_SUITE_P(Sizes, GuardedHeap, ::testing::ValuesIn(kSizes));

TEST(GuardedHeapMemory, OddSizesAlignmentAndExhaustion) {
  EXPECT_EQ(guarded_heap::Allocate(SIZE_MAX - 4096, 16, Side::kEnd), nullptr);
  void* few = guarded_heap::Allocate(3, alignof(std::max_align_t), Side::kEnd);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(few) % 8, 0u);
  guarded_heap::Release(few);
  void* aligned = guarded_heap::Allocate(192, 64, Side::kEnd);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(aligned) % 64, 0u);
  guarded_heap::Release(aligned);
}

}  // namespace
}  // namespace quorvel::test
