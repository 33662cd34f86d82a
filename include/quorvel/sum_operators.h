// Sum operators: operator+ and operator- over every pair of kinds.
//
// What they do is described in sums.h.
//
// An operand that can become the result is taken by non-const reference; a form with const references exists beside
// each, and does the same.
#ifndef QUORVEL_SUM_OPERATORS_H
#define QUORVEL_SUM_OPERATORS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// a + b.

[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(SymmetricMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(SymmetricMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const SymmetricMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const SymmetricMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator+(UpperTriangularMatrix& a, UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator+(const UpperTriangularMatrix& a,
                                                           const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator+(LowerTriangularMatrix& a, LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator+(const LowerTriangularMatrix& a,
                                                           const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator+(DiagonalMatrix& a, DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator+(const DiagonalMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(RegularSparseMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const RegularSparseMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator+(SymmetricSparseMatrix& a, SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator+(const SymmetricSparseMatrix& a,
                                                           const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const UpperTriangularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const UpperTriangularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const LowerTriangularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const LowerTriangularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const DiagonalMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const DiagonalMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(SymmetricMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const DiagonalMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const SymmetricMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const DiagonalMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator+(UpperTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator+(const DiagonalMatrix& a, UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator+(const UpperTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator+(const DiagonalMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator+(LowerTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator+(const DiagonalMatrix& a, LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator+(const LowerTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator+(const DiagonalMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularSparseMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularSparseMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricSparseMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricSparseMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(SymmetricMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const SymmetricSparseMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const SymmetricMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator+(const SymmetricSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(RegularSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const DiagonalMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const RegularSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const DiagonalMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator+(SymmetricSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator+(const DiagonalMatrix& a, SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator+(const SymmetricSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator+(const DiagonalMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(RegularSparseMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const SymmetricSparseMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const RegularSparseMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator+(const SymmetricSparseMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const UpperTriangularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const LowerTriangularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const UpperTriangularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const LowerTriangularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(RegularSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularSparseMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const UpperTriangularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const RegularSparseMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const LowerTriangularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricSparseMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const UpperTriangularMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const SymmetricSparseMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator+(const LowerTriangularMatrix& a, const SymmetricSparseMatrix& b);

// a - b.

[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(SymmetricMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(SymmetricMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const SymmetricMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const SymmetricMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator-(UpperTriangularMatrix& a, UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator-(const UpperTriangularMatrix& a,
                                                           const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator-(LowerTriangularMatrix& a, LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator-(const LowerTriangularMatrix& a,
                                                           const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator-(DiagonalMatrix& a, DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator-(const DiagonalMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(RegularSparseMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const RegularSparseMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator-(SymmetricSparseMatrix& a, SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator-(const SymmetricSparseMatrix& a,
                                                           const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const UpperTriangularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const UpperTriangularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const LowerTriangularMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const LowerTriangularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const DiagonalMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const DiagonalMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(SymmetricMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const DiagonalMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const SymmetricMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const DiagonalMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator-(UpperTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator-(const DiagonalMatrix& a, UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator-(const UpperTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator-(const DiagonalMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator-(LowerTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator-(const DiagonalMatrix& a, LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator-(const LowerTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator-(const DiagonalMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularSparseMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularSparseMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricSparseMatrix& a, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricSparseMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(SymmetricMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const SymmetricSparseMatrix& a, SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const SymmetricMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator-(const SymmetricSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(RegularSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const DiagonalMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const RegularSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const DiagonalMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator-(SymmetricSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator-(const DiagonalMatrix& a, SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator-(const SymmetricSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator-(const DiagonalMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(RegularSparseMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const SymmetricSparseMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const RegularSparseMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator-(const SymmetricSparseMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const UpperTriangularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const LowerTriangularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const UpperTriangularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const LowerTriangularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(RegularSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricMatrix& a, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularSparseMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const UpperTriangularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const RegularSparseMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const LowerTriangularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricSparseMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const UpperTriangularMatrix& a, const SymmetricSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const SymmetricSparseMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator-(const LowerTriangularMatrix& a, const SymmetricSparseMatrix& b);

#endif
