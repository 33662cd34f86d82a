#include "support/allocations.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "support/guarded_heap.h"

namespace quorvel::test {
namespace {

std::atomic<long> live{0};
std::atomic<long> total{0};
std::atomic<unsigned long long> bytes{0};

// Allocations until the failing one; 0 when none shall fail.
std::atomic<unsigned> countdown{0};
std::atomic<bool> fail_on{false};
std::atomic<bool> fail_hit{false};

// Largest single request; 0 for any.
std::atomic<unsigned long long> largest{0};

// Blocks that are waited for; a slot is free while it holds null. Only the first deletion counts: later ones are of
// other blocks at the same address.
constexpr unsigned kWatched = 8;
std::atomic<const void*> watched[kWatched];
std::atomic<bool> was_deleted[kWatched];
std::atomic<unsigned> watching{0};

// The same from the first allocation of the program to its end.
guarded_heap::Side Guarded() noexcept {
  static const guarded_heap::Side side = guarded_heap::Asked();
  return side;
}

bool MustFail() noexcept {
  if (countdown == 0) return false;
  if (countdown > 1) {
    --countdown;
    return false;
  }
  fail_hit = true;
  if (!fail_on) countdown = 0;
  return true;
}

void* Allocate(std::size_t size, std::size_t alignment) noexcept {
  if (MustFail()) return nullptr;
  if (largest != 0 && size > largest) return nullptr;
  if (size == 0) size = 1;
  void* block = nullptr;
  if (Guarded() != guarded_heap::Side::kNone) {
    block = guarded_heap::Allocate(size, alignment, Guarded());
  } else if (alignment <= alignof(std::max_align_t)) {
    block = std::malloc(size);
  } else {
    block = std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
  }
  if (block != nullptr) {
    ++live;
    ++total;
    bytes += size;
  }
  return block;
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* block = Allocate(size, alignment);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Release(void* block) noexcept {
  if (block == nullptr) return;
  --live;
  if (watching != 0) {
    for (unsigned k = 0; k < kWatched; ++k) {
      if (watched[k] == block) was_deleted[k] = true;
    }
  }
  if (Guarded() != guarded_heap::Side::kNone) {
    guarded_heap::Release(block);
  } else {
    std::free(block);
  }
}

constexpr std::size_t kPlain = alignof(std::max_align_t);

}  // namespace

long LiveBlocks() noexcept { return live; }
long Allocations() noexcept { return total; }
unsigned long long AllocatedBytes() noexcept { return bytes; }

NoLeak::NoLeak() noexcept : before_(LiveBlocks()) {}

NoLeak::~NoLeak() {
  const long after = LiveBlocks();
  EXPECT_EQ(after, before_) << "live blocks changed";
}

FailAllocations::FailAllocations(unsigned k, Fail mode) noexcept {
  fail_hit = false;
  fail_on = mode == Fail::kFromThenOn;
  countdown = k;
}

FailAllocations::~FailAllocations() { countdown = 0; }

bool FailAllocations::failed() const noexcept { return fail_hit; }

LimitAllocations::LimitAllocations(unsigned long long most) noexcept { largest = most; }
LimitAllocations::~LimitAllocations() { largest = 0; }

WatchedBlock::WatchedBlock(const void* block) noexcept : slot_(0) {
  while (watched[slot_] != nullptr) ++slot_;
  was_deleted[slot_] = false;
  watched[slot_] = block;
  ++watching;
}
WatchedBlock::~WatchedBlock() {
  watched[slot_] = nullptr;
  --watching;
}
bool WatchedBlock::deleted() const noexcept { return was_deleted[slot_]; }

namespace leak_check {
namespace {
long before = 0;
bool keeps = false;
}  // namespace

void Begin() noexcept {
  keeps = false;
  before = LiveBlocks();
}

void End() {
  const long after = LiveBlocks();
  if (keeps || ::testing::Test::HasFailure() || ::testing::Test::IsSkipped()) return;
  EXPECT_EQ(after, before) << "the test ends with other live blocks than it began with";
}
}  // namespace leak_check

void KeepsBlocks() noexcept { leak_check::keeps = true; }

}  // namespace quorvel::test

// The replaced functions themselves.

namespace qt = quorvel::test;

void* operator new(std::size_t n) { return qt::AllocateOrThrow(n, qt::kPlain); }
void* operator new[](std::size_t n) { return qt::AllocateOrThrow(n, qt::kPlain); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
  return qt::Allocate(n, qt::kPlain);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
  return qt::Allocate(n, qt::kPlain);
}
void* operator new(std::size_t n, std::align_val_t a) {
  return qt::AllocateOrThrow(n, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t n, std::align_val_t a) {
  return qt::AllocateOrThrow(n, static_cast<std::size_t>(a));
}
void* operator new(std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
  return qt::Allocate(n, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
  return qt::Allocate(n, static_cast<std::size_t>(a));
}

void operator delete(void* p) noexcept { qt::Release(p); }
void operator delete[](void* p) noexcept { qt::Release(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { qt::Release(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { qt::Release(p); }
void operator delete(void* p, std::size_t) noexcept { qt::Release(p); }
void operator delete[](void* p, std::size_t) noexcept { qt::Release(p); }
void operator delete(void* p, std::align_val_t) noexcept { qt::Release(p); }
void operator delete[](void* p, std::align_val_t) noexcept { qt::Release(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { qt::Release(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { qt::Release(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { qt::Release(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept {
  qt::Release(p);
}
