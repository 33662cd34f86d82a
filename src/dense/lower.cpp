// LowerTriangularMatrix: construction and conversion.
#include "quorvel/LowerTriangularMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "dense/block.h"
#include "dense/new_dense.h"
#include "factor/templates.h"

namespace detail = quorvel::detail;

#define KIND LowerTriangularMatrix
#define BASE TriMatrix
#include "dense/square_kind.inc"

LowerTriangularMatrix::LowerTriangularMatrix() noexcept : TriMatrix(lower_triangular, 0) {}

LowerTriangularMatrix::LowerTriangularMatrix(size_type n) : TriMatrix(lower_triangular, n) {}

LowerTriangularMatrix::LowerTriangularMatrix(size_type rows, size_type cols) : TriMatrix(lower_triangular, rows, cols) {}

LowerTriangularMatrix::LowerTriangularMatrix(LowerTriangularMatrix& source) : TriMatrix(source) {}

LowerTriangularMatrix::LowerTriangularMatrix(const DiagonalMatrix& source) : LowerTriangularMatrix() { *this = source; }

LowerTriangularMatrix& LowerTriangularMatrix::operator=(const DiagonalMatrix& source) { return LT_EQ_TMat(*this, source); }

const char* LowerTriangularMatrix::ClassName() const { return "LowerTriangularMatrix"; }

bool LowerTriangularMatrix::IsSymmetric() const { return false; }
