// std::swap of the matrix kinds: the member Swap, which moves storage and leaves each object its dispensable flag.
#include "quorvel/matrix_functions.h"

#include "sparse/cursor.h"

void std::swap(RegularMatrix& a, RegularMatrix& b) noexcept { a.Swap(b); }
void std::swap(SymmetricMatrix& a, SymmetricMatrix& b) noexcept { a.Swap(b); }
void std::swap(UpperTriangularMatrix& a, UpperTriangularMatrix& b) noexcept { a.Swap(b); }
void std::swap(LowerTriangularMatrix& a, LowerTriangularMatrix& b) noexcept { a.Swap(b); }
void std::swap(DiagonalMatrix& a, DiagonalMatrix& b) noexcept { a.Swap(b); }
void std::swap(RegularSparseMatrix& a, RegularSparseMatrix& b) noexcept { a.Swap(b); }
void std::swap(SymmetricSparseMatrix& a, SymmetricSparseMatrix& b) noexcept { a.Swap(b); }
