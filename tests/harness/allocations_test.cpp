// The counting heap sees what the test programs and the library allocate, and fails on request.

#include "support/allocations.h"

#include <gtest/gtest.h>

#include <new>
#include <optional>

#include "quorvel/RegularMatrix.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

struct alignas(64) Aligned {
  double values[8];
};

// Calls of operator new and delete may be left out by the compiler when it sees both; this hides the pointer.
template <class T>
T* Seen(T* pointer) {
  T* volatile hidden = pointer;
  return hidden;
}

TEST(Allocations, EveryFormOfNewIsCounted) {
  const long live = LiveBlocks();
  const long total = Allocations();
  int* one = Seen(new int(1));
  int* array = Seen(new int[5]);
  int* quiet = Seen(new (std::nothrow) int(2));
  int* quiet_array = Seen(new (std::nothrow) int[2]);
  Aligned* aligned = Seen(new Aligned);
  Aligned* aligned_array = Seen(new Aligned[2]);
  EXPECT_EQ(LiveBlocks() - live, 6);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(aligned) % 64, 0u);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(aligned_array) % 64, 0u);
  delete one;
  delete[] array;
  delete quiet;
  delete[] quiet_array;
  delete aligned;
  delete[] aligned_array;
  EXPECT_EQ(LiveBlocks(), live);
  EXPECT_GE(Allocations() - total, 6);
}

TEST(Allocations, TheLibraryIsCounted) {
  const long live = LiveBlocks();
  const unsigned long long bytes = AllocatedBytes();
  {
    RegularMatrix a(3, 4);
    EXPECT_EQ(LiveBlocks() - live, 1);
    EXPECT_EQ(AllocatedBytes() - bytes, 96u);
  }
  EXPECT_EQ(LiveBlocks(), live);
}

TEST(Allocations, ADispensableCopyIsTwoBlocks) {
  RegularMatrix a(2, 2);
  const long live = LiveBlocks();
  RegularMatrix& copy = DispensableCopy(a);
  EXPECT_EQ(LiveBlocks() - live, 2);
  EXPECT_TRUE(copy.dispensable());
  { RegularMatrix owner(copy); }
  EXPECT_EQ(LiveBlocks(), live);
}

TEST(Allocations, TheKthFailsOnce) {
  int* p[3] = {};
  {
    FailAllocations fail(2, Fail::kOnce);
    for (int*& each : p) each = Seen(new (std::nothrow) int);
    EXPECT_TRUE(fail.failed());
  }
  EXPECT_NE(p[0], nullptr);
  EXPECT_EQ(p[1], nullptr);
  EXPECT_NE(p[2], nullptr);
  for (int* each : p) delete each;
}

TEST(Allocations, TheKthAndAllLaterFail) {
  int* p[3] = {};
  {
    FailAllocations fail(2, Fail::kFromThenOn);
    for (int*& each : p) each = Seen(new (std::nothrow) int);
  }
  EXPECT_NE(p[0], nullptr);
  EXPECT_EQ(p[1], nullptr);
  EXPECT_EQ(p[2], nullptr);
  int* after = Seen(new int);
  EXPECT_NE(after, nullptr);
  delete after;
  delete p[0];
}

TEST(Allocations, NothingFailsBeforeTheKth) {
  FailAllocations fail(100, Fail::kOnce);
  delete Seen(new int);
  EXPECT_FALSE(fail.failed());
}

TEST(Allocations, TheThrowingFormThrows) {
  bool thrown = false;
  try {
    FailAllocations fail(1, Fail::kOnce);
    delete Seen(new int);
  } catch (const std::bad_alloc&) {
    thrown = true;
  }
  EXPECT_TRUE(thrown);
}

TEST(Allocations, TheLibraryMeetsTheFailure) {
  std::optional<int> code;
  {
    FailAllocations fail(1, Fail::kOnce);
    code = CodeOf([] { RegularMatrix a(3, 3); });
    EXPECT_TRUE(fail.failed());
  }
  EXPECT_EQ(code, 10680);
}

}  // namespace
}  // namespace quorvel::test
