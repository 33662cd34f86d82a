// A straight line through points, by weighted least squares, in the words of quorvel/convenience.h.
//
// The observations y = a + b t have weights; the normal equations are (A' P A) x = A' P y.

#include <cstdio>
#include <iomanip>
#include <iostream>

#include "quorvel/convenience.h"
#include "quorvel/quorvel.h"

using quorvel::column;
using quorvel::diagonal;
using quorvel::formatted;
using quorvel::from_rows;
using quorvel::near;
using quorvel::own;

int main() {
  // Nested lists are matrices of any kind; what a kind cannot hold is refused.
  const auto A = from_rows<RegularMatrix>({{1, 0}, {1, 1}, {1, 2}, {1, 3}});
  const auto y = column({1.0, 3.0, 5.0, 17.0});
  auto P = diagonal({1.0, 1.0, 1.0, 0.0});  // the last observation is a blunder: no weight

  // `own` makes a value of what an operation returns, to be used as often as you like.
  const auto N = own(ATPA(A, P));
  const auto cofactors = own(InverseByCholesky(N, 1e-12));
  const auto x = own(cofactors * own(ATB(A, own(P * y))));
  const auto residuals = own(y - own(A * x));

  std::cout << "normal equations\n" << std::setw(6) << N;              // widths as of any other stream output
  std::cout << "a and b with their cofactors\n" << formatted(x, "8.3f") << formatted(cofactors, "8.4f");
  std::cout << "residuals\n" << formatted(residuals, "+8.2f");

  // Comparisons take matrices of any kinds, and results without a name: they consume them.
  if (!near(N * cofactors, eye(2, 1.0), 1e-12)) std::cout << "the inverse is none\n";

  // Pointers to rows, where a loop is clearer: rows of N from the diagonal on.
  for (unsigned i = 0; i < N.nrows(); ++i) {
    const double* const from_diagonal = quorvel::packed_row(N, i);
    std::printf("row %u of N from its diagonal:", i);
    for (unsigned j = i; j < N.ncols(); ++j) std::printf(" %g", from_diagonal[j - i]);
    std::printf("; row of A: %g %g\n", quorvel::row(A, i)[0], quorvel::row(A, i)[1]);
  }
}
