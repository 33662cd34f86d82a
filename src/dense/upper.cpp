// UpperTriangularMatrix: construction and conversion.
#include "quorvel/UpperTriangularMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "dense/block.h"
#include "dense/new_dense.h"
#include "factor/templates.h"

namespace detail = quorvel::detail;

#define KIND UpperTriangularMatrix
#define BASE TriMatrix
#include "dense/square_kind.inc"

UpperTriangularMatrix::UpperTriangularMatrix() noexcept : TriMatrix(upper_triangular, 0) {}

UpperTriangularMatrix::UpperTriangularMatrix(size_type n) : TriMatrix(upper_triangular, n) {}

UpperTriangularMatrix::UpperTriangularMatrix(size_type rows, size_type cols) : TriMatrix(upper_triangular, rows, cols) {}

UpperTriangularMatrix::UpperTriangularMatrix(UpperTriangularMatrix& source) : TriMatrix(source) {}

UpperTriangularMatrix::UpperTriangularMatrix(const DiagonalMatrix& source) : UpperTriangularMatrix() { *this = source; }

UpperTriangularMatrix& UpperTriangularMatrix::operator=(const DiagonalMatrix& source) { return UT_EQ_TMat(*this, source); }

const char* UpperTriangularMatrix::ClassName() const { return "UpperTriangularMatrix"; }

bool UpperTriangularMatrix::IsSymmetric() const { return false; }
