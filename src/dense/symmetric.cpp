// SymmetricMatrix: construction, conversion, symmetric permutation.
#include "quorvel/SymmetricMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "dense/block.h"
#include "dense/new_dense.h"
#include "factor/templates.h"

namespace detail = quorvel::detail;

#define KIND SymmetricMatrix
#define BASE TriMatrix
#include "dense/square_kind.inc"

SymmetricMatrix::SymmetricMatrix() noexcept : TriMatrix(symmetric, 0) {}

SymmetricMatrix::SymmetricMatrix(size_type n) : TriMatrix(symmetric, n) {}

SymmetricMatrix::SymmetricMatrix(size_type rows, size_type cols) : TriMatrix(symmetric, rows, cols) {}

SymmetricMatrix::SymmetricMatrix(SymmetricMatrix& source) : TriMatrix(source) {}

SymmetricMatrix::SymmetricMatrix(const DiagonalMatrix& source) : SymmetricMatrix() { *this = source; }

SymmetricMatrix& SymmetricMatrix::operator=(const DiagonalMatrix& source) { return SM_EQ_TMat(*this, source); }

const char* SymmetricMatrix::ClassName() const { return "SymmetricMatrix"; }

bool SymmetricMatrix::IsSymmetric() const { return true; }

Matrix::size_type SymmetricMatrix::NumberNonZero() const {
  const size_type n = ndim();
  size_type count = 0;
  const double* e = data();
  for (size_type i = 0; i < n; ++i) {
    if (*e++ != 0.0) ++count;
    for (size_type j = i + 1; j < n; ++j) {
      if (*e++ != 0.0) count += 2;
    }
  }
  return count;
}

void SymmetricMatrix::SwapRowsAndCols(size_type i, size_type j) {
  const size_type a = i < j ? i : j;
  const size_type b = i < j ? j : i;
  ThrowTriMatrixAccessorSet(a, b);
  if (a == b) return;
  const detail::Rule<SymmetricMatrix> e(*this);
  const size_type n = ndim();
  // Element (a, b) is its own image.
  for (size_type k = 0; k < n; ++k) {
    if (k != a && k != b) std::swap(e.store(k, a), e.store(k, b));
  }
  std::swap(e.store(a, a), e.store(b, b));
}

SymmetricMatrix* TestMat(unsigned n) {
  detail::NewResult<SymmetricMatrix> result(n);
  const detail::Rule<SymmetricMatrix> e(*result);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) e.store(i, j) = static_cast<double>(i + 1);
  }
  return &result.hand_over();
}
