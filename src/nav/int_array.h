// Arrays of int for the bookkeeping of the simplex method.
#ifndef QUORVEL_NAV_INT_ARRAY_H
#define QUORVEL_NAV_INT_ARRAY_H

#include <cstdint>
#include <memory>
#include <new>

#include "core/codes.h"
#include "quorvel/Matrix.h"

namespace quorvel::detail {

/// `count` ints, uninitialised (none for a negative count); throws 10680 when memory is exhausted.
class IntArray {
 public:
  // never all ways: the count fits, which the language asks
  explicit IntArray(std::int64_t count) : ints_(new (std::nothrow) int[count > 0 ? static_cast<std::size_t>(count) : 0]) {
    TestNULL(ints_.get(), code::allocate);
  }
  int* get() const noexcept { return ints_.get(); }

 private:
  std::unique_ptr<int[]> ints_;
};

}  // namespace quorvel::detail

#endif
