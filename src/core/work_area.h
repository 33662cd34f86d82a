// Scratch that small operands find on the stack.
#ifndef QUORVEL_CORE_WORK_AREA_H
#define QUORVEL_CORE_WORK_AREA_H

#include <cstddef>
#include <new>

#include "core/codes.h"
#include "core/packed.h"
#include "core/storage.h"
#include "quorvel/Matrix.h"

namespace quorvel::detail {

/// Uninitialised doubles for the duration of a scope: inside the object up to OnStack of them, otherwise from the heap
/// (10680 when memory is exhausted). Filters rarely have more than 24 states; scratch is sized so that they need no
/// heap.
template <std::size_t OnStack>
class WorkArea {
 public:
  explicit WorkArea(std::uint64_t count) : heap_(count > OnStack ? NewDoubles(count) : nullptr) {}
  WorkArea(const WorkArea&) = delete;
  WorkArea& operator=(const WorkArea&) = delete;
  double* data() noexcept { return heap_ ? heap_.get() : stack_; }

 private:
  std::unique_ptr<double[]> heap_;
  alignas(64) double stack_[OnStack];
};

/// The first place at or behind p on a boundary of 64 bytes, at most 7 doubles further on.
inline double* OnBoundary(double* p) noexcept {
  const std::uintptr_t beyond = reinterpret_cast<std::uintptr_t>(p) % 64;
  return beyond == 0 ? p : p + (64 - beyond) / sizeof(double);
}

/// Uninitialised indices, likewise.
template <std::size_t OnStack>
class IndexArea {
 public:
  explicit IndexArea(std::size_t count) {
    if (count <= OnStack) return;
    heap_.reset(new (std::nothrow) index_t[count]);  // never all ways: the count fits, which the language asks
    TestNULL(heap_.get(), code::allocate);
  }
  IndexArea(const IndexArea&) = delete;
  IndexArea& operator=(const IndexArea&) = delete;
  index_t* data() noexcept { return heap_ ? heap_.get() : stack_; }

 private:
  std::unique_ptr<index_t[]> heap_;
  index_t stack_[OnStack];
};

/// Orders up to this one work without heap scratch.
inline constexpr std::size_t small_order = 24;

}  // namespace quorvel::detail

#endif
