// Counting and failing the heap: the test programs replace operator new and operator delete, for
// themselves and for the library, which is a shared object and so takes the program's.
//
// Every test of every room is checked for leaks by main.cpp; NoLeak does the same for a part of one.

#ifndef QUORVEL_TESTS_SUPPORT_ALLOCATIONS_H
#define QUORVEL_TESTS_SUPPORT_ALLOCATIONS_H

namespace quorvel::test {

// Blocks from operator new that have not been deleted.
long LiveBlocks() noexcept;

// Successful calls of operator new since the program began.
long Allocations() noexcept;

// Bytes asked for by those calls.
unsigned long long AllocatedBytes() noexcept;

// Fails the test when this scope ends with more or fewer live blocks than it began with.
class NoLeak {
 public:
  NoLeak() noexcept;
  ~NoLeak();
  NoLeak(const NoLeak&) = delete;
  NoLeak& operator=(const NoLeak&) = delete;

 private:
  long before_;
};

// For a test that leaves blocks alive on purpose (a death test or SUCCEED(), whose message GoogleTest
// keeps; a cache that is filled once): its live blocks are not compared.
void KeepsBlocks() noexcept;

enum class Fail { kOnce, kFromThenOn };

// While this object lives, the k-th allocation from now on (k = 1 is the next one) fails, or it and
// every later one: the throwing forms of operator new throw std::bad_alloc, the others return null.
// Keep the scope tight: GoogleTest's macros allocate too. Scopes do not nest.
//
//   for (unsigned k = 1;; ++k) {
//     RegularMatrix a(3, 3);
//     bool failed;
//     {
//       FailAllocations fail(k, Fail::kOnce);
//       code = CodeOf([&] { a.InsertRows(0, 2); });
//       failed = fail.failed();
//     }
//     if (!failed) break;  // the call needs fewer than k allocations
//     EXPECT_EQ(code, 10680);
//   }
class FailAllocations {
 public:
  FailAllocations(unsigned k, Fail mode) noexcept;
  ~FailAllocations();
  FailAllocations(const FailAllocations&) = delete;
  FailAllocations& operator=(const FailAllocations&) = delete;

  // True when an allocation has been failed.
  bool failed() const noexcept;
};

// While this object lives, a single request for more than `most` bytes fails like exhausted memory. For calls with absurd sizes.
class LimitAllocations {
 public:
  explicit LimitAllocations(unsigned long long most) noexcept;
  ~LimitAllocations();
  LimitAllocations(const LimitAllocations&) = delete;
  LimitAllocations& operator=(const LimitAllocations&) = delete;
};

// Remembers whether a block from operator new has been deleted since; at most eight at a time.
class WatchedBlock {
 public:
  explicit WatchedBlock(const void* block) noexcept;
  ~WatchedBlock();
  WatchedBlock(const WatchedBlock&) = delete;
  WatchedBlock& operator=(const WatchedBlock&) = delete;
  bool deleted() const noexcept;

 private:
  unsigned slot_;
};

// For main.cpp.
namespace leak_check {
void Begin() noexcept;
void End();
}  // namespace leak_check

}  // namespace quorvel::test

#endif
