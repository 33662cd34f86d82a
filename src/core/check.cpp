// The operand checks. All share one protocol: the pending code comes first, then the conditions in their order; a value
// of 0 is no failure; dispensable operands are destroyed before the throw.
#include "core/ownership.h"
#include "core/pending.h"

namespace {

using quorvel::detail::FailWith;
namespace offset = quorvel::detail::offset;

/// What a check found: the offset of the first condition that failed, or `passed`.
constexpr int passed = 0;

bool failed(int code, int found, int& value) {
  value = quorvel::detail::pending_code;
  if (value != 0) return true;
  if (found == passed) return false;
  value = code + found;
  return value != 0;
}

void check(int code, int found, const Matrix& a) {
  int value;
  if (failed(code, found, value)) FailWith(value, &a);
}

void check(int code, int found, const Matrix& a, const Matrix& b) {
  int value;
  if (failed(code, found, value)) FailWith(value, &a, &b);
}

int shape_of(const Matrix& a, const Matrix& b, bool fits) {
  if (!a.ok() || !b.ok()) return offset::not_ok;
  return fits ? passed : offset::shape;
}

}  // namespace

void Matrix::ThrowNotOk(int code) const { check(code, ok() ? passed : offset::not_ok, *this); }

void Matrix::ThrowNotOkOrEmpty(int code) const {
  int found = passed;
  if (!ok()) {
    found = offset::not_ok;
  } else if (nrows() == 0 || ncols() == 0) {
    found = offset::shape;
  }
  check(code, found, *this);
}

void Matrix::ThrowNotOkOrDispensable(int code) const {
  check(code, ok() && !dispensable() ? passed : offset::not_ok, *this);
}

void Matrix::ThrowInsert(int code, unsigned at, unsigned extent) const {
  int found = passed;
  if (!ok()) {
    found = offset::not_ok;
  } else if (dispensable()) {
    found = offset::shape;
  } else if (at > extent) {
    found = offset::insertion;
  }
  check(code, found, *this);
}

void Matrix::ThrowDimRange(int code, unsigned first, unsigned count, unsigned extent) const {
  const bool fits = static_cast<unsigned long long>(first) + count <= extent;
  check(code, ok() && !dispensable() && fits ? passed : offset::range, *this);
}

void Matrix::ThrowForEachIn(int code, unsigned index, unsigned count, unsigned first, unsigned min, unsigned last,
                            unsigned max) const {
  int found = passed;
  if (!ok()) {
    found = offset::not_ok;
  } else if (!(index < count && min <= first && first <= last && last <= max)) {
    found = offset::shape;
  }
  check(code, found, *this);
}

void Matrix::ThrowNotSize(int code, unsigned rows, unsigned cols) const {
  int found = passed;
  if (!ok()) {
    found = offset::not_ok;
  } else if (nrows() != rows || ncols() != cols) {
    found = offset::shape;
  }
  check(code, found, *this);
}

void Matrix::ThrowNotSquare(int code) const {
  int found = passed;
  if (!ok()) {
    found = offset::not_ok;
  } else if (nrows() != ncols()) {
    found = offset::shape;
  }
  check(code, found, *this);
}

void Matrix::ThrowEquals(int code, const Matrix& other) {
  int value;
  if (!failed(code, ok() && other.ok() ? passed : offset::not_ok, value)) return;
  set_ok(false);
  FailWith(value, this, &other);
}

void Matrix::ThrowNotSameRows(int code, const Matrix& other) const {
  check(code, shape_of(*this, other, nrows() == other.nrows()), *this, other);
}

void Matrix::ThrowNotSameCols(int code, const Matrix& other) const {
  check(code, shape_of(*this, other, ncols() == other.ncols()), *this, other);
}

void Matrix::ThrowNotSameDim(int code, const Matrix& other) const {
  check(code, shape_of(*this, other, ncols() == other.ncols() && nrows() == other.nrows()), *this, other);
}

void Matrix::ThrowNotOppoDim(int code, const Matrix& other) const {
  check(code, shape_of(*this, other, ncols() == other.nrows() && nrows() == other.ncols()), *this, other);
}

void Matrix::ThrowProduct(int code, const Matrix& other) const {
  check(code, shape_of(*this, other, ncols() == other.nrows()), *this, other);
}
