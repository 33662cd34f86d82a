// Short names of the kinds of matrices, for tests that name many of them: using namespace quorvel::test::kinds.

#ifndef QUORVEL_TESTS_SUPPORT_KINDS_H
#define QUORVEL_TESTS_SUPPORT_KINDS_H

#include "quorvel/quorvel.h"

namespace quorvel::test::kinds {

using R = RegularMatrix;
using S = SymmetricMatrix;
using U = UpperTriangularMatrix;
using L = LowerTriangularMatrix;
using D = DiagonalMatrix;
using RS = RegularSparseMatrix;
using SS = SymmetricSparseMatrix;

}  // namespace quorvel::test::kinds

#endif
