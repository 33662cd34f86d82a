// The frame of the solve operators: checks, where the solution lands, who survives.
#ifndef QUORVEL_FACTOR_SOLVE_H
#define QUORVEL_FACTOR_SOLVE_H

#include "core/ownership.h"
#include "core/sizing.h"

namespace quorvel::detail {

/// Solves into b when it is dispensable, else into a new copy of it: solve(target) replaces right-hand sides by
/// solutions and sets A's singularity count. A survives a success, whatever it is, and may be b.
template <class K, class Side, class Solver>
Side& SolveInto(const K& A, Side& b, Solver solve) {
  RequireProduct(A, b, code::solve);
  if (A.nrows() != A.ncols()) FailWith(code::solve + offset::shape, &A, &b);
  Consumed operands(A, b);
  if (b.dispensable()) {
    solve(b);
    operands.release(A);
    operands.release(b);
    return b;
  }
  NewResult<Side> result;
  if constexpr (is_dense<Side>) {
    CopyContents(*result, b);
  } else {
    result->Copy(b, false);
  }
  solve(*result);
  operands.release(A);
  return result.hand_over();
}

}  // namespace quorvel::detail

#endif
