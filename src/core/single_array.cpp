// Dense storage: allocation, whole-array operations, comparisons with a scalar.
#include "core/storage.h"

#include <algorithm>
#include <cfloat>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "core/ownership.h"
#include "ops/kernels/kernels.h"

// Intermediate results are doubles, nothing wider: the library gives the same bits everywhere. All bits zero is +0.0.
static_assert(FLT_EVAL_METHOD == 0 && std::numeric_limits<double>::is_iec559);

namespace quorvel::detail {

double* NewDoubles(std::uint64_t count) {
  if (count >= max_doubles) throw std::bad_array_new_length();
  if (count == 0) return nullptr;
  try {
    return new double[static_cast<std::size_t>(count)];  // never all ways: the count fits, which the language asks
  } catch (const std::bad_alloc&) {  // never all ways: operator new throws nothing else
    FailToAllocate();
  }
}

void RequireSize(std::uint64_t a, std::uint64_t b) {
  if (a + b > 0xFFFFFFFFu) throw std::bad_array_new_length();
}

void CopyDoubles(double* to, const double* from, std::uint64_t count) noexcept {
  if (count != 0) std::memcpy(to, from, static_cast<std::size_t>(count) * sizeof(double));
}

void MoveDoubles(double* to, const double* from, std::uint64_t count) noexcept {
  if (count != 0) std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(double));
}

void FillDoubles(double* to, double value, std::uint64_t count) noexcept {
  for (std::uint64_t k = 0; k < count; ++k) to[k] = value;
}

void ClearDoubles(double* to, std::uint64_t count) noexcept {
  if (count != 0) std::memset(to, 0, static_cast<std::size_t>(count) * sizeof(double));
}

void ScaleDoubles(double* to, double s, const double* from, index_t count) noexcept {
  if (s == 0.0) {
    ClearDoubles(to, count);
  } else if (s == -1.0) {
    kernels().negate(to, from, count);
  } else if (s != 1.0) {
    kernels().scale(to, s, from, count);
  } else if (to != from) {
    CopyDoubles(to, from, count);
  }
}

}  // namespace quorvel::detail

using quorvel::detail::CopyDoubles;
using quorvel::detail::FillDoubles;
using quorvel::detail::NewDoubles;
using quorvel::detail::ScaleDoubles;

SingleArrayMatrix::SingleArrayMatrix(SingleArrayMatrix&& source) noexcept
    : Matrix(std::move(source)),
      array_(std::exchange(source.array_, nullptr)),
      capacity_(std::exchange(source.capacity_, 0u)) {}

/// Not onto itself: the kinds see to that.
SingleArrayMatrix& SingleArrayMatrix::operator=(SingleArrayMatrix&& source) noexcept {
  Matrix::operator=(std::move(source));
  delete[] array_;
  array_ = std::exchange(source.array_, nullptr);
  capacity_ = std::exchange(source.capacity_, 0u);
  return *this;
}

// The base class ends here, too, so that it costs no call.
Matrix::~Matrix() = default;
SingleArrayMatrix::~SingleArrayMatrix() { delete[] array_; }

void SingleArrayMatrix::SwapArray(SingleArrayMatrix& other) noexcept {
  SwapState(other);
  quorvel::detail::Access::swap_array(*this, other);
}

std::size_t SingleArrayMatrix::HeapReserved() const { return std::size_t{8} * capacity_; }

std::size_t SingleArrayMatrix::HeapUsed() const { return std::size_t{8} * StoredCount(); }

void SingleArrayMatrix::AllocateMemory(size_type count, bool zero) {
  double* fresh = NewDoubles(count);
  delete[] array_;
  array_ = fresh;
  capacity_ = count;
  if (zero) quorvel::detail::ClearDoubles(array_, count);
}

void SingleArrayMatrix::Reserve(size_type rows, size_type cols) {
  const size_type needed = GetArrayCount(rows, cols);
  if (needed <= capacity_) return;
  double* fresh = NewDoubles(needed);
  const size_type kept = StoredCount();
  CopyDoubles(fresh, array_, kept);
  quorvel::detail::ClearDoubles(fresh + kept, needed - kept);
  delete[] array_;
  array_ = fresh;
  capacity_ = needed;
}

void SingleArrayMatrix::FreeMemory() {
  SetSize(0, 0, false);
  delete[] array_;
  array_ = nullptr;
  capacity_ = 0;
}

void SingleArrayMatrix::Copy(const SingleArrayMatrix& source, bool negate) {
  size_type rows, cols;
  source.GetSize(rows, cols);
  SetSize(rows, cols, false);
  set_nsing(source.nsing());
  const size_type count = StoredCount();
  if (this != &source) CopyDoubles(array_, source.array_, count);
  if (negate) Negate();
}

void SingleArrayMatrix::Assign(const double* values, size_type rows, size_type cols) {
  ThrowNotOk(quorvel::detail::code::none);
  SetSize(rows, cols, false);
  CopyDoubles(array_, values, StoredCount());
}

SingleArrayMatrix& SingleArrayMatrix::operator=(double x) {
  ThrowNotOk(quorvel::detail::code::none);
  if (x == 0.0) set_nsing(-1);
  FillDoubles(array_, x, StoredCount());
  return *this;
}

void SingleArrayMatrix::Mult(const SingleArrayMatrix& source, double s) {
  if (this != &source) {
    size_type rows, cols;
    source.GetSize(rows, cols);
    SetSize(rows, cols, false);
  }
  const size_type count = StoredCount();
  ScaleDoubles(array_, s, source.array_, count);
}

void SingleArrayMatrix::Negate() { quorvel::detail::kernels().negate(array_, array_, StoredCount()); }

void SingleArrayMatrix::SetRandom(double lo, double hi) {
  const double step = (hi - lo) / 2147483647.0;
  for (size_type k = StoredCount(); k-- > 0;) array_[k] = lo + static_cast<double>(std::rand()) * step;
}

Matrix::size_type SingleArrayMatrix::NumberNonZero() const {
  const size_type count = StoredCount();
  return static_cast<size_type>(std::count_if(array_, array_ + count, [](double e) { return e != 0.0; }));
}

double SingleArrayMatrix::Max() const {
  const quorvel::detail::Consumed self(*this);
  double largest = -std::numeric_limits<double>::infinity();
  const size_type count = StoredCount();
  for (size_type k = 0; k < count; ++k) {
    if (array_[k] > largest) largest = array_[k];
  }
  return largest;
}

double SingleArrayMatrix::Min() const {
  const quorvel::detail::Consumed self(*this);
  double smallest = std::numeric_limits<double>::infinity();
  const size_type count = StoredCount();
  for (size_type k = 0; k < count; ++k) {
    if (array_[k] < smallest) smallest = array_[k];
  }
  return smallest;
}

namespace {

template <class Relation>
bool EveryStored(const SingleArrayMatrix& a, Relation holds) {
  const double* const begin = a.data();
  return std::all_of(begin, begin + a.StoredCount(), holds);
}

}  // namespace

bool SingleArrayMatrix::AllElementsOnInterval(double lo, double hi) const {
  return EveryStored(*this, [lo, hi](double e) { return lo <= e && e <= hi; });
}

bool SingleArrayMatrix::Equals(double x, double tol) const { return AllElementsOnInterval(x - tol, x + tol); }

bool SingleArrayMatrix::operator==(double x) const {
  return EveryStored(*this, [x](double e) { return e == x; });
}

bool SingleArrayMatrix::operator!=(double x) const {
  return EveryStored(*this, [x](double e) { return e != x; });
}

bool SingleArrayMatrix::operator<(double x) const {
  return EveryStored(*this, [x](double e) { return e < x; });
}

bool SingleArrayMatrix::operator>(double x) const {
  return EveryStored(*this, [x](double e) { return e > x; });
}

bool SingleArrayMatrix::operator<=(double x) const {
  return EveryStored(*this, [x](double e) { return e <= x; });
}

bool SingleArrayMatrix::operator>=(double x) const {
  return EveryStored(*this, [x](double e) { return e >= x; });
}
