// Sums and differences of a dense matrix with a sparse one. The result is dense.
#include "quorvel/sums.h"

#include <utility>

#include "ops/sum_methods.h"
#include "ops/sum_rows.inc"
#include "ops/tables/sums.h"

namespace detail = quorvel::detail;

QUORVEL_DENSE_SPARSE_TARGET_SUMS(SUM_TARGET)
QUORVEL_DENSE_SPARSE_FRESH_SUMS(SUM_FRESH)

// An exact match, where a symmetric operand could also become a sparse one.
SUM_OPERATORS(RegularMatrix, RegularSparseMatrix, const SymmetricMatrix)
SUM_OPERATORS(RegularMatrix, const SymmetricMatrix, RegularSparseMatrix)
