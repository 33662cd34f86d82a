// Sums and differences of dense kinds.
#include "quorvel/sums.h"

#include <utility>

#include "ops/sum_methods.h"
#include "ops/sum_rows.inc"
#include "ops/tables/sums.h"

namespace detail = quorvel::detail;

QUORVEL_DENSE_LIKE_SUMS(SUM_LIKE)
QUORVEL_DENSE_TARGET_SUMS(SUM_TARGET)
QUORVEL_DENSE_FRESH_SUMS(SUM_FRESH)

// Exact matches for mixed constness of one kind.
SUM_OPERATORS(RegularMatrix, RegularMatrix, const RegularMatrix)
SUM_OPERATORS(RegularMatrix, const RegularMatrix, RegularMatrix)
SUM_OPERATORS(SymmetricMatrix, SymmetricMatrix, const SymmetricMatrix)
SUM_OPERATORS(SymmetricMatrix, const SymmetricMatrix, SymmetricMatrix)
