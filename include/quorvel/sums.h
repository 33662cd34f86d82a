// Sums and differences: Plus, Minus, operator+, operator-.
//
// Every pair of the seven kinds has a sum and a difference, element by element:
//
//   Plus(result, a, b)   result = a + b, returns result        a + b   a new matrix, or a reused temporary
//   Minus(result, a, b)  result = a - b, returns result        a - b   likewise
//
// Kind of the result (the same for + and -, and for either order):
//
//   two of one kind                                            that kind
//   DiagonalMatrix with X                                      X
//   SymmetricMatrix with SymmetricSparseMatrix                 SymmetricMatrix
//   RegularSparseMatrix with SymmetricSparseMatrix             RegularSparseMatrix
//   every other pair                                           RegularMatrix
//
// Shapes: both operands m x n; `result` takes that size. It may be a or b itself.
//
// Ownership: the operators return a dispensable matrix. A dispensable operand of the result's kind becomes that result
// (the first one when both could; two sparse operands: the one with more stored elements, so that few have to be
// inserted); the other dispensable operand is destroyed. So `A + B + C` makes one matrix. An operand that is not
// dispensable is never changed. Plus and Minus consume dispensable operands, never `result`. Const operands,
// temporaries and variables mix freely.
//
// Throws, before anything is written (sizes differ / an operand is not ok): 40340 / 50340 two dense operands of one
// kind; 40280 / 50280 two unlike dense operands; 40000 / 50000 a sparse operand, but 40293 / 50293 where a difference
// of two sparse matrices is formed in the second operand (see below). A `result` that is not ok: 50000. Dispensable
// operands are destroyed first.
//
// Singularity count: -1 in every result.
//
// Cost: one pass over the elements; no allocation beyond the result's object and array, none when a temporary is
// reused or `result` has room. With sparse operands: one walk over the stored elements of both.
//
// Exactness: one rounding per element. Implicit zeros count as +0.0; where only a diagonal or stored sparse elements
// are added, all other elements keep their bits. A sparse sum stores no new zero.
//
// Differences that begin with a diagonal or a sparse matrix change the sign of X and add to that, so zeros of X become
// -0.0 there. BEWARE: D - S with a dense SymmetricMatrix S keeps the sign of the off-diagonal elements (kept on
// purpose): diag(1, 1) - [2 3; 3 4] is [-1 3; 3 -3]. Write -(S - D) for the mathematical difference.
//
// Difference of two sparse matrices a - b: formed in the operand with more stored elements (a when equal), if it is
// dispensable, else in the other if that is, else in a copy of the larger one. A SymmetricSparseMatrix never becomes a
// RegularSparseMatrix result. Differences formed in b check with code 293, all else with 0.
//
// Example:
//   SymmetricMatrix P(AQAT(F, P0) + Q);      // the sum is formed in the product, P takes over its storage
//   const RegularMatrix C(A - B);            // C owns the result; do not write auto& c = A - B
//   Plus(C2, A, B);                          // no allocation when C2 has room
#ifndef QUORVEL_SUMS_H
#define QUORVEL_SUMS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"


// Plus: result = a + b.

QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const RegularMatrix& b);
QUORVEL_API SymmetricMatrix& Plus(SymmetricMatrix& result, const SymmetricMatrix& a, const SymmetricMatrix& b);
QUORVEL_API UpperTriangularMatrix& Plus(UpperTriangularMatrix& result, const UpperTriangularMatrix& a,
                                        const UpperTriangularMatrix& b);
QUORVEL_API LowerTriangularMatrix& Plus(LowerTriangularMatrix& result, const LowerTriangularMatrix& a,
                                        const LowerTriangularMatrix& b);
QUORVEL_API DiagonalMatrix& Plus(DiagonalMatrix& result, const DiagonalMatrix& a, const DiagonalMatrix& b);
QUORVEL_API RegularSparseMatrix& Plus(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                      const RegularSparseMatrix& b);
QUORVEL_API SymmetricSparseMatrix& Plus(SymmetricSparseMatrix& result, const SymmetricSparseMatrix& a,
                                        const SymmetricSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const UpperTriangularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const LowerTriangularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const DiagonalMatrix& a, const RegularMatrix& b);
QUORVEL_API SymmetricMatrix& Plus(SymmetricMatrix& result, const SymmetricMatrix& a, const DiagonalMatrix& b);
QUORVEL_API SymmetricMatrix& Plus(SymmetricMatrix& result, const DiagonalMatrix& a, const SymmetricMatrix& b);
QUORVEL_API UpperTriangularMatrix& Plus(UpperTriangularMatrix& result, const UpperTriangularMatrix& a,
                                        const DiagonalMatrix& b);
QUORVEL_API UpperTriangularMatrix& Plus(UpperTriangularMatrix& result, const DiagonalMatrix& a,
                                        const UpperTriangularMatrix& b);
QUORVEL_API LowerTriangularMatrix& Plus(LowerTriangularMatrix& result, const LowerTriangularMatrix& a,
                                        const DiagonalMatrix& b);
QUORVEL_API LowerTriangularMatrix& Plus(LowerTriangularMatrix& result, const DiagonalMatrix& a,
                                        const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularSparseMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularMatrix& a, const SymmetricSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricSparseMatrix& a, const RegularMatrix& b);
QUORVEL_API SymmetricMatrix& Plus(SymmetricMatrix& result, const SymmetricMatrix& a, const SymmetricSparseMatrix& b);
QUORVEL_API SymmetricMatrix& Plus(SymmetricMatrix& result, const SymmetricSparseMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularSparseMatrix& Plus(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                      const DiagonalMatrix& b);
QUORVEL_API RegularSparseMatrix& Plus(RegularSparseMatrix& result, const DiagonalMatrix& a,
                                      const RegularSparseMatrix& b);
QUORVEL_API SymmetricSparseMatrix& Plus(SymmetricSparseMatrix& result, const SymmetricSparseMatrix& a,
                                        const DiagonalMatrix& b);
QUORVEL_API SymmetricSparseMatrix& Plus(SymmetricSparseMatrix& result, const DiagonalMatrix& a,
                                        const SymmetricSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Plus(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                      const SymmetricSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Plus(RegularSparseMatrix& result, const SymmetricSparseMatrix& a,
                                      const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const UpperTriangularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const LowerTriangularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const UpperTriangularMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const LowerTriangularMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularSparseMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularSparseMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const UpperTriangularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const RegularSparseMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const LowerTriangularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricSparseMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const UpperTriangularMatrix& a, const SymmetricSparseMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const SymmetricSparseMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Plus(RegularMatrix& result, const LowerTriangularMatrix& a, const SymmetricSparseMatrix& b);

// Minus: result = a - b.

QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const RegularMatrix& b);
QUORVEL_API SymmetricMatrix& Minus(SymmetricMatrix& result, const SymmetricMatrix& a, const SymmetricMatrix& b);
QUORVEL_API UpperTriangularMatrix& Minus(UpperTriangularMatrix& result, const UpperTriangularMatrix& a,
                                         const UpperTriangularMatrix& b);
QUORVEL_API LowerTriangularMatrix& Minus(LowerTriangularMatrix& result, const LowerTriangularMatrix& a,
                                         const LowerTriangularMatrix& b);
QUORVEL_API DiagonalMatrix& Minus(DiagonalMatrix& result, const DiagonalMatrix& a, const DiagonalMatrix& b);
QUORVEL_API RegularSparseMatrix& Minus(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                       const RegularSparseMatrix& b);
QUORVEL_API SymmetricSparseMatrix& Minus(SymmetricSparseMatrix& result, const SymmetricSparseMatrix& a,
                                         const SymmetricSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const UpperTriangularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const LowerTriangularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const DiagonalMatrix& a, const RegularMatrix& b);
QUORVEL_API SymmetricMatrix& Minus(SymmetricMatrix& result, const SymmetricMatrix& a, const DiagonalMatrix& b);
QUORVEL_API SymmetricMatrix& Minus(SymmetricMatrix& result, const DiagonalMatrix& a, const SymmetricMatrix& b);
QUORVEL_API UpperTriangularMatrix& Minus(UpperTriangularMatrix& result, const UpperTriangularMatrix& a,
                                         const DiagonalMatrix& b);
QUORVEL_API UpperTriangularMatrix& Minus(UpperTriangularMatrix& result, const DiagonalMatrix& a,
                                         const UpperTriangularMatrix& b);
QUORVEL_API LowerTriangularMatrix& Minus(LowerTriangularMatrix& result, const LowerTriangularMatrix& a,
                                         const DiagonalMatrix& b);
QUORVEL_API LowerTriangularMatrix& Minus(LowerTriangularMatrix& result, const DiagonalMatrix& a,
                                         const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularSparseMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularMatrix& a, const SymmetricSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricSparseMatrix& a, const RegularMatrix& b);
QUORVEL_API SymmetricMatrix& Minus(SymmetricMatrix& result, const SymmetricMatrix& a, const SymmetricSparseMatrix& b);
QUORVEL_API SymmetricMatrix& Minus(SymmetricMatrix& result, const SymmetricSparseMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularSparseMatrix& Minus(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                       const DiagonalMatrix& b);
QUORVEL_API RegularSparseMatrix& Minus(RegularSparseMatrix& result, const DiagonalMatrix& a,
                                       const RegularSparseMatrix& b);
QUORVEL_API SymmetricSparseMatrix& Minus(SymmetricSparseMatrix& result, const SymmetricSparseMatrix& a,
                                         const DiagonalMatrix& b);
QUORVEL_API SymmetricSparseMatrix& Minus(SymmetricSparseMatrix& result, const DiagonalMatrix& a,
                                         const SymmetricSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Minus(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                       const SymmetricSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Minus(RegularSparseMatrix& result, const SymmetricSparseMatrix& a,
                                       const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const UpperTriangularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const LowerTriangularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const UpperTriangularMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const LowerTriangularMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularSparseMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularSparseMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const UpperTriangularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const RegularSparseMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const LowerTriangularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricSparseMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const UpperTriangularMatrix& a, const SymmetricSparseMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const SymmetricSparseMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Minus(RegularMatrix& result, const LowerTriangularMatrix& a, const SymmetricSparseMatrix& b);

#include "quorvel/sum_operators.h"

#endif
