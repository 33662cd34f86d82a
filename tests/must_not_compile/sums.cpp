// Sums and block copies that must not compile.
#include "quorvel/quorvel.h"

#ifndef CASE
#define CASE 0
#endif

void Use(RegularMatrix& R, SymmetricMatrix& S, UpperTriangularMatrix& U, LowerTriangularMatrix& L, DiagonalMatrix& D,
         RegularSparseMatrix& G, SymmetricSparseMatrix& H) {
  const RegularMatrix constant(R + S);

#if CASE == 1
  // The sum of a general and a symmetric matrix is general.
  SymmetricMatrix narrow(R + S);
#elif CASE == 2
  UpperTriangularMatrix narrow(U + L);
#elif CASE == 3
  DiagonalMatrix narrow(D + S);
#elif CASE == 4
  SymmetricSparseMatrix narrow(G + H);
#elif CASE == 5
  // A number is not a matrix.
  RegularMatrix sum(R + 2.0);
#elif CASE == 6
  RegularMatrix sum(2u + R);
#elif CASE == 7
  // In place the target keeps its kind.
  S += R;
#elif CASE == 8
  U -= L;
#elif CASE == 9
  D += S;
#elif CASE == 10
  H += G;
#elif CASE == 11
  // The result of Plus has the kind of the sum.
  Plus(S, S, U);
#elif CASE == 12
  Plus(constant, R, R);
#elif CASE == 13
  // A result that nobody takes is lost.
  R + S;
#elif CASE == 14
  SubMat(R, 0, 0, 0, 0);
#elif CASE == 15
  CopySubMat(constant, 0, 0, S);
#elif CASE == 16
  // A diagonal target takes one index.
  CopySubMat(D, 0, 0, R);
#elif CASE == 17
  // A block of a general matrix is general.
  GetSubMat(S, R, 0, 1);
#elif CASE == 18
  SymmetricMatrix block(SubMat(S, 0, 1, 0, 1));
#elif CASE == 19
  R += 1.0;
#elif CASE == 20
  // General sparse and symmetric sparse: general sparse, also where a general matrix could hold it.
  Plus(R, G, H);
#endif

  Plus(G, G, H);
  CopySubMat(R, 0, 0, constant);
  CopySubMat(D, 0, L);
}
